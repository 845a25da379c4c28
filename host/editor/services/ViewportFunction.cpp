// kcedGetCurViewportObjectId: the VIEWPORT entity of the current viewport while
// a layout is current: the one whose viewport number (group 69) equals CVPORT,
// which is the layout's own paper-space viewport (number 1) when paper space
// itself is active. Model space (TILEMODE 1) has no viewport entity.
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "editor/Document.h"
#include "kced.h"

using namespace korva::editor;

KcDbObjectId kcedGetCurViewportObjectId() {
    Document* document = Session::instance().current();
    if (!document) return KcDbObjectId();
    korva::db::Drawing& drawing = document->drawing();
    if (drawing.header.getInteger("$TILEMODE").value_or(1) != 0) return KcDbObjectId();
    const korva::db::ObjectRecord* layout = drawing.paperSpace();
    if (!layout || !layout->container) return KcDbObjectId();
    for (const korva::db::ObjectRecord* entity : layout->container->members) {
        if (entity->erased || entity->type != korva::db::Type::Viewport) continue;
        if (korva::db::fieldInteger(*entity, "AcDbViewport", 69, 0) == document->cvport())
            return korva::db::ObjectAccess::id(entity);
    }
    return KcDbObjectId();
}
