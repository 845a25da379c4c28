// Painting SVG pieces and joining them. The generator's document is a header
// (up to the group that opens the drawing, after its defs), the drawing, and
// the closing "</g>" and "</svg>"; a joined document is the first piece's header,
// every piece's drawing, and the close.
#include "render/SvgPieces.h"

namespace korva::render {

namespace {

struct DocumentParts {
    QByteArray header;
    QByteArray body;
};

std::optional<DocumentParts> splitDocument(const QByteArray& document) {
    const int defs = document.indexOf("</defs>");
    const int group = defs < 0 ? -1 : document.indexOf("<g ", defs);
    const int bodyStart = group < 0 ? -1 : document.indexOf('\n', group);
    const int svgEnd = document.lastIndexOf("</svg>");
    const int bodyEnd = svgEnd < 0 ? -1 : document.lastIndexOf("</g>", svgEnd);
    if (bodyStart < 0 || bodyEnd < bodyStart) return std::nullopt;
    return DocumentParts{document.left(bodyStart + 1), document.mid(bodyStart + 1, bodyEnd - bodyStart - 1)};
}

// SVG path data of a painter path.
QByteArray pathData(const QPainterPath& path) {
    QByteArray data;
    auto number = [&data](double value) { data += QByteArray::number(value, 'f', 3) + ' '; };
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        if (e.isMoveTo()) {
            if (i > 0) data += "Z ";
            data += "M ";
        } else if (e.isLineTo()) {
            data += "L ";
        } else if (e.isCurveTo()) {
            data += "C ";
        }
        number(e.x);
        number(e.y);
    }
    if (!path.isEmpty()) data += 'Z';
    return data;
}

}  // namespace

SvgPieces::SvgPieces(QSize size, int dotsPerInch) : size_(size), dotsPerInch_(dotsPerInch) { startPiece(); }

SvgPieces::~SvgPieces() {
    if (painter_) painter_->end();
}

void SvgPieces::startPiece() {
    buffer_ = std::make_unique<QBuffer>();
    buffer_->open(QIODevice::WriteOnly);
    generator_ = std::make_unique<QSvgGenerator>();
    generator_->setOutputDevice(buffer_.get());
    generator_->setSize(size_);
    generator_->setViewBox(QRect(QPoint(0, 0), size_));
    generator_->setResolution(dotsPerInch_);
    generator_->setTitle(QStringLiteral("Drawing"));
    painter_ = std::make_unique<QPainter>();
    if (!painter_->begin(generator_.get())) failed_ = true;
}

bool SvgPieces::endPiece(std::optional<QPainterPath> clip) {
    const bool ended = painter_->end();
    painter_.reset();
    generator_.reset();
    pieces_.push_back({buffer_->data(), std::move(clip)});
    buffer_.reset();
    if (!ended) failed_ = true;
    return ended;
}

void SvgPieces::beginClip(const QPainterPath& area) {
    const QPainter::RenderHints hints = painter_->renderHints();
    endPiece(std::nullopt);
    clip_ = area;
    startPiece();
    painter_->setRenderHints(hints);
}

void SvgPieces::endClip() {
    const QPainter::RenderHints hints = painter_->renderHints();
    endPiece(clip_);
    startPiece();
    painter_->setRenderHints(hints);
}

std::optional<QByteArray> SvgPieces::finish() {
    endPiece(std::nullopt);
    if (failed_ || pieces_.empty()) return std::nullopt;
    if (pieces_.size() == 1) return pieces_.front().document;
    std::optional<DocumentParts> first = splitDocument(pieces_.front().document);
    if (!first) return std::nullopt;
    // Clip paths are not part of the tiny profile the generator declares.
    QByteArray joined = first->header.replace("version=\"1.2\" baseProfile=\"tiny\"", "version=\"1.1\"");
    int clips = 0;
    for (const Piece& piece : pieces_) {
        const std::optional<DocumentParts> parts = splitDocument(piece.document);
        if (!parts) return std::nullopt;
        if (!piece.clip) {
            joined += parts->body;
            continue;
        }
        const QByteArray id = "clip" + QByteArray::number(++clips);
        joined += "<clipPath id=\"" + id + "\"><path d=\"" + pathData(*piece.clip) + "\"/></clipPath>\n";
        joined += "<g clip-path=\"url(#" + id + ")\">\n" + parts->body + "</g>\n";
    }
    joined += "</g>\n</svg>\n";
    return joined;
}

}  // namespace korva::render
