// kcedTrans and kcedGetCurrentUCS: points and vectors between the world, the
// current UCS, the display systems and object coordinate systems of the
// current document.
#include "editor/Coordinates.h"
#include "editor/Document.h"
#include "editor/services/CoordinateSystems.h"
#include "kced.h"

using namespace korva::editor;

int kcedTrans(const kcad_point point, const resbuf* from, const resbuf* to, int displacement, kcad_point result) {
    if (!point || !from || !to || !result) return RTERROR;
    Document* document = Session::instance().current();
    const auto fromWorld = systemToWorld(*from, document);
    const auto toWorld = systemToWorld(*to, document);
    if (!fromWorld || !toWorld) return RTERROR;
    const KcGeMatrix3d transform = toWorld->inverse() * *fromWorld;
    KcGePoint3d out;
    if (displacement != 0) {
        // A vector moves with the axes only, not with the origins.
        const KcGeVector3d vector = transform * KcGeVector3d(point[0], point[1], point[2]);
        out = {vector.x, vector.y, vector.z};
    } else {
        out = transform * KcGePoint3d(point[0], point[1], point[2]);
    }
    result[0] = out.x;
    result[1] = out.y;
    result[2] = out.z;
    return RTNORM;
}

Kcad::ErrorStatus kcedGetCurrentUCS(KcGeMatrix3d& ucsToWcs) {
    ucsToWcs = ucsToWorld(Session::instance().current());
    return Kcad::eOk;
}
