// Extents of TEXT, ATTRIB, ATTDEF, MTEXT and SHAPE: the corners of their boxes.
#include "db/geometry/EntityTags.h"
#include "db/geometry/ExtentsBuilder.h"
#include "db/geometry/TextGeometry.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

bool addTextExtents(const ObjectRecord& entity, ExtentsBuilder& builder) {
    const EntityTags t(entity);
    switch (entity.type) {
        case Type::Text:
        case Type::Attrib:
        case Type::AttDef: {
            const auto corners = singleLineTextCorners(entity);
            withThickness(builder, t.real(39, 0.0), t.normal(), [&](ExtentsBuilder& b) {
                for (const KcGePoint3d& p : corners) b.point(p);
            });
            return true;
        }
        case Type::MText:
            for (const KcGePoint3d& p : mtextCorners(entity)) builder.point(p);
            return true;
        case Type::Shape:
            // Shape outlines live in shape files the database does not read: the
            // insertion point is what is known.
            builder.point(geom::ocsToWcs(t.point(10), t.normal()));
            return true;
        default:
            return false;
    }
}

}  // namespace korva::db::geometry
