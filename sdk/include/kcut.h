// Utility functions of the host API: printing on the command line and small
// geometric helpers on points.
#pragma once

#include "kcadstd.h"

// Prints to the command line. "%s" and "%ls" both take a wide string.
int kcutPrintf(const wchar_t* format, ...);
// Angle from `from` to `to` in the XY plane, in [0, 2 pi); equal points give 0.
double kcutAngle(const kcad_point from, const kcad_point to);
double kcutDistance(const kcad_point a, const kcad_point b);
void kcutPolar(const kcad_point origin, double angle, double distance, kcad_point result);
// Windows-style conversions: leading blanks skipped, stops at the first invalid character.
double _wtof(const wchar_t* text);
int _wtoi(const wchar_t* text);
