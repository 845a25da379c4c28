// Helpers of the typed entity classes: the groups of a record read and written
// as API values (angles in radians, OCS points as world points), the checks a
// setter makes before it changes anything, and the strings handed to callers.
// Private to host/db/entities.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "db/ObjectRecord.h"
#include "db/RecordFields.h"
#include "kcdbents.h"

namespace korva::db {

class Drawing;

inline constexpr double kPi = 3.14159265358979323846;
inline double radiansFromDegrees(double degrees) { return degrees * kPi / 180.0; }
inline double degreesFromRadians(double radians) { return radians * 180.0 / kPi; }
// The same angle in [0, 2 pi).
double normalizedAngle(double radians);

bool isFiniteValue(double value);
bool isFinitePoint(const KcGePoint3d& point);
bool isFinitePoint(const KcGePoint2d& point);
// Finite and not of zero length: usable as a direction or a normal.
bool isUsableDirection(const KcGeVector3d& vector);

// The status of a setter before it changes anything: not writable, bad input, or eOk.
inline Kcad::ErrorStatus admit(Kcad::ErrorStatus writable, bool valid) {
    if (writable != Kcad::eOk) return writable;
    return valid ? Kcad::eOk : Kcad::eInvalidInput;
}

// The first marker whose run holds the code; else the first marker, where a new group goes.
// (Writers differ in which subclass they put some groups in, such as 210 of ARC.)
std::string_view markerHolding(const ObjectRecord& record, std::initializer_list<std::string_view> markers, int code);

// The extrusion direction, (0, 0, 1) when absent.
KcGeVector3d normalField(const ObjectRecord& record, std::string_view marker, int code = 210);
// An angle stored in degrees, in radians.
double angleField(const ObjectRecord& record, std::string_view marker, int code, double fallbackDegrees = 0.0);
void setAngleField(ObjectRecord& record, std::string_view marker, int code, double radians);
// A point stored in the OCS of normal, in world coordinates.
KcGePoint3d worldPointField(const ObjectRecord& record, std::string_view marker, int code,
                            const KcGeVector3d& normal, const KcGePoint3d& fallback = KcGePoint3d::kOrigin);
void setWorldPointField(ObjectRecord& record, std::string_view marker, int code, const KcGePoint3d& world,
                        const KcGeVector3d& normal);
KcGePoint3d toWorld(const KcGePoint3d& ocs, const KcGeVector3d& normal);
KcGePoint3d toOcs(const KcGePoint3d& world, const KcGeVector3d& normal);

void setPointField(ObjectRecord& record, std::string_view marker, int code, const KcGePoint3d& point);
void setRealField(ObjectRecord& record, std::string_view marker, int code, double value);
void setIntegerField(ObjectRecord& record, std::string_view marker, int code, int64_t value);
void setTextField(ObjectRecord& record, std::string_view marker, int code, std::string_view value);
bool flagField(const ObjectRecord& record, std::string_view marker, int code, int64_t bit);
void setFlagField(ObjectRecord& record, std::string_view marker, int code, int64_t bit, bool on);

// The index-th group of a code in the subclass (repeated groups); false when there are fewer.
bool nthField(const ObjectRecord& record, std::string_view marker, int code, size_t index, TagRef& out);

// Every group of the subclass run in order (outside 102 groups).
std::vector<TagRef> subclassTags(const ObjectRecord& record, std::string_view marker);

// A stored text as a string the caller frees with kcutDelString.
wchar_t* allocatedText(std::string_view stored);

// The drawing look-ups go to: the record's own, else the working database's (new objects).
const Drawing* lookupDrawing(const ObjectRecord& record);

}  // namespace korva::db
