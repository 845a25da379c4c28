// Pictures of drawings: the current space of a drawing drawn into a PNG, SVG or
// PDF file through QPainter, or into an image in memory. Model space is drawn
// as the plan view of the world (x right, y up) fitted to the extents of what
// is shown, with a margin; a layout is drawn as its paper space, the contents
// of its viewports seen through them. Colour 7 is drawn in the foreground
// colour: black on the default white background, white on the dark one.
//
// Qt painting needs the application object on the calling thread
// (fonts/GuiApplication.h); without it the functions fail with a message.
#pragma once

#include <QImage>
#include <QTransform>

#include <optional>
#include <string>

#include "db/Drawing.h"

namespace korva::render {

enum class Background { White, Dark };

// Which space is drawn: the current one ($TILEMODE 1: model space, else the
// current layout), or one of them whatever the drawing says.
enum class PictureSpace { Current, Model, Layout };

struct RenderOptions {
    int longSide = 1600;             // pixels along the longer side of the picture (16 to 16384)
    double dotsPerInch = 96.0;       // resolution at which lineweights become pixels
    double marginFraction = 0.03;    // blank border on each side, a fraction of the long side
    Background background = Background::White;
    PictureSpace space = PictureSpace::Current;
    bool antialiasing = true;
};

// The picture's size and where the drawing lands in it: view coordinates (the
// world's x and y in model space, paper coordinates in a layout) to pixels, y down.
struct PictureFrame {
    int width = 0;
    int height = 0;
    QTransform viewToPicture;
    const db::ObjectRecord* space = nullptr;  // the block record drawn
    bool layout = false;                      // paper space with viewports
};

// Chooses the space and fits its extents into the picture. Nothing when there is no
// space to draw or the options are out of range (error says why).
std::optional<PictureFrame> framePicture(const db::Drawing& drawing, const RenderOptions& options, std::string& error);

struct RenderedImage {
    QImage image;  // ARGB32, premultiplied
    PictureFrame frame;
};

std::optional<RenderedImage> renderImage(const db::Drawing& drawing, const RenderOptions& options, std::string& error);

// Draws into a file whose extension (any case) chooses the format: .png, .svg or
// .pdf. The file is replaced only when the whole picture is written. False with a
// message naming the file on failure (unknown extension, no Qt application, a
// file that cannot be written).
bool renderDrawing(const db::Drawing& drawing, const std::string& path, const RenderOptions& options,
                   std::string& error);

}  // namespace korva::render
