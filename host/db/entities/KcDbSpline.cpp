// SPLINE (AcDbSpline): 70 flags (1 closed, 2 periodic, 4 rational), 71
// degree, repeated 40 knots, 41 weights, 10 control points and 11 fit points
// (world coordinates), 44 fit tolerance. Counts are those of the groups
// present, which is what the curve is made of even when 72 to 74 disagree.
#include "db/entities/EntityFields.h"

namespace db = korva::db;

namespace {

constexpr std::string_view kSpline = "AcDbSpline";

Kcad::ErrorStatus repeatedPoint(const korva::db::ObjectRecord& record, int code, int index, KcGePoint3d& point) {
    db::TagRef tag;
    if (index < 0 || !db::nthField(record, kSpline, code, static_cast<size_t>(index), tag)) {
        return Kcad::eInvalidInput;
    }
    point = tag.point();
    return Kcad::eOk;
}

}  // namespace

int KcDbSpline::degree() const { return static_cast<int>(db::fieldInteger(record(), kSpline, 71, 3)); }
bool KcDbSpline::isRational() const { return db::flagField(record(), kSpline, 70, 4); }
bool KcDbSpline::isClosed() const { return db::flagField(record(), kSpline, 70, 1); }
bool KcDbSpline::isPeriodic() const { return db::flagField(record(), kSpline, 70, 2); }

int KcDbSpline::numFitPoints() const { return static_cast<int>(db::fieldsOf(record(), kSpline, 11).size()); }

Kcad::ErrorStatus KcDbSpline::getFitPointAt(int index, KcGePoint3d& point) const {
    return repeatedPoint(record(), 11, index, point);
}

int KcDbSpline::numControlPoints() const { return static_cast<int>(db::fieldsOf(record(), kSpline, 10).size()); }

Kcad::ErrorStatus KcDbSpline::getControlPointAt(int index, KcGePoint3d& point) const {
    return repeatedPoint(record(), 10, index, point);
}

int KcDbSpline::numKnots() const { return static_cast<int>(db::fieldsOf(record(), kSpline, 40).size()); }

// 0 outside the knot vector.
double KcDbSpline::knotAt(int index) const {
    db::TagRef tag;
    if (index < 0 || !db::nthField(record(), kSpline, 40, static_cast<size_t>(index), tag)) return 0.0;
    return tag.real();
}

// Control points without a weight group weigh 1.
double KcDbSpline::weightAt(int index) const {
    db::TagRef tag;
    if (index < 0 || !db::nthField(record(), kSpline, 41, static_cast<size_t>(index), tag)) return 1.0;
    return tag.real();
}

double KcDbSpline::fitTolerance() const { return db::fieldReal(record(), kSpline, 44, 1e-10); }
