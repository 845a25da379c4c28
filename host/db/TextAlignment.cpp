// Justified text: the insertion point from the alignment point and the text box.
#include "db/TextAlignment.h"

#include <cmath>

#include "db/RecordFields.h"
#include "geom/Ocs.h"

namespace korva::db {

namespace {

constexpr double kDegree = 3.14159265358979323846 / 180.0;

std::string_view textMarker(const ObjectRecord&) { return "AcDbText"; }

// Vertical justification: 73 in a TEXT, 74 in the attribute part of ATTRIB and ATTDEF.
int64_t verticalMode(const ObjectRecord& text) {
    if (text.type == Type::Attrib) return fieldInteger(text, "AcDbAttribute", 74, 0);
    if (text.type == Type::AttDef) return fieldInteger(text, "AcDbAttributeDefinition", 74, 0);
    return fieldInteger(text, "AcDbText", 73, 0);
}

}  // namespace

bool isJustifiedText(const ObjectRecord& text) {
    const int64_t horizontal = fieldInteger(text, textMarker(text), 72, 0);
    return horizontal != 0 || verticalMode(text) != 0;
}

double mtextRotation(const ObjectRecord& mtext) {
    const KcGeVector3d normal = fieldVector(mtext, "AcDbMText", 210, KcGeVector3d::kZAxis);
    const KcGeVector3d direction =
        KcGeMatrix3d::worldToPlane(normal) * fieldVector(mtext, "AcDbMText", 11, KcGeVector3d::kXAxis);
    double angle = std::atan2(direction.y, direction.x);
    if (angle < 0) angle += 2 * 3.14159265358979323846;
    return angle;
}

void alignTextPosition(ObjectRecord& text) {
    if (!isJustifiedText(text)) return;
    const int64_t horizontal = fieldInteger(text, "AcDbText", 72, 0);
    if (horizontal == 3 || horizontal == 5) return;  // aligned and fit keep both points as given
    const TextStyleMetrics style = textStyleOf(text);
    const TextBox box = measureText(fieldText(text, "AcDbText", 1), style);
    double dx = 0.0;
    switch (horizontal) {
        case 1:
        case 4: dx = (box.left + box.right) / 2.0; break;
        case 2: dx = box.right; break;
        default: break;
    }
    double dy = 0.0;
    if (horizontal == 4) {
        dy = style.height / 2.0;  // "middle" centres on the text height whatever the vertical mode
    } else {
        switch (verticalMode(text)) {
            case 1: dy = box.bottom; break;
            case 2: dy = style.height / 2.0; break;
            case 3: dy = style.height; break;
            default: break;
        }
    }
    const int64_t generation = fieldInteger(text, "AcDbText", 71, 0);
    if (generation & 2) dx = -dx;  // mirrored in X
    if (generation & 4) dy = -dy;  // upside down
    const double rotation = fieldReal(text, "AcDbText", 50, 0.0) * kDegree;
    // Both points are in the text's OCS; the offset turns with the rotation.
    const KcGePoint3d alignment = fieldPoint(text, "AcDbText", 11);
    const double c = std::cos(rotation), s = std::sin(rotation);
    const KcGePoint3d position(alignment.x - (dx * c - dy * s), alignment.y - (dx * s + dy * c), alignment.z);
    setField(text, "AcDbText", Tag::point(10, position));
}

}  // namespace korva::db
