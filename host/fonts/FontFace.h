// FontFace: one installed font as texts use it. Glyph metrics and outlines are
// kept in units of the font's cap height (CAD text height is the height of
// capital letters), y up, baseline at 0, so a text of height h is the glyphs
// scaled by h. Glyphs are read once per font and kept for the whole process;
// a character the font lacks is taken from the fallback font when that has it.
//
// Threads: Qt's font engines (FreeType faces) belong to the thread that loaded
// them, so each thread loads its own QRawFont from the font's source (a file
// through the platform font database's loader, or a family through QFont,
// both safe outside the GUI thread while a QGuiApplication exists; Qt guards
// its font database with a mutex and fontconfig is thread-safe). Only those
// per-thread engines touch Qt's font machinery; the glyph cache shared by all
// threads holds plain numbers and implicitly shared QPainterPaths behind a
// mutex. Nothing here needs the GUI thread, and cached glyphs are measured
// without Qt at all.
#pragma once

#include <QPainterPath>
#include <QString>

#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

class QRawFont;

namespace korva::fonts {

// Where a font comes from: a file, or a family as the font database names it.
struct FontSource {
    QString file;    // a font file's path; when empty, the family below
    QString family;
    bool bold = false;
    bool italic = false;

    std::string key() const;
};

// A glyph in cap-height units, y up: its advance, its ink box and its outline.
struct Glyph {
    double advance = 0.0;
    bool hasInk = false;
    double left = 0.0, right = 0.0, bottom = 0.0, top = 0.0;  // ink box; zero without ink
    QPainterPath outline;                                     // filled with the winding rule
};

class FontFace {
public:
    // Loads a font (null when it cannot be loaded or Qt cannot be used);
    // `fallback` gives the characters it lacks.
    static std::shared_ptr<const FontFace> load(const FontSource& source,
                                                std::shared_ptr<const FontFace> fallback = nullptr);

    const FontSource& source() const { return source_; }
    const QString& familyName() const { return familyName_; }
    const QString& styleName() const { return styleName_; }

    // The glyph of a character: the font's own, else the fallback's, else the
    // font's missing-glyph box. Null when the glyph is not cached yet and Qt
    // cannot be used from this thread. The glyph lives as long as the face.
    const Glyph* glyph(char32_t character) const;

    // Underline: the centre of the line below the baseline (negative) and its
    // thickness, in cap-height units.
    double underlineCentre() const { return underlineCentre_; }
    double lineThickness() const { return lineThickness_; }
    // Whether the outer contours of the glyphs run clockwise (y up); decorations
    // drawn beside them take the same turn so that the winding rule unites them.
    bool outerContoursClockwise() const { return clockwise_; }

    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;

private:
    FontFace(FontSource source, std::shared_ptr<const FontFace> fallback);

    struct CachedGlyph {
        Glyph glyph;
        bool inFont = false;  // the font has the character (else the glyph is substituted)
    };

    bool readFontMetrics(const QRawFont& raw);
    QRawFont* rawFont() const;
    Glyph readGlyph(const QRawFont& raw, char32_t character) const;
    // The cached or newly read glyph; with `onlyInFont`, null when the font lacks the character.
    const Glyph* findGlyph(char32_t character, bool onlyInFont) const;

    FontSource source_;
    std::string key_;
    std::shared_ptr<const FontFace> fallback_;
    QString familyName_;
    QString styleName_;
    int pixels_ = 0;                // the size the font is loaded at: its em size
    double capHeightPixels_ = 0.0;
    double underlineCentre_ = 0.0;
    double lineThickness_ = 0.0;
    bool clockwise_ = true;
    mutable std::mutex mutex_;
    mutable std::unordered_map<char32_t, CachedGlyph> glyphs_;  // node-based: glyphs never move
};

// Whether Qt's font machinery can be used from the calling thread (a
// QGuiApplication exists; see the note on threads above).
bool fontEnginesUsable();
// Drops the calling thread's font engines: before the application goes away,
// and before a QThread ends (a std::thread's engines go with it by themselves).
void releaseThreadFonts();

}  // namespace korva::fonts
