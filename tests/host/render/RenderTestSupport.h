// Drawings for the renderer's tests, written as DXF text and read by the real
// reader, and the look-ups the tests make on rendered pictures: the pixel at a
// point of the drawing, and counts of coloured pixels in and around areas.
#pragma once

#include <QColor>

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "db/Drawing.h"
#include "render/RenderDrawing.h"

namespace korva::test {

// DXF text from (group code, value) pairs.
std::string dxfTags(std::initializer_list<std::pair<int, std::string_view>> tags);

// A current (AC1032) drawing: the empty template with these parts spliced in.
// Model space is the block record 1F and paper space 1B; the template's handles
// stay below 0x60, so tests use handles from 0x100.
struct DrawingParts {
    std::string entities;
    std::string layers;        // LAYER records
    std::string blockRecords;  // BLOCK_RECORD records
    std::string blocks;        // BLOCK ... ENDBLK
    std::string objects;       // objects appended to the OBJECTS section
    std::string modelSpaceDictionary;  // handle of an extension dictionary of model space, or empty
    bool layoutIsCurrent = false;      // $TILEMODE 0: the picture is the layout
};

std::string drawingDxf(const DrawingParts& parts);

// A block definition (its record, BLOCK and ENDBLK; handles record, record + 1,
// record + 2 in hexadecimal) holding the entities' DXF text.
void addBlock(DrawingParts& parts, std::string_view name, int recordHandle, std::string_view entities);

// A LAYER record: colour (negative: off), flags (1: frozen), optional lineweight.
std::string layerRecord(std::string_view name, int handle, int color, int flags = 0, int lineweight = -3);

std::unique_ptr<db::Drawing> loadDrawing(const std::string& dxf);

// Renders without antialiasing, so that pixels hold the exact colours drawn.
render::RenderedImage renderSharp(const db::Drawing& drawing, int longSide = 400, double dotsPerInch = 96.0);

// The pixel at a point of the view (world x, y in model space).
QColor colorAt(const render::RenderedImage& rendered, double x, double y);

// Pixels of the picture for which `select` holds, among those whose centre
// (mapped back into the view) satisfies `where`.
int countPixels(const render::RenderedImage& rendered, const std::function<bool(double x, double y)>& where,
                const std::function<bool(QColor)>& select);

inline bool isWhite(QColor c) { return c.red() == 255 && c.green() == 255 && c.blue() == 255; }
inline bool isInk(QColor c) { return !isWhite(c); }

}  // namespace korva::test
