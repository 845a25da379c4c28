// Outlines of the entities a pick inside counts for: SOLID, TRACE and 3DFACE,
// the boxes of texts and MTEXT, images and wipeouts; and the frame of a viewport.
#include "db/geometry/EntityTags.h"
#include "db/geometry/TextGeometry.h"
#include "editor/selection/EntityOutline.h"
#include "geom/Ocs.h"

namespace korva::editor {

bool drawAreaOutline(const db::ObjectRecord& entity, ShapeBuilder& builder) {
    switch (entity.type) {
        case db::Type::Solid:
        case db::Type::Trace: {
            const db::geometry::EntityTags t(entity);
            const KcGeVector3d normal = t.normal();
            // The third and fourth corners of a SOLID are stored crosswise.
            const KcGePoint3d third = t.point(12);
            builder.polygonArea({geom::ocsToWcs(t.point(10), normal), geom::ocsToWcs(t.point(11), normal),
                                 geom::ocsToWcs(t.point(13, third), normal), geom::ocsToWcs(third, normal)});
            return true;
        }
        case db::Type::Face3d: {
            const db::geometry::EntityTags t(entity);
            builder.polygonArea({t.point(10), t.point(11), t.point(12), t.point(13, t.point(12))});
            return true;
        }
        case db::Type::Text:
        case db::Type::Attrib:
        case db::Type::AttDef: {
            const auto corners = db::geometry::singleLineTextCorners(entity);
            builder.polygonArea({corners.begin(), corners.end()});
            return true;
        }
        case db::Type::MText: {
            const auto corners = db::geometry::mtextCorners(entity);
            builder.polygonArea({corners.begin(), corners.end()});
            return true;
        }
        case db::Type::Image:
        case db::Type::Wipeout: {
            const db::geometry::EntityTags t(entity);
            const KcGePoint3d origin = t.point(10);
            const KcGePoint3d size = t.point(13, {1, 1, 0});
            const KcGeVector3d u = t.point(11, {1, 0, 0}).asVector() * size.x;
            const KcGeVector3d v = t.point(12, {0, 1, 0}).asVector() * size.y;
            builder.polygonArea({origin, origin + u, origin + u + v, origin + v});
            return true;
        }
        case db::Type::Viewport: {
            const db::geometry::EntityTags t(entity);
            const KcGePoint3d c = t.point(10);
            const double w = t.real(40, 0.0) / 2.0, h = t.real(41, 0.0) / 2.0;
            builder.polyline({{c.x - w, c.y - h, c.z}, {c.x + w, c.y - h, c.z}, {c.x + w, c.y + h, c.z}, {c.x - w, c.y + h, c.z}},
                             true);
            return true;
        }
        default: return false;
    }
}

}  // namespace korva::editor
