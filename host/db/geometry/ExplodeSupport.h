// The per-type explode steps behind explodeEntity.
#pragma once

#include "db/geometry/PendingParts.h"
#include "kcadstd.h"

namespace korva::db::geometry {

Kcad::ErrorStatus explodeInsert(const ObjectRecord& insert, Parts& parts);       // ExplodeInsert.cpp
Kcad::ErrorStatus explodeDimension(const ObjectRecord& dimension, Parts& parts); // ExplodeInsert.cpp
Kcad::ErrorStatus explodePolyline(const ObjectRecord& polyline, Parts& parts);   // ExplodePolyline.cpp
Kcad::ErrorStatus explodeMText(const ObjectRecord& mtext, Parts& parts);         // ExplodeMText.cpp

}  // namespace korva::db::geometry
