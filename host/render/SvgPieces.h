// An SVG picture painted in pieces: QSvgGenerator writes no clip paths, so
// each clipped stretch of drawing (the model space seen through a viewport) is
// painted into a document of its own and the pieces are joined, in drawing
// order, into one document where the clipped pieces sit in groups with a
// clip path. Unclipped pictures are a single piece, the generator's own document.
#pragma once

#include <QBuffer>
#include <QByteArray>
#include <QSize>
#include <QSvgGenerator>

#include <memory>
#include <optional>
#include <vector>

#include "render/PaintTarget.h"

namespace korva::render {

class SvgPieces final : public PaintTarget {
public:
    SvgPieces(QSize size, int dotsPerInch);
    ~SvgPieces() override;

    QPainter& painter() override { return *painter_; }
    void beginClip(const QPainterPath& area) override;
    void endClip() override;

    // Ends the last piece and joins the pieces; nothing when a piece could not be painted.
    std::optional<QByteArray> finish();

private:
    struct Piece {
        QByteArray document;
        std::optional<QPainterPath> clip;
    };

    void startPiece();
    bool endPiece(std::optional<QPainterPath> clip);

    QSize size_;
    int dotsPerInch_;
    std::unique_ptr<QBuffer> buffer_;
    std::unique_ptr<QSvgGenerator> generator_;
    std::unique_ptr<QPainter> painter_;
    std::vector<Piece> pieces_;
    QPainterPath clip_;
    bool failed_ = false;
};

}  // namespace korva::render
