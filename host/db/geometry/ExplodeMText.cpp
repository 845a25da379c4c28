// Explode of MTEXT into one TEXT per line: the content split at paragraph breaks
// with its format codes removed. Lines keep the MTEXT's height, style, direction
// and horizontal alignment (left, centre or right of the location) and stack
// down from the top of its box at the line pitch.
#include <algorithm>
#include <cmath>

#include "db/geometry/EntityTags.h"
#include "db/geometry/ExplodeSupport.h"
#include "db/geometry/TextGeometry.h"
#include "db/geometry/TransformSupport.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

Kcad::ErrorStatus explodeMText(const ObjectRecord& mtext, Parts& parts) {
    const EntityTags t(mtext);
    const MTextFrame frame = mtextFrame(mtext);
    const std::vector<std::string> lines = mtextLines(mtext);
    const double height = t.real(40, 2.5);
    const double pitch = kMTextLinePitch * height * t.real(44, 1.0);
    const int64_t attachment = std::clamp<int64_t>(t.integer(71, 1), 1, 9);
    const int64_t column = (attachment - 1) % 3;  // 0 left, 1 centre, 2 right: TEXT's 72 values
    double boxHeight = t.real(43, 0.0);
    if (boxHeight == 0.0) boxHeight = static_cast<double>(lines.size()) * kMTextLinePitch * height;
    const double top = boxHeight * 0.5 * static_cast<double>((attachment - 1) / 3);
    const KcGeVector3d directionOcs = geom::wcsToOcs(frame.direction, frame.normal);
    const double rotation = std::atan2(directionOcs.y, directionOcs.x);
    const Tag* style = t.first(7);
    TextStyleMetrics metrics = textMetricsOf(mtext);

    for (size_t i = 0; i < lines.size(); ++i) {
        if (lines[i].empty()) continue;
        const KcGePoint3d anchor = frame.location + frame.up * (top - height - static_cast<double>(i) * pitch);
        const TextBox box = measureText(lines[i], metrics);
        const KcGePoint3d start = anchor - frame.direction * (box.right * 0.5 * static_cast<double>(column));
        std::vector<Tag> fields{Tag::point(10, geom::wcsToOcs(start, frame.normal)), Tag::real(40, height),
                                Tag::string(1, lines[i]), Tag::real(50, storedDegrees(rotation))};
        if (style && style->kind == TagKind::String) fields.push_back(Tag::string(7, style->text));
        if (column != 0) {
            fields.push_back(Tag::integerValue(72, column));
            fields.push_back(Tag::point(11, geom::wcsToOcs(anchor, frame.normal)));
        }
        if (frame.normal != KcGeVector3d::kZAxis) {
            fields.push_back(Tag::point(210, KcGePoint3d::kOrigin + frame.normal));
        }
        parts.push_back(newPart(Type::Text, mtext, fields));
    }
    return Kcad::eOk;
}

}  // namespace korva::db::geometry
