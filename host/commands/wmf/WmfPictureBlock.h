// The block WMFIN makes of a metafile: an anonymous block ("*U", the database
// numbers it) whose base point is the picture's window origin, with the
// picture's y-down logical coordinates turned into y-up block coordinates at
// the size metafile/PictureMapping.h gives (scale 2 restores what WMFOUT
// wrote). Polylines become open LWPOLYLINEs (closed when they end where they
// start), each polygon contour a closed LWPOLYLINE, lines LINEs and pixels
// POINTs. Fills are not imported: filled shapes come in as their outlines (a
// wire frame), in the pen's colour, or the brush's where the pen is null.
// Shapes with neither pen nor brush draw nothing and are left out. Entities
// lie on the current layer; their colour is BYLAYER where it shows the
// layer's colour (WmfColors.h) and the true colour otherwise.
#pragma once

#include <cstddef>

#include "kcdbdatabase.h"
#include "metafile/MetafilePicture.h"
#include "metafile/PictureMapping.h"

namespace korva::commands::wmf {

struct PictureBlock {
    KcDbObjectId block;   // null when nothing could be made
    size_t entities = 0;  // what the block holds
};

PictureBlock makePictureBlock(KcDbDatabase& database, const metafile::MetafilePicture& picture,
                              const metafile::PictureMapping& mapping);

}  // namespace korva::commands::wmf
