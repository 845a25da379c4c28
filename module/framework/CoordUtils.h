// Conversions between the world system (WCS), the current user system (UCS)
// and an entity's object system (OCS, given by its extrusion direction), over
// the host's point transformation; the matrices of the same transforms; and the
// zoom helper.
#pragma once

#include "kcadstd.h"
#include "kcdbdatabase.h"
#include "kcge.h"

// Point (or, with displacement, vector) conversions; true when the host answers RTNORM.
bool uc2wc(const kcad_point point, kcad_point result, bool displacement = false);
bool wc2uc(const kcad_point point, kcad_point result, bool displacement = false);
bool ec2uc(const kcad_point point, const kcad_point extrusion, kcad_point result, bool displacement = false);
bool uc2ec(const kcad_point point, const kcad_point extrusion, kcad_point result, bool displacement = false);
bool uc2wc(const KcGePoint3d& point, KcGePoint3d& result, bool displacement = false);
bool wc2uc(const KcGePoint3d& point, KcGePoint3d& result, bool displacement = false);
bool ec2uc(const KcGePoint3d& point, const KcGeVector3d& extrusion, KcGePoint3d& result, bool displacement = false);
bool uc2ec(const KcGePoint3d& point, const KcGeVector3d& extrusion, KcGePoint3d& result, bool displacement = false);

// The 4x4 matrices of UCS -> WCS and WCS -> UCS (identity when the host has no UCS).
void uc2wcMatrix(KcGeMatrix3d& matrix);
void wc2ucMatrix(KcGeMatrix3d& matrix);
// The matrix that maps the current UCS, its origin moved to the WCS point origin,
// onto the world system (origin to 0,0,0, UCS axes to the world axes); the identity
// when the database is null or has no UCS axes.
void getUcsToWcsOriginMatrix(KcGeMatrix3d& matrix, const KcGePoint3d& origin, const KcDbDatabase* database);
// Turns a transform given in UCS terms into its WCS equivalent: matrix = UCS->WCS * matrix * WCS->UCS.
void TransDependOnUcs(KcGeMatrix3d& matrix);

// Zooms the current view to the window (WCS corners) with the host's ZOOM command;
// refused (RTERROR) in a perspective view. The host's status otherwise.
int krxZoom(const KcGePoint3d& minCorner, const KcGePoint3d& maxCorner);
