// Colours between drawings and metafiles. WMFOUT writes each object in the
// colour it shows: BYLAYER takes its layer's colour, BYBLOCK the colour of the
// block reference (or dimension) it is drawn through, index colours their RGB
// from the standard palette, true colours themselves. A metafile is a picture
// on paper, so colour 7 (white on a dark screen, black on paper) is written
// black. WMFIN gives an imported shape no colour of its own (BYLAYER) when its
// pen shows the layer's colour so written, and that true colour otherwise.
#pragma once

#include <map>
#include <string>

#include "db/IndexColors.h"
#include "kcdbdatabase.h"

namespace korva::commands::wmf {

// The paper colour of an index colour (7 black, the palette for the others).
db::Rgb paperColorOfIndex(int index);

// The colour of a colour value where BYLAYER and BYBLOCK stand for the given colours.
db::Rgb resolveColor(const KcCmColor& color, const db::Rgb& layerColor, const db::Rgb& blockColor);

// What WMFOUT needs of the layers of a database: each layer's paper colour and
// whether its objects show (not off, not frozen). Read once per layer.
class LayerLook {
public:
    explicit LayerLook(KcDbDatabase* database) : database_(database) {}

    struct Look {
        db::Rgb color;
        bool shown = true;
    };
    const Look& of(const std::wstring& layer);

private:
    KcDbDatabase* database_;
    std::map<std::wstring, Look> looks_;
};

// The colour WMFIN gives a shape drawn in `pen` on a layer of colour `layerColor`:
// BYLAYER when the pen shows the layer's paper colour, the pen's true colour otherwise.
KcCmColor importedColor(const db::Rgb& pen, const KcCmColor& layerColor);

}  // namespace korva::commands::wmf
