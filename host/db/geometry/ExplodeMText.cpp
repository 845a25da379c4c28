// Explode of MTEXT into TEXT: one TEXT per line as the MTEXT lays out
// (MTextLayout.h: paragraphs, wrapping, height codes), with the inline format
// codes removed. A line of one height keeps the MTEXT's horizontal alignment
// (left, centre or right, from the attachment point) through its alignment
// point; a line of several heights gives one left-aligned TEXT per run. The
// TEXTs keep the MTEXT's style and direction and stand on the lines' baselines.
#include <algorithm>
#include <cmath>

#include "db/geometry/EntityTags.h"
#include "db/geometry/ExplodeSupport.h"
#include "db/geometry/MTextLayout.h"
#include "db/geometry/TextGeometry.h"
#include "db/geometry/TransformSupport.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

Kcad::ErrorStatus explodeMText(const ObjectRecord& mtext, Parts& parts) {
    const EntityTags t(mtext);
    const MTextFrame frame = mtextFrame(mtext);
    const MTextLayout layout = layoutMText(mtext);
    const int64_t attachment = std::clamp<int64_t>(t.integer(71, 1), 1, 9);
    const int64_t column = (attachment - 1) % 3;  // 0 left, 1 centre, 2 right: TEXT's 72 values
    const KcGeVector3d directionOcs = geom::wcsToOcs(frame.direction, frame.normal);
    const double rotation = std::atan2(directionOcs.y, directionOcs.x);
    const Tag* style = t.first(7);
    auto framePoint = [&](double x, double y) {
        return geom::wcsToOcs(frame.location + frame.direction * x + frame.up * y, frame.normal);
    };

    for (const MTextLine& line : layout.lines) {
        const bool aligned = column != 0 && line.runs.size() == 1;
        for (const MTextRun& run : line.runs) {
            std::vector<Tag> fields{Tag::point(10, framePoint(line.x + run.x, line.y)), Tag::real(40, run.height),
                                    Tag::string(1, run.text), Tag::real(50, storedDegrees(rotation))};
            if (style && style->kind == TagKind::String) fields.push_back(Tag::string(7, style->text));
            if (aligned) {
                fields.push_back(Tag::integerValue(72, column));
                const double anchor = line.x + line.width * 0.5 * static_cast<double>(column);
                fields.push_back(Tag::point(11, framePoint(anchor, line.y)));
            }
            if (frame.normal != KcGeVector3d::kZAxis) {
                fields.push_back(Tag::point(210, KcGePoint3d::kOrigin + frame.normal));
            }
            parts.push_back(newPart(Type::Text, mtext, fields));
        }
    }
    return Kcad::eOk;
}

}  // namespace korva::db::geometry
