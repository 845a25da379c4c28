// Painting a drawing and writing the picture: PNG through QImage, SVG through
// QSvgGenerator (in pieces where viewports clip, SvgPieces.h), PDF through QPdfWriter (one page the size of the picture at
// the options' resolution, so that lineweights keep their real width). Every
// format is written through QSaveFile, so a failed picture leaves an old file as
// it was.
#include "render/RenderDrawing.h"

#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <filesystem>

#include "fonts/GuiApplication.h"
#include "render/Canvas.h"
#include "render/EntityPainters.h"
#include "render/SceneRenderer.h"
#include "render/SvgPieces.h"

namespace korva::render {

namespace {

enum class Format { Png, Svg, Pdf, Unknown };

Format formatOf(const std::string& path, std::string& extension) {
    extension = std::filesystem::path(path).extension().string();
    std::string lower = extension;
    std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) { return std::tolower(c); });
    if (lower == ".png") return Format::Png;
    if (lower == ".svg") return Format::Svg;
    if (lower == ".pdf") return Format::Pdf;
    return Format::Unknown;
}

// Draws the frame's space on a target whose coordinates are the picture's pixels.
void paint(PaintTarget& target, const db::Drawing& drawing, const PictureFrame& frame, const RenderOptions& options) {
    StyleResolver styles(drawing, options);
    const QRectF area(0.0, 0.0, frame.width, frame.height);
    target.painter().fillRect(area, styles.background());
    target.painter().setRenderHint(QPainter::Antialiasing, options.antialiasing);
    Canvas canvas(target, area, styles);
    const SceneSettings settings = sceneSettingsOf(drawing);
    SceneRenderer scene(drawing, canvas, styles, settings);
    scene.drawSpace(*frame.space, Placement(KcGeMatrix3d(), frame.viewToPicture), frame.layout);
}

void paintImage(QImage& image, const db::Drawing& drawing, const PictureFrame& frame, const RenderOptions& options) {
    QPainter painter(&image);
    PainterTarget target(painter);
    paint(target, drawing, frame, options);
}

bool writePng(const db::Drawing& drawing, const PictureFrame& frame, const RenderOptions& options, QSaveFile& file) {
    QImage image(frame.width, frame.height, QImage::Format_ARGB32_Premultiplied);
    paintImage(image, drawing, frame, options);
    // The background is opaque: an RGB picture is smaller.
    return image.convertToFormat(QImage::Format_RGB32).save(&file, "PNG");
}

bool writeSvg(const db::Drawing& drawing, const PictureFrame& frame, const RenderOptions& options, QSaveFile& file) {
    SvgPieces pieces(QSize(frame.width, frame.height), static_cast<int>(std::lround(options.dotsPerInch)));
    paint(pieces, drawing, frame, options);
    const std::optional<QByteArray> document = pieces.finish();
    return document && file.write(*document) == document->size();
}

bool writePdf(const db::Drawing& drawing, const PictureFrame& frame, const RenderOptions& options, QSaveFile& file) {
    QPdfWriter writer(&file);
    const double pointsPerPixel = 72.0 / options.dotsPerInch;
    writer.setPageSize(QPageSize(QSizeF(frame.width * pointsPerPixel, frame.height * pointsPerPixel),
                                 QPageSize::Point, QString(), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    writer.setResolution(static_cast<int>(std::lround(options.dotsPerInch)));
    writer.setTitle(QStringLiteral("Drawing"));
    QPainter painter;
    if (!painter.begin(&writer)) return false;
    // The page holds whole points: scale the picture onto what it got.
    painter.scale(writer.width() / static_cast<double>(frame.width), writer.height() / static_cast<double>(frame.height));
    PainterTarget target(painter);
    paint(target, drawing, frame, options);
    return painter.end();
}

}  // namespace

std::optional<RenderedImage> renderImage(const db::Drawing& drawing, const RenderOptions& options, std::string& error) {
    if (!fonts::guiAvailable()) {
        error = "pictures need the Qt application on this thread";
        return std::nullopt;
    }
    std::optional<PictureFrame> frame = framePicture(drawing, options, error);
    if (!frame) return std::nullopt;
    RenderedImage rendered{QImage(frame->width, frame->height, QImage::Format_ARGB32_Premultiplied), *frame};
    paintImage(rendered.image, drawing, *frame, options);
    return rendered;
}

bool renderDrawing(const db::Drawing& drawing, const std::string& path, const RenderOptions& options,
                   std::string& error) {
    auto fail = [&](const std::string& reason) {
        error = "cannot render \"" + path + "\": " + reason;
        return false;
    };
    std::string extension;
    const Format format = formatOf(path, extension);
    if (format == Format::Unknown) {
        return fail(extension.empty() ? "the file name has no extension (use .png, .svg or .pdf)"
                                      : "unknown picture format \"" + extension + "\" (use .png, .svg or .pdf)");
    }
    if (!fonts::guiAvailable()) return fail("pictures need the Qt application on this thread");
    std::string reason;
    const std::optional<PictureFrame> frame = framePicture(drawing, options, reason);
    if (!frame) return fail(reason);
    QSaveFile file(QString::fromStdString(path));
    if (!file.open(QIODevice::WriteOnly)) return fail(file.errorString().toStdString());
    bool written = false;
    switch (format) {
        case Format::Png: written = writePng(drawing, *frame, options, file); break;
        case Format::Svg: written = writeSvg(drawing, *frame, options, file); break;
        default: written = writePdf(drawing, *frame, options, file); break;
    }
    if (!written) {
        file.cancelWriting();
        return fail(file.error() != QFileDevice::NoError ? file.errorString().toStdString() : "the picture could not be drawn");
    }
    if (!file.commit()) return fail(file.errorString().toStdString());
    return true;
}

}  // namespace korva::render
