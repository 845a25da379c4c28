// Resolving kcedTrans's coordinate-system codes to matrices.
#include "editor/services/CoordinateSystems.h"

#include "db/EntityNames.h"
#include "db/geometry/EntityTags.h"
#include "editor/Coordinates.h"
#include "editor/Document.h"

namespace korva::editor {

namespace {

enum SystemNumber { kWorld = 0, kUcs = 1, kDisplay = 2, kPaperDisplay = 3 };

std::optional<KcGeMatrix3d> numberedSystem(int number, Document* document) {
    switch (number) {
        case kWorld: return KcGeMatrix3d::kIdentity;
        case kUcs: return ucsToWorld(document);
        case kDisplay: return displayToWorld(document);
        case kPaperDisplay:
            return document ? displayToWorld(document->view(true)) : KcGeMatrix3d::kIdentity;
        default: return std::nullopt;
    }
}

std::optional<KcGeMatrix3d> extrusionSystem(const KcGeVector3d& normal) {
    if (normal.isZeroLength()) return std::nullopt;
    return KcGeMatrix3d::planeToWorld(normal.normal());
}

// An entity's OCS follows its 210 group; entities without one are in the world.
std::optional<KcGeMatrix3d> entitySystem(const kcad_name name) {
    const db::ObjectRecord* record = db::recordOf(name);
    if (!record || !record->isEntity()) return std::nullopt;
    const db::geometry::EntityTags tags(*record);
    if (!tags.first(210)) return KcGeMatrix3d::kIdentity;
    return extrusionSystem(tags.normal());
}

}  // namespace

std::optional<KcGeMatrix3d> systemToWorld(const resbuf& code, Document* document) {
    switch (code.restype) {
        case RTSHORT: return numberedSystem(code.resval.rint, document);
        case RTLONG: return numberedSystem(code.resval.rlong, document);
        case RT3DPOINT:
            return extrusionSystem({code.resval.rpoint[0], code.resval.rpoint[1], code.resval.rpoint[2]});
        case RTENAME: return entitySystem(code.resval.rlname);
        default: return std::nullopt;
    }
}

}  // namespace korva::editor
