// Where the drawing commands put what they make. Points answer prompts in the
// current UCS and become world points here; planar entities lie in the UCS's XY
// plane (their normal is its Z axis, their angles are measured in the object
// coordinate system of that normal); new entities go to the current space of
// the working database and take the current layer there.
#pragma once

#include <string>

#include "kcdbdatabase.h"

namespace korva::commands {

// The current UCS of the current document, in world terms.
class UcsPlane {
public:
    static UcsPlane current();

    KcGePoint3d toWorld(const kcad_point ucsPoint) const;
    KcGePoint3d toWorld(const KcGePoint3d& ucsPoint) const { return toWorld_ * ucsPoint; }
    KcGePoint3d toUcs(const KcGePoint3d& worldPoint) const { return toUcs_ * worldPoint; }
    const KcGeMatrix3d& toWorldMatrix() const { return toWorld_; }
    const KcGeMatrix3d& toUcsMatrix() const { return toUcs_; }
    const KcGeVector3d& normal() const { return normal_; }
    const KcGeVector3d& xAxis() const { return xAxis_; }
    const KcGeVector3d& yAxis() const { return yAxis_; }
    bool isWorld() const { return toWorld_.isIdentity(); }
    // The world direction of an angle measured in the UCS XY plane from its X axis.
    KcGeVector3d direction(double ucsAngle) const;
    // The same direction as an angle in the object coordinate system of normal():
    // the rotation a planar entity of this plane stores.
    double ocsAngle(double ucsAngle) const;
    // A world point in the object coordinate system of normal().
    KcGePoint3d toOcs(const KcGePoint3d& worldPoint) const { return worldToOcs_ * worldPoint; }

private:
    KcGeMatrix3d toWorld_;
    KcGeMatrix3d toUcs_;
    KcGeMatrix3d worldToOcs_;
    KcGeVector3d normal_ = KcGeVector3d::kZAxis;
    KcGeVector3d xAxis_ = KcGeVector3d::kXAxis;
    KcGeVector3d yAxis_ = KcGeVector3d::kYAxis;
};

KcDbDatabase* workingDatabase();

// Appends a new entity to a block record and closes it; the new entity's id, or
// the null id (the entity is then deleted) when it could not be added.
KcDbObjectId appendToBlock(KcDbObjectId block, KcDbEntity* entity);
KcDbObjectId appendToCurrentSpace(KcDbEntity* entity);

// Numbers as the command line shows them: distances with LUPREC decimals,
// angles in degrees with AUPREC decimals (radians in, the UCS angle shown).
std::wstring formatDistance(double value);
std::wstring formatAngle(double radians);

// An included angle, which keeps its sign and may pass a half turn: a number
// (degrees, or radians with AUNITS 3) or a point giving the angle from base.
// RTNORM, RTNONE or RTCAN.
int promptIncludedAngle(const kcad_point base, const wchar_t* prompt, double* sweep);

// The keyword a prompt answered with RTKWORD (kcedGetInput), global form.
std::wstring answeredKeyword();

}  // namespace korva::commands
