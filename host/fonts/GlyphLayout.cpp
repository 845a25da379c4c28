// Setting a text's glyphs and switches, and its box.
#include "fonts/GlyphLayout.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "db/TextCodes.h"

namespace korva::fonts {

namespace {

using Kind = db::TextElement::Kind;

// Where each bar runs: underline below the baseline, overline as far above the
// cap height, strike-through through the middle of the capitals.
double barCentre(Kind kind, const FontFace& face) {
    switch (kind) {
        case Kind::Underline: return face.underlineCentre();
        case Kind::Overline: return 1.0 - face.underlineCentre();
        default: return 0.5;
    }
}

class BarTracker {
public:
    explicit BarTracker(const FontFace& face) : face_(face) {}

    void toggle(Kind kind, double pen, std::vector<DecorationBar>& bars) {
        std::optional<double>& start = starts_[slot(kind)];
        if (start) {
            close(kind, *start, pen, bars);
            start.reset();
        } else {
            start = pen;
        }
    }

    void finish(double pen, std::vector<DecorationBar>& bars) {
        for (const Kind kind : {Kind::Underline, Kind::Overline, Kind::StrikeThrough}) {
            if (const std::optional<double>& start = starts_[slot(kind)]) close(kind, *start, pen, bars);
        }
    }

private:
    static size_t slot(Kind kind) { return static_cast<size_t>(kind) - 1; }

    void close(Kind kind, double from, double to, std::vector<DecorationBar>& bars) const {
        if (to > from) bars.push_back({from, to, barCentre(kind, face_), face_.lineThickness()});
    }

    const FontFace& face_;
    std::array<std::optional<double>, 3> starts_;
};

}  // namespace

std::optional<GlyphLayout> layoutGlyphs(std::string_view text, const FontFace& face) {
    GlyphLayout layout;
    BarTracker tracker(face);
    for (const db::TextElement& element : db::decodeTextElements(text)) {
        if (element.kind != Kind::Character) {
            tracker.toggle(element.kind, layout.advance, layout.bars);
            continue;
        }
        const Glyph* glyph = face.glyph(element.character);
        if (!glyph) return std::nullopt;
        layout.glyphs.push_back({glyph, layout.advance});
        layout.advance += glyph->advance;
    }
    tracker.finish(layout.advance, layout.bars);
    return layout;
}

QTransform textTransform(const db::TextStyleMetrics& style) {
    const double h = style.height;
    return QTransform(h * style.widthFactor, 0.0, h * std::tan(style.oblique), h, 0.0, 0.0);
}

db::TextBox textBoxOf(const GlyphLayout& layout, const db::TextStyleMetrics& style) {
    if (layout.glyphs.empty()) return {};
    double left = 0.0, right = layout.advance, bottom = 0.0, top = 1.0;  // 1: the cap height
    for (const PlacedGlyph& placed : layout.glyphs) {
        const Glyph& glyph = *placed.glyph;
        if (!glyph.hasInk) continue;
        left = std::min(left, placed.x + glyph.left);
        right = std::max(right, placed.x + glyph.right);
        bottom = std::min(bottom, glyph.bottom);
        top = std::max(top, glyph.top);
    }
    for (const DecorationBar& bar : layout.bars) {
        left = std::min(left, bar.from);
        right = std::max(right, bar.to);
        bottom = std::min(bottom, bar.centre - bar.thickness / 2.0);
        top = std::max(top, bar.centre + bar.thickness / 2.0);
    }
    const QTransform transform = textTransform(style);
    const QRectF box = transform.map(QPolygonF(QRectF(QPointF(left, bottom), QPointF(right, top)))).boundingRect();
    return {box.left(), box.right(), box.top(), box.bottom()};  // QRectF's top is its smallest y
}

}  // namespace korva::fonts
