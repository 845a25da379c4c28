// FontCatalog: which installed font a text style uses. Resolution, in order:
//
//  1. SHX fonts (a font file ending in ".shx" or with no extension, such as
//     "txt", "simplex.shx", "romans.shx") are outline fonts of their own that
//     the host does not read: they use the fallback font.
//  2. A TrueType or OpenType file name (group 3, "arial.ttf", "DejaVuSans.ttf")
//     found as that file (names compared without case) under the system font
//     folders (/usr/share/fonts, /usr/local/share/fonts, ~/.local/share/fonts,
//     ~/.fonts, in that order) is used as it is.
//  3. Else the family: the style's extended data ("ACAD" 1000, bold and italic
//     from 1071), else the family a common file name stands for ("arial.ttf" is
//     Arial, "timesbd.ttf" Times New Roman bold), else the file name without
//     its extension. The font database resolves it through fontconfig, which
//     maps families to metric-compatible ones (Arial to Liberation Sans, Times
//     New Roman to Liberation Serif, Courier New to Liberation Mono). A family
//     the database does not know (it answers with its generic default) is
//     unresolved.
//  4. Everything unresolved uses the fallback font: DejaVu Sans (the file
//     DejaVuSans.ttf of fonts-dejavu-core). It is installed everywhere the host
//     is, covers the Latin, Greek and Cyrillic letters and the symbols the %%
//     codes show (degree, plus/minus, diameter), and its wide, upright design is
//     close to the simple stroke fonts SHX styles name. It also gives the
//     characters other fonts lack.
//
// Resolved fonts are cached for the life of the process; resolution is
// thread-safe (FontFace.h says how threads use fonts).
#pragma once

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "db/TextMetrics.h"
#include "fonts/FontFace.h"

namespace korva::fonts {

inline constexpr std::string_view kFallbackFontFile = "DejaVuSans.ttf";
inline constexpr std::string_view kFallbackFontFamily = "DejaVu Sans";

class FontCatalog {
public:
    static FontCatalog& instance();

    // The font of a text style. Null only when no font can be loaded at all, or
    // when the style is not resolved yet and Qt cannot be used (measure with
    // the estimate then).
    std::shared_ptr<const FontFace> fontFor(const db::TextStyleMetrics& style);
    // The font unresolved styles use; null when not even that can be loaded.
    std::shared_ptr<const FontFace> fallbackFont();

    // The path of an installed font file by name (without case), if any.
    std::optional<std::string> findFontFile(std::string_view fileName);

private:
    FontCatalog() = default;

    std::shared_ptr<const FontFace> resolve(const db::TextStyleMetrics& style);
    std::shared_ptr<const FontFace> fallbackLocked();
    std::shared_ptr<const FontFace> byFamily(const QString& family, bool bold, bool italic);
    std::shared_ptr<const FontFace> faceFor(const FontSource& source, bool isFallback);
    const std::unordered_map<std::string, std::string>& fontFiles();

    std::mutex mutex_;
    std::unordered_map<std::string, std::shared_ptr<const FontFace>> byStyle_;
    std::unordered_map<std::string, std::shared_ptr<const FontFace>> bySource_;
    std::optional<std::unordered_map<std::string, std::string>> fontFiles_;  // lower-case name -> path
    std::shared_ptr<const FontFace> fallback_;
    bool fallbackSought_ = false;
    std::optional<QString> defaultFamily_;  // what the database answers for a family it does not know
};

}  // namespace korva::fonts
