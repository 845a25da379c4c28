// Field tables by DXF type, from the DXF reference's group code lists. Types
// whose data is mostly repeated structures (hatches, tables, leaders, ...) list
// only their leading fields; the rest passes through as stored.
#include "db/EntitySchema.h"

#include <array>

namespace korva::db {

namespace {

constexpr uint8_t R = kFieldRequired;
constexpr uint8_t O = kFieldOptional;
constexpr uint8_t A = kFieldAngle;
constexpr uint8_t N = kFieldRepeat;
constexpr TagKind S = TagKind::String;
constexpr TagKind F = TagKind::Real;
constexpr TagKind I = TagKind::Integer;
constexpr TagKind P = TagKind::Point3;
constexpr TagKind H = TagKind::Handle;

constexpr FieldSpec pt(int16_t code, uint8_t flags = R) { return {code, P, flags}; }
constexpr FieldSpec normal(int16_t code = 210) { return {code, P, R, 0.0, 0.0, 1.0}; }
constexpr FieldSpec real(int16_t code, double value, uint8_t flags = R) { return {code, F, flags, value}; }
constexpr FieldSpec integer(int16_t code, double value, uint8_t flags = R) { return {code, I, flags, value}; }
constexpr FieldSpec text(int16_t code, std::string_view value, uint8_t flags = R) { return {code, S, flags, 0, 0, 0, value}; }
constexpr FieldSpec handle(int16_t code, uint8_t flags) { return {code, H, flags}; }

constexpr FieldSpec kLine[] = {real(39, 0, O), pt(10), pt(11), normal()};
constexpr FieldSpec kPoint[] = {pt(10), real(39, 0, O), normal(), real(50, 0, O | A)};
constexpr FieldSpec kCircle[] = {real(39, 0, O), pt(10), real(40, 1.0), normal()};
constexpr FieldSpec kArc[] = {real(50, 0, A), real(51, 0, A)};
constexpr FieldSpec kText[] = {real(39, 0, O), pt(10), real(40, 2.5), text(1, ""), real(50, 0, A), real(41, 1.0),
                               real(51, 0, A), text(7, "Standard"), integer(71, 0), integer(72, 0), pt(11), normal()};
constexpr FieldSpec kTextTail[] = {integer(73, 0)};
constexpr FieldSpec kAttribute[] = {integer(280, 0, O), text(2, ""), integer(70, 0), integer(73, 0), integer(74, 0),
                                    integer(280, 0, O)};
constexpr FieldSpec kAttdef[] = {integer(280, 0, O), text(3, ""), text(2, ""), integer(70, 0), integer(73, 0),
                                 integer(74, 0), integer(280, 0, O)};
constexpr FieldSpec kMText[] = {pt(10), real(40, 2.5), real(41, 0.0), real(46, 0.0, O), integer(71, 1), integer(72, 1),
                                text(3, "", N), text(1, ""), text(7, "Standard"), normal(), {11, P, R, 1.0, 0.0, 0.0},
                                real(42, 0.0), real(43, 0.0), real(50, 0.0), integer(73, 1, O), real(44, 1.0, O)};
constexpr FieldSpec kInsert[] = {integer(66, 0), text(2, ""), pt(10), real(41, 1.0), real(42, 1.0), real(43, 1.0),
                                 real(50, 0, A), integer(70, 0), integer(71, 0), real(44, 0.0), real(45, 0.0), normal()};
constexpr FieldSpec kTrace[] = {real(39, 0, O), pt(10), pt(11), pt(12), pt(13), normal()};
constexpr FieldSpec kFace[] = {pt(10), pt(11), pt(12), pt(13), integer(70, 0)};
constexpr FieldSpec kLwPolyline[] = {integer(90, 0), integer(70, 0), real(43, 0, O), real(38, 0, O), real(39, 0, O),
                                     pt(10, N), real(40, 0, N), real(41, 0, N), real(42, 0, N), integer(91, 0, N),
                                     normal()};
constexpr FieldSpec kPolyline[] = {integer(66, 1, O), pt(10), real(39, 0, O), integer(70, 0), real(40, 0, O),
                                   real(41, 0, O), integer(71, 0, O), integer(72, 0, O), integer(73, 0, O),
                                   integer(74, 0, O), integer(75, 0, O), normal()};
constexpr FieldSpec kVertex[] = {pt(10), real(40, 0, O), real(41, 0, O), real(42, 0, O), integer(70, 0),
                                 real(50, 0, O | A), integer(71, 0, O), integer(72, 0, O), integer(73, 0, O),
                                 integer(74, 0, O), integer(91, 0, O)};
constexpr FieldSpec kEllipse[] = {pt(10), {11, P, R, 1.0, 0.0, 0.0}, normal(), real(40, 1.0), real(41, 0.0),
                                  real(42, 6.283185307179586)};
constexpr FieldSpec kSpline[] = {pt(210, O), integer(70, 0), integer(71, 3), integer(72, 0), integer(73, 0),
                                 integer(74, 0), real(42, 1e-10, O), real(43, 1e-10, O), real(44, 1e-10, O),
                                 pt(12, O), pt(13, O), real(40, 0, N), real(41, 0, N), pt(10, N), pt(11, N)};
constexpr FieldSpec kRay[] = {pt(10), {11, P, R, 1.0, 0.0, 0.0}};
constexpr FieldSpec kShape[] = {real(39, 0, O), pt(10), real(40, 1.0), text(2, ""), real(50, 0, A), real(41, 1.0),
                                real(51, 0, A), normal()};
constexpr FieldSpec kDimension[] = {integer(280, 0, O), text(2, ""), pt(10), pt(11), integer(70, 0), integer(71, 5, O),
                                    integer(72, 1, O), real(41, 1.0, O), real(42, 0, O), integer(73, 0, O),
                                    integer(74, 0, O), integer(75, 0, O), text(1, ""), real(53, 0, O | A),
                                    real(51, 0, O | A), normal(), text(3, "Standard")};
constexpr FieldSpec kAlignedDimension[] = {pt(12, O), pt(13), pt(14)};
constexpr FieldSpec kRotatedDimension[] = {real(50, 0, A), real(52, 0, O | A)};
constexpr FieldSpec kAngularDimension[] = {pt(13), pt(14), pt(15), pt(16)};
constexpr FieldSpec kRadialDimension[] = {pt(15), real(40, 0)};
constexpr FieldSpec kOrdinateDimension[] = {pt(13), pt(14)};
constexpr FieldSpec kViewport[] = {pt(10), real(40, 0), real(41, 0), integer(68, 0), integer(69, 0)};
constexpr FieldSpec kWipeout[] = {integer(90, 0), pt(10), pt(11), pt(12), pt(13), handle(340, O), integer(70, 7),
                                  integer(280, 1), integer(281, 50), integer(282, 50), integer(283, 0)};
constexpr FieldSpec kHatch[] = {pt(10), normal(), text(2, "SOLID"), integer(70, 1), integer(71, 0)};
constexpr FieldSpec kTolerance[] = {text(3, "Standard"), pt(10), text(1, ""), normal(), {11, P, R, 1.0, 0.0, 0.0}};

constexpr SubclassSpec kLineSpec[] = {{"AcDbLine", kLine}};
constexpr SubclassSpec kPointSpec[] = {{"AcDbPoint", kPoint}};
constexpr SubclassSpec kCircleSpec[] = {{"AcDbCircle", kCircle}};
constexpr SubclassSpec kArcSpec[] = {{"AcDbCircle", kCircle}, {"AcDbArc", kArc}};
constexpr SubclassSpec kTextSpec[] = {{"AcDbText", kText}, {"AcDbText", kTextTail}};
constexpr SubclassSpec kAttribSpec[] = {{"AcDbText", kText}, {"AcDbAttribute", kAttribute}};
constexpr SubclassSpec kAttdefSpec[] = {{"AcDbText", kText}, {"AcDbAttributeDefinition", kAttdef}};
constexpr SubclassSpec kMTextSpec[] = {{"AcDbMText", kMText}};
constexpr SubclassSpec kInsertSpec[] = {{"AcDbBlockReference", kInsert}};
constexpr SubclassSpec kTraceSpec[] = {{"AcDbTrace", kTrace}};
constexpr SubclassSpec kFaceSpec[] = {{"AcDbFace", kFace}};
constexpr SubclassSpec kLwPolylineSpec[] = {{"AcDbPolyline", kLwPolyline}};
constexpr SubclassSpec kPolylineSpec[] = {{"AcDb2dPolyline", kPolyline}};
constexpr SubclassSpec kVertexSpec[] = {{"AcDbVertex", {}}, {"AcDb2dVertex", kVertex}};
constexpr SubclassSpec kEllipseSpec[] = {{"AcDbEllipse", kEllipse}};
constexpr SubclassSpec kSplineSpec[] = {{"AcDbSpline", kSpline}};
constexpr SubclassSpec kRaySpec[] = {{"AcDbRay", kRay}};
constexpr SubclassSpec kXlineSpec[] = {{"AcDbXline", kRay}};
constexpr SubclassSpec kShapeSpec[] = {{"AcDbShape", kShape}};
constexpr SubclassSpec kDimensionSpec[] = {{"AcDbDimension", kDimension}};
constexpr SubclassSpec kViewportSpec[] = {{"AcDbViewport", kViewport}};
constexpr SubclassSpec kWipeoutSpec[] = {{"AcDbWipeout", kWipeout}};
constexpr SubclassSpec kHatchSpec[] = {{"AcDbHatch", kHatch}};
constexpr SubclassSpec kToleranceSpec[] = {{"AcDbFcf", kTolerance}};

constexpr TypeSpec kSpecs[] = {
    {Type::Line, kLineSpec},         {Type::Point, kPointSpec},         {Type::Circle, kCircleSpec},
    {Type::Arc, kArcSpec},           {Type::Text, kTextSpec},           {Type::Attrib, kAttribSpec},
    {Type::AttDef, kAttdefSpec},     {Type::MText, kMTextSpec},         {Type::Insert, kInsertSpec},
    {Type::Solid, kTraceSpec},       {Type::Trace, kTraceSpec},         {Type::Face3d, kFaceSpec},
    {Type::LwPolyline, kLwPolylineSpec}, {Type::Polyline, kPolylineSpec}, {Type::Vertex, kVertexSpec},
    {Type::SeqEnd, {}},     {Type::Ellipse, kEllipseSpec},     {Type::Spline, kSplineSpec},
    {Type::Ray, kRaySpec},           {Type::Xline, kXlineSpec},         {Type::Shape, kShapeSpec},
    {Type::Dimension, kDimensionSpec}, {Type::Viewport, kViewportSpec}, {Type::Wipeout, kWipeoutSpec},
    {Type::Hatch, kHatchSpec},       {Type::Tolerance, kToleranceSpec},
};

// Dimension subclasses after AcDbDimension, by marker.
struct DimensionPart {
    std::string_view marker;
    std::span<const FieldSpec> fields;
};
constexpr DimensionPart kDimensionParts[] = {
    {"AcDbAlignedDimension", kAlignedDimension}, {"AcDbRotatedDimension", kRotatedDimension},
    {"AcDb3PointAngularDimension", kAngularDimension}, {"AcDb2LineAngularDimension", kAngularDimension},
    {"AcDbDiametricDimension", kRadialDimension}, {"AcDbRadialDimension", kRadialDimension},
    {"AcDbOrdinateDimension", kOrdinateDimension},
};

constexpr int kCommonCodes[] = {67, 410, 8, 6, 347, 62, 370, 48, 60, 92, 160, 310, 420, 430, 440, 390, 284};

}  // namespace

Tag FieldSpec::defaultTag() const {
    switch (kind) {
        case TagKind::Real: return Tag::real(code, x);
        case TagKind::Integer: return Tag::integerValue(code, static_cast<int64_t>(x));
        case TagKind::Point3: return Tag::point(code, {x, y, z});
        case TagKind::Handle: return Tag::handle(code, 0);
        default: return Tag::string(code, text);
    }
}

const TypeSpec* entitySpec(TypeId type) {
    for (const TypeSpec& typeSchema : kSpecs) {
        if (typeSchema.type == type) return &typeSchema;
    }
    return nullptr;
}

std::string_view polylineMarker(int64_t flags) {
    if (flags & 64) return "AcDbPolyFaceMesh";
    if (flags & 16) return "AcDbPolygonMesh";
    if (flags & 8) return "AcDb3dPolyline";
    return "AcDb2dPolyline";
}

std::string_view vertexMarker(int64_t flags) {
    if ((flags & 128) && !(flags & 64)) return "AcDbFaceRecord";
    if (flags & 128) return "AcDbPolyFaceMeshVertex";
    if (flags & 64) return "AcDbPolygonMeshVertex";
    if (flags & 32) return "AcDb3dPolylineVertex";
    return "AcDb2dVertex";
}

bool isSameSubclass(std::string_view wanted, std::string_view stored) {
    if (wanted == stored) return true;
    return wanted == "AcDbBlockReference" && stored == "AcDbMInsertBlock";
}

bool isCommonEntityCode(int code) { return commonEntityOrder(code) < static_cast<int>(std::size(kCommonCodes)); }

int commonEntityOrder(int code) {
    for (size_t i = 0; i < std::size(kCommonCodes); ++i) {
        if (kCommonCodes[i] == code) return static_cast<int>(i);
    }
    return static_cast<int>(std::size(kCommonCodes));
}

std::span<const FieldSpec> dimensionPartFields(std::string_view marker) {
    for (const DimensionPart& part : kDimensionParts) {
        if (part.marker == marker) return part.fields;
    }
    return {};
}

std::string_view dimensionPartMarker(int64_t dimensionType) {
    switch (dimensionType & 7) {
        case 0: return "AcDbRotatedDimension";
        case 1: return "AcDbAlignedDimension";
        case 2: return "AcDb2LineAngularDimension";
        case 3: return "AcDbDiametricDimension";
        case 4: return "AcDbRadialDimension";
        case 5: return "AcDb3PointAngularDimension";
        default: return "AcDbOrdinateDimension";
    }
}

bool isAngleField(TypeId type, std::string_view marker, int code) {
    if (type == Type::Dimension) {
        for (const FieldSpec& f : dimensionPartFields(marker)) {
            if (f.code == code) return f.angle();
        }
    }
    if (type == Type::Hatch) return code == 52 || code == 53;
    if (type == Type::Viewport) return code == 51;
    const TypeSpec* typeSchema = entitySpec(type);
    if (!typeSchema) return false;
    for (const SubclassSpec& sub : typeSchema->subclasses) {
        if (!marker.empty() && sub.marker != marker && !(type == Type::Polyline || type == Type::Vertex)) continue;
        for (const FieldSpec& f : sub.fields) {
            if (f.code == code) return f.angle();
        }
    }
    return false;
}

}  // namespace korva::db
