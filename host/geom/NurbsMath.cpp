// NURBS curves (declared in CurveMath.h): validation, de Boor evaluation in homogeneous
// coordinates, and extents by dense sampling refined with a golden-section search.
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "geom/CurveMath.h"

namespace korva::geom {
namespace {

struct Homogeneous {
    double x, y, z, w;
};

Homogeneous blend(const Homogeneous& a, const Homogeneous& b, double alpha) {
    double keep = 1.0 - alpha;
    return {keep * a.x + alpha * b.x, keep * a.y + alpha * b.y, keep * a.z + alpha * b.z,
            keep * a.w + alpha * b.w};
}

bool allFinite(const std::vector<double>& values) {
    return std::all_of(values.begin(), values.end(), [](double v) { return std::isfinite(v); });
}

// A curve whose data passed isValidNurbs; evaluation then needs no further checks.
class NurbsCurve {
public:
    NurbsCurve(int degree, const std::vector<double>& knots, const std::vector<KcGePoint3d>& points,
               const std::vector<double>& weights)
        : m_degree(static_cast<std::size_t>(degree)), m_knots(knots), m_points(points), m_weights(weights) {}

    double domainStart() const { return m_knots[m_degree]; }
    double domainEnd() const { return m_knots[m_points.size()]; }

    // Knot spans [knots[k], knots[k + 1]] that carry curve, in order.
    std::vector<std::size_t> nonEmptySpans() const {
        std::vector<std::size_t> spans;
        for (std::size_t k = m_degree; k < m_points.size(); ++k)
            if (m_knots[k] < m_knots[k + 1]) spans.push_back(k);
        return spans;
    }

    double knot(std::size_t i) const { return m_knots[i]; }

    KcGePoint3d at(double t) const {
        t = std::clamp(t, domainStart(), domainEnd());
        std::size_t span = spanOf(t);
        std::vector<Homogeneous> d(m_degree + 1);
        for (std::size_t j = 0; j <= m_degree; ++j) d[j] = homogeneous(j + span - m_degree);
        for (std::size_t r = 1; r <= m_degree; ++r)
            for (std::size_t j = m_degree; j >= r; --j) {
                std::size_t i = j + span - m_degree;
                double alpha = (t - m_knots[i]) / (m_knots[i + m_degree + 1 - r] - m_knots[i]);
                d[j] = blend(d[j - 1], d[j], alpha);
            }
        const Homogeneous& h = d[m_degree];
        return {h.x / h.w, h.y / h.w, h.z / h.w};
    }

private:
    Homogeneous homogeneous(std::size_t i) const {
        double w = m_weights.empty() ? 1.0 : m_weights[i];
        const KcGePoint3d& p = m_points[i];
        return {p.x * w, p.y * w, p.z * w, w};
    }

    // The span k in [degree, count - 1] with knots[k] <= t < knots[k + 1]; at the domain
    // end, the last non-empty span, because de Boor divides by the span's width.
    std::size_t spanOf(double t) const {
        auto first = m_knots.begin() + static_cast<std::ptrdiff_t>(m_degree + 1);
        auto last = m_knots.begin() + static_cast<std::ptrdiff_t>(m_points.size());
        std::size_t span = static_cast<std::size_t>(std::upper_bound(first, last, t) - m_knots.begin()) - 1;
        while (span > m_degree && m_knots[span] == m_knots[span + 1]) --span;
        return span;
    }

    std::size_t m_degree;
    const std::vector<double>& m_knots;
    const std::vector<KcGePoint3d>& m_points;
    const std::vector<double>& m_weights;
};

std::vector<double> sampleParameters(const NurbsCurve& curve, int samplesPerSpan) {
    std::vector<double> params;
    for (std::size_t k : curve.nonEmptySpans()) {
        double start = curve.knot(k), width = curve.knot(k + 1) - start;
        for (int s = 0; s < samplesPerSpan; ++s) params.push_back(start + width * s / samplesPerSpan);
    }
    params.push_back(curve.domainEnd());
    return params;
}

// The parameter in [low, high] where sign * coordinate `axis` is largest, assuming one
// peak there. Golden-section search: each step keeps 0.618 of the interval, so 58 steps
// reach 1e-12 of it. A fixed count, because large knot values may not resolve that far.
double refineExtreme(const NurbsCurve& curve, int axis, double sign, double low, double high) {
    constexpr double kInvGolden = 0.6180339887498949;
    constexpr int kSteps = 58;
    auto value = [&](double t) { return sign * curve.at(t)[axis]; };
    double a = high - kInvGolden * (high - low), b = low + kInvGolden * (high - low);
    double valueA = value(a), valueB = value(b);
    for (int step = 0; step < kSteps; ++step) {
        if (valueA < valueB) {
            low = a, a = b, valueA = valueB;
            b = low + kInvGolden * (high - low), valueB = value(b);
        } else {
            high = b, b = a, valueB = valueA;
            a = high - kInvGolden * (high - low), valueA = value(a);
        }
    }
    return 0.5 * (low + high);
}

Box3d boxOfPoints(const std::vector<KcGePoint3d>& points) {
    Box3d box;
    for (const KcGePoint3d& p : points) box.add(p);
    return box;
}

}  // namespace

bool isValidNurbs(int degree, const std::vector<double>& knots, const std::vector<KcGePoint3d>& controlPoints,
                  const std::vector<double>& weights) {
    if (degree < 0 || controlPoints.size() <= static_cast<std::size_t>(degree)) return false;
    std::size_t count = controlPoints.size(), order = static_cast<std::size_t>(degree) + 1;
    if (knots.size() != count + order || !allFinite(knots) || !std::is_sorted(knots.begin(), knots.end()))
        return false;
    if (!(knots[order - 1] < knots[count])) return false;
    if (weights.empty()) return true;
    return weights.size() == count && allFinite(weights) &&
           std::all_of(weights.begin(), weights.end(), [](double w) { return w > 0.0; });
}

KcGePoint3d evaluateNurbs(int degree, const std::vector<double>& knots, const std::vector<KcGePoint3d>& controlPoints,
                          const std::vector<double>& weights, double t) {
    if (!isValidNurbs(degree, knots, controlPoints, weights))
        return controlPoints.empty() ? KcGePoint3d::kOrigin : controlPoints.front();
    return NurbsCurve(degree, knots, controlPoints, weights).at(t);
}

Box3d nurbsExtents(int degree, const std::vector<double>& knots, const std::vector<KcGePoint3d>& controlPoints,
                   const std::vector<double>& weights, int samplesPerSpan) {
    if (!isValidNurbs(degree, knots, controlPoints, weights)) return boxOfPoints(controlPoints);
    NurbsCurve curve(degree, knots, controlPoints, weights);
    std::vector<double> params = sampleParameters(curve, std::max(samplesPerSpan, 1));
    std::vector<KcGePoint3d> samples;
    for (double t : params) samples.push_back(curve.at(t));
    Box3d box = boxOfPoints(samples);
    for (int axis = 0; axis < 3; ++axis)
        for (double sign : {1.0, -1.0}) {
            auto best = std::max_element(samples.begin(), samples.end(), [&](const auto& p, const auto& q) {
                return sign * p[axis] < sign * q[axis];
            });
            std::size_t i = static_cast<std::size_t>(best - samples.begin());
            double low = params[i == 0 ? 0 : i - 1], high = params[std::min(i + 1, params.size() - 1)];
            box.add(curve.at(refineExtreme(curve, axis, sign, low, high)));
        }
    return box;
}

}  // namespace korva::geom
