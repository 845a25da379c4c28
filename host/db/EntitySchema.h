// The field tables of DXF entity types: for each subclass marker, the group
// codes in DXF order with their default values. One table serves the entity
// lists (complete lists in DXF order, angles in radians), the typed accessors
// (where a missing group is inserted) and the conversion of old files that
// carry no subclass markers.
#pragma once

#include <span>
#include <string_view>

#include "db/ObjectType.h"
#include "db/Tag.h"

namespace korva::db {

// Angles of DXF files in degrees become radians in lists and accessors with this factor.
inline constexpr double kRadiansPerDegree = 3.14159265358979323846 / 180.0;

enum FieldFlags : uint8_t {
    kFieldRequired = 0,
    kFieldOptional = 1,  // in entity lists only when the entity has it
    kFieldAngle = 2,     // degrees in DXF files, radians in entity lists and accessors
    kFieldRepeat = 4,    // may occur many times (vertices, knots); never defaulted
};

struct FieldSpec {
    int16_t code;
    TagKind kind;
    uint8_t flags;
    double x = 0.0, y = 0.0, z = 0.0;  // default number or point
    std::string_view text = {};          // default string

    bool optional() const { return (flags & (kFieldOptional | kFieldRepeat)) != 0; }
    bool angle() const { return (flags & kFieldAngle) != 0; }
    Tag defaultTag() const;
};

struct SubclassSpec {
    std::string_view marker;
    std::span<const FieldSpec> fields;
};

struct TypeSpec {
    TypeId type;
    std::span<const SubclassSpec> subclasses;  // after AcDbEntity, in DXF order
};

// The field table of an entity type, or nullptr for types kept as stored.
const TypeSpec* entitySpec(TypeId type);

// The subclass marker a POLYLINE or VERTEX of these 70 flags carries.
std::string_view polylineMarker(int64_t flags);
std::string_view vertexMarker(int64_t flags);

// DIMENSION data after AcDbDimension: the fields of a subclass, and the marker
// of a dimension type (group 70). Rotated dimensions also carry AcDbAlignedDimension.
std::span<const FieldSpec> dimensionPartFields(std::string_view marker);
std::string_view dimensionPartMarker(int64_t dimensionType);

// Whether a stored subclass marker stands for the wanted one: a multiple insert
// carries "AcDbMInsertBlock" where a block reference has "AcDbBlockReference".
bool isSameSubclass(std::string_view wanted, std::string_view stored);

// Codes of the common entity part (the AcDbEntity subclass).
bool isCommonEntityCode(int code);
// The DXF order of the common groups: a group's position, or the count for other codes.
int commonEntityOrder(int code);

// Whether a group of this entity type holds an angle in degrees in DXF files.
bool isAngleField(TypeId type, std::string_view marker, int code);

}  // namespace korva::db
