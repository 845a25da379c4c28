// Tolerance comparisons and angle normalisation shared by the commands. The
// rules differ on purpose (relative against absolute tolerance, how a negative
// multiple of 2 pi reduces, which end of the circle an end angle may reach), so
// each function keeps exactly its own rule. Pure arithmetic: no host call.
#pragma once

#include "kcadstd.h"
#include "kcge.h"

// Relative comparison with e = 1e-10: when |b| <= e, |a| <= e; otherwise
// |a - b| <= |b * e|. Two exact zeros are equal.
bool KvRealEqual(double a, double b);
// Both angles reduced into [0, 2 pi] (a negative multiple of 2 pi reduces to 2 pi,
// not 0), then compared with KvRealEqual; two exact zeros are equal.
bool KvAngleEqual(double a, double b);
// The same reduction, then an absolute comparison: |a - b| < 1e-6.
bool kcadAngleEqual(double a, double b);
// KvRealEqual on x, y and z in turn.
bool KvPointEqual(const KcGePoint3d& p, const KcGePoint3d& q);
bool KvPointEqual(const kcad_point p, const kcad_point q);
// True for +0 and -0, false for infinities and NaN, false for subnormals,
// true for every other (normal) double.
bool kv_isvalid_real(double x);

// Normalise an arc's start angle (and its end angle when endAngle is not null)
// in place: an invalid or huge start becomes 0, the start is brought into
// [0, 2 pi) with a 1e-10 margin, the end into [0, 2 pi] (an end of exactly 2 pi
// stays 2 pi), and when the angles differ and end < start the end gains 2 pi so
// that the sweep is positive. Callers use the angles, not the returned pointer
// (which is startAngle). Null startAngle: nothing happens, null is returned.
double* normlizedAng(double* startAngle, double* endAngle = nullptr);
// Twin of normlizedAng with the same rule.
double* kv_normang(double* startAngle, double* endAngle = nullptr);
