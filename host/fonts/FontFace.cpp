// Loading a font and reading its glyphs into cap-height units.
#include "fonts/FontFace.h"

#include <QCoreApplication>
#include <QFont>
#include <QGuiApplication>
#include <QRawFont>
#include <QTransform>

#include <cmath>

namespace korva::fonts {

namespace {

// Fonts are read without hinting at one pixel per font unit (the em size),
// where Qt's 1/64-pixel fixed point holds the font's integer metrics exactly;
// this size serves to find the em size.
constexpr int kFirstPixels = 1000;

// The calling thread's font engines, by source key (see the note on threads in the header).
thread_local std::unordered_map<std::string, QRawFont> t_rawFonts;

QRawFont loadRawFont(const FontSource& source, int pixels) {
    if (!source.file.isEmpty()) return QRawFont(source.file, pixels, QFont::PreferNoHinting);
    QFont font(source.family);
    font.setPixelSize(pixels);
    font.setBold(source.bold);
    font.setItalic(source.italic);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::NoFontMerging);
    return QRawFont::fromFont(font);
}

// Signed area of a path's closed polygons: positive when they turn counter-clockwise (y up).
double signedArea(const QPainterPath& path) {
    double area = 0.0;
    for (const QPolygonF& polygon : path.toSubpathPolygons()) {
        for (int i = 0; i < polygon.size(); ++i) {
            const QPointF& a = polygon[i];
            const QPointF& b = polygon[(i + 1) % polygon.size()];
            area += a.x() * b.y() - b.x() * a.y();
        }
    }
    return area / 2.0;
}

quint32 glyphIndex(const QRawFont& raw, char32_t character) {
    const QVector<quint32> indexes = raw.glyphIndexesForString(QString::fromUcs4(&character, 1));
    return indexes.isEmpty() ? 0 : indexes.first();
}

}  // namespace

std::string FontSource::key() const {
    if (!file.isEmpty()) return "file:" + file.toStdString();
    return "family:" + family.toStdString() + (bold ? ":bold" : "") + (italic ? ":italic" : "");
}

bool fontEnginesUsable() { return qobject_cast<QGuiApplication*>(QCoreApplication::instance()) != nullptr; }

void releaseThreadFonts() { t_rawFonts.clear(); }

FontFace::FontFace(FontSource source, std::shared_ptr<const FontFace> fallback)
    : source_(std::move(source)), key_(source_.key()), fallback_(std::move(fallback)) {}

std::shared_ptr<const FontFace> FontFace::load(const FontSource& source, std::shared_ptr<const FontFace> fallback) {
    std::shared_ptr<FontFace> face(new FontFace(source, std::move(fallback)));
    face->pixels_ = kFirstPixels;
    const QRawFont* raw = face->rawFont();
    if (!raw) return nullptr;
    const int unitsPerEm = static_cast<int>(std::lround(raw->unitsPerEm()));
    if (unitsPerEm >= 16 && unitsPerEm != face->pixels_) {
        t_rawFonts.erase(face->key_);
        face->pixels_ = unitsPerEm;
        raw = face->rawFont();
    }
    if (!raw || !face->readFontMetrics(*raw)) return nullptr;
    return face;
}

QRawFont* FontFace::rawFont() const {
    auto found = t_rawFonts.find(key_);
    if (found == t_rawFonts.end()) {
        if (!fontEnginesUsable()) return nullptr;
        found = t_rawFonts.emplace(key_, loadRawFont(source_, pixels_)).first;
    }
    return found->second.isValid() ? &found->second : nullptr;
}

bool FontFace::readFontMetrics(const QRawFont& raw) {
    familyName_ = raw.familyName();
    styleName_ = raw.styleName();
    const QPainterPath capital = raw.pathForGlyph(glyphIndex(raw, U'H'));
    capHeightPixels_ = raw.capHeight();  // the OS/2 table's, else the height of "H"
    if (!(capHeightPixels_ > 0.0)) capHeightPixels_ = capital.boundingRect().height();
    if (!(capHeightPixels_ > 0.0)) capHeightPixels_ = raw.ascent() * 0.7;  // a font without capitals
    if (!(capHeightPixels_ > 0.0)) return false;
    // Qt's underline position is the distance of the line's centre below the baseline.
    underlineCentre_ = -raw.underlinePosition() / capHeightPixels_;
    lineThickness_ = raw.lineThickness() / capHeightPixels_;
    if (!(lineThickness_ > 0.0)) lineThickness_ = 0.07;
    if (!(underlineCentre_ < 0.0)) underlineCentre_ = -0.15;
    // Qt's outlines are y down: mirrored to y up, the turn reverses.
    if (!capital.isEmpty()) clockwise_ = signedArea(capital) > 0.0;
    return true;
}

Glyph FontFace::readGlyph(const QRawFont& raw, char32_t character) const {
    const quint32 index = glyphIndex(raw, character);
    const double scale = 1.0 / capHeightPixels_;
    Glyph glyph;
    const QVector<QPointF> advances = raw.advancesForGlyphIndexes(QVector<quint32>{index}, QRawFont::UseDesignMetrics);
    if (!advances.isEmpty()) glyph.advance = advances.first().x() * scale;
    glyph.outline = QTransform(scale, 0.0, 0.0, -scale, 0.0, 0.0).map(raw.pathForGlyph(index));
    glyph.outline.setFillRule(Qt::WindingFill);
    if (!glyph.outline.isEmpty()) {
        const QRectF ink = glyph.outline.boundingRect();
        glyph.hasInk = true;
        glyph.left = ink.left();
        glyph.right = ink.right();
        glyph.bottom = ink.top();  // QRectF's top is its smallest y
        glyph.top = ink.bottom();
    }
    return glyph;
}

const Glyph* FontFace::glyph(char32_t character) const { return findGlyph(character, false); }

const Glyph* FontFace::findGlyph(char32_t character, bool onlyInFont) const {
    std::lock_guard<std::mutex> lock(mutex_);
    auto found = glyphs_.find(character);
    if (found == glyphs_.end()) {
        const QRawFont* raw = rawFont();
        if (!raw) return nullptr;
        CachedGlyph entry;
        entry.inFont = raw->supportsCharacter(static_cast<uint>(character));
        // The fallback never has a fallback of its own, so this never locks back into this face.
        const Glyph* substitute = entry.inFont || !fallback_ ? nullptr : fallback_->findGlyph(character, true);
        entry.glyph = substitute ? *substitute : readGlyph(*raw, character);
        found = glyphs_.emplace(character, std::move(entry)).first;
    }
    if (onlyInFont && !found->second.inFont) return nullptr;
    return &found->second.glyph;
}

}  // namespace korva::fonts
