// Coordinate conversions over kcedTrans (codes: 0 world, 1 current UCS, 2
// display; a 3D point stands for the object system of that extrusion), the
// UCS matrices, and the zoom helper.
#include "framework/CoordUtils.h"

#include <algorithm>
#include <limits>

#include "framework/SysVarGuards.h"
#include "kced.h"

namespace {

constexpr short kWorld = 0;
constexpr short kUcs = 1;
constexpr short kDisplay = 2;
constexpr short kPerspectiveBit = 1;

resbuf systemCode(short code) {
    resbuf rb{};
    rb.restype = RTSHORT;
    rb.resval.rint = code;
    return rb;
}

resbuf extrusionSystem(const kcad_point extrusion) {
    resbuf rb{};
    rb.restype = RT3DPOINT;
    for (int i = 0; i < 3; ++i) rb.resval.rpoint[i] = extrusion[i];
    return rb;
}

bool transform(const kcad_point point, const resbuf& from, const resbuf& to, bool displacement, kcad_point result) {
    return kcedTrans(point, &from, &to, displacement ? 1 : 0, result) == RTNORM;
}

// Point-class forms over the array forms.
template <class Convert>
bool viaArrays(const KcGePoint3d& point, KcGePoint3d& result, Convert convert) {
    const kcad_point in = {point.x, point.y, point.z};
    kcad_point out = {0.0, 0.0, 0.0};
    if (!convert(in, out)) return false;
    result.set(out[0], out[1], out[2]);
    return true;
}

}  // namespace

bool uc2wc(const kcad_point point, kcad_point result, bool displacement) {
    return transform(point, systemCode(kUcs), systemCode(kWorld), displacement, result);
}

bool wc2uc(const kcad_point point, kcad_point result, bool displacement) {
    return transform(point, systemCode(kWorld), systemCode(kUcs), displacement, result);
}

bool ec2uc(const kcad_point point, const kcad_point extrusion, kcad_point result, bool displacement) {
    return transform(point, extrusionSystem(extrusion), systemCode(kUcs), displacement, result);
}

bool uc2ec(const kcad_point point, const kcad_point extrusion, kcad_point result, bool displacement) {
    return transform(point, systemCode(kUcs), extrusionSystem(extrusion), displacement, result);
}

bool uc2wc(const KcGePoint3d& point, KcGePoint3d& result, bool displacement) {
    return viaArrays(point, result, [&](const double* in, double* out) { return uc2wc(in, out, displacement); });
}

bool wc2uc(const KcGePoint3d& point, KcGePoint3d& result, bool displacement) {
    return viaArrays(point, result, [&](const double* in, double* out) { return wc2uc(in, out, displacement); });
}

bool ec2uc(const KcGePoint3d& point, const KcGeVector3d& extrusion, KcGePoint3d& result, bool displacement) {
    const kcad_point normal = {extrusion.x, extrusion.y, extrusion.z};
    return viaArrays(point, result, [&](const double* in, double* out) { return ec2uc(in, normal, out, displacement); });
}

bool uc2ec(const KcGePoint3d& point, const KcGeVector3d& extrusion, KcGePoint3d& result, bool displacement) {
    const kcad_point normal = {extrusion.x, extrusion.y, extrusion.z};
    return viaArrays(point, result, [&](const double* in, double* out) { return uc2ec(in, normal, out, displacement); });
}

void uc2wcMatrix(KcGeMatrix3d& matrix) {
    if (kcedGetCurrentUCS(matrix) != Kcad::eOk) matrix.setToIdentity();
}

void wc2ucMatrix(KcGeMatrix3d& matrix) {
    KcGeMatrix3d ucsToWcs;
    uc2wcMatrix(ucsToWcs);
    matrix = ucsToWcs.isSingular() ? KcGeMatrix3d() : ucsToWcs.inverse();
}

void getUcsToWcsOriginMatrix(KcGeMatrix3d& matrix, const KcGePoint3d& origin, const KcDbDatabase* database) {
    matrix.setToIdentity();
    if (!database) return;
    const KcGeVector3d xAxis = database->ucsxdir();
    const KcGeVector3d yAxis = database->ucsydir();
    if (xAxis.isZeroLength() || yAxis.isZeroLength()) return;
    const KcGeVector3d zAxis = xAxis.crossProduct(yAxis).normal();
    matrix.setToAlignCoordSys(origin, xAxis.normal(), yAxis.normal(), zAxis, KcGePoint3d::kOrigin,
                              KcGeVector3d::kXAxis, KcGeVector3d::kYAxis, KcGeVector3d::kZAxis);
}

void TransDependOnUcs(KcGeMatrix3d& matrix) {
    KcGeMatrix3d ucsToWcs;
    KcGeMatrix3d wcsToUcs;
    uc2wcMatrix(ucsToWcs);
    wc2ucMatrix(wcsToUcs);
    matrix = ucsToWcs * matrix * wcsToUcs;
}

int krxZoom(const KcGePoint3d& minCorner, const KcGePoint3d& maxCorner) {
    resbuf viewMode{};
    if (kcedGetVar(L"VIEWMODE", &viewMode) == RTNORM && viewMode.restype == RTSHORT &&
        (viewMode.resval.rint & kPerspectiveBit) != 0) {
        return RTERROR;
    }
    // The window is the box's outline as the view (VIEWDIR, TARGET, VIEWTWIST) sees it.
    constexpr double inf = std::numeric_limits<double>::infinity();
    kcad_point low = {inf, inf, inf};
    kcad_point high = {-inf, -inf, -inf};
    const resbuf world = systemCode(kWorld);
    const resbuf display = systemCode(kDisplay);
    const resbuf ucs = systemCode(kUcs);
    for (int corner = 0; corner < 8; ++corner) {
        const kcad_point point = {(corner & 1) ? maxCorner.x : minCorner.x, (corner & 2) ? maxCorner.y : minCorner.y,
                                  (corner & 4) ? maxCorner.z : minCorner.z};
        kcad_point seen = {0.0, 0.0, 0.0};
        if (!transform(point, world, display, false, seen)) return RTERROR;
        for (int i = 0; i < 3; ++i) {
            low[i] = std::min(low[i], seen[i]);
            high[i] = std::max(high[i], seen[i]);
        }
    }
    low[2] = high[2] = 0.0;
    kcad_point first = {0.0, 0.0, 0.0};
    kcad_point second = {0.0, 0.0, 0.0};
    if (!transform(low, display, ucs, false, first) || !transform(high, display, ucs, false, second)) return RTERROR;
    int savedEcho = 0;
    PrepareCmdEcho echo(savedEcho);
    return kcedCommand(RTSTR, L"_.ZOOM", RTSTR, L"_W", RT3DPOINT, first, RT3DPOINT, second, RTNONE);
}
