// Font resolution: SHX names to the fallback, font files by name under the
// system font folders, families through the font database, and the cache.
#include "fonts/FontCatalog.h"

#include <QFont>
#include <QRawFont>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <vector>

namespace korva::fonts {

namespace {

// The families that common TrueType file names of drawings stand for.
struct KnownFontFile {
    std::string_view file;
    std::string_view family;
    bool bold = false;
    bool italic = false;
};

constexpr KnownFontFile kKnownFontFiles[] = {
    {"arial.ttf", "Arial"},
    {"arialbd.ttf", "Arial", true},
    {"ariali.ttf", "Arial", false, true},
    {"arialbi.ttf", "Arial", true, true},
    {"arialn.ttf", "Arial Narrow"},
    {"times.ttf", "Times New Roman"},
    {"timesbd.ttf", "Times New Roman", true},
    {"timesi.ttf", "Times New Roman", false, true},
    {"timesbi.ttf", "Times New Roman", true, true},
    {"cour.ttf", "Courier New"},
    {"courbd.ttf", "Courier New", true},
    {"couri.ttf", "Courier New", false, true},
    {"courbi.ttf", "Courier New", true, true},
    {"calibri.ttf", "Calibri"},
    {"calibrib.ttf", "Calibri", true},
    {"cambria.ttc", "Cambria"},
    {"consola.ttf", "Consolas"},
    {"georgia.ttf", "Georgia"},
    {"segoeui.ttf", "Segoe UI"},
    {"tahoma.ttf", "Tahoma"},
    {"trebuc.ttf", "Trebuchet MS"},
    {"verdana.ttf", "Verdana"},
};

// A family no font database knows: what the database answers for it is its generic default.
constexpr char kUnknownFamily[] = "korva-no-such-font-family";

std::string lowered(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), [](unsigned char c) { return std::tolower(c); });
    return out;
}

std::string_view trimmed(std::string_view text) {
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.front()))) text.remove_prefix(1);
    while (!text.empty() && std::isspace(static_cast<unsigned char>(text.back()))) text.remove_suffix(1);
    return text;
}

// The file name without any folders (drawings may keep "C:\fonts\arial.ttf").
std::string_view baseName(std::string_view path) {
    const size_t slash = path.find_last_of("/\\");
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

std::string_view extensionOf(std::string_view name) {
    const size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view() : name.substr(dot + 1);
}

std::string_view stemOf(std::string_view name) {
    const size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? name : name.substr(0, dot);
}

bool isShxName(std::string_view name) {
    const std::string extension = lowered(extensionOf(name));
    return extension.empty() || extension == "shx" || extension == "shp";
}

std::vector<std::filesystem::path> fontFolders() {
    std::vector<std::filesystem::path> folders{"/usr/share/fonts", "/usr/local/share/fonts"};
    const char* home = std::getenv("HOME");
    if (const char* data = std::getenv("XDG_DATA_HOME"); data && *data) {
        folders.emplace_back(std::filesystem::path(data) / "fonts");
    } else if (home && *home) {
        folders.emplace_back(std::filesystem::path(home) / ".local/share/fonts");
    }
    if (home && *home) folders.emplace_back(std::filesystem::path(home) / ".fonts");
    return folders;
}

// The font files of one folder tree, sorted so that duplicates resolve the same way every time.
std::vector<std::filesystem::path> fontFilesUnder(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    const auto options = std::filesystem::directory_options::skip_permission_denied;
    for (std::filesystem::recursive_directory_iterator it(folder, options, error), end; !error && it != end;
         it.increment(error)) {
        if (it->is_regular_file(error)) files.push_back(it->path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

QString toQString(std::string_view text) { return QString::fromUtf8(text.data(), static_cast<int>(text.size())); }

std::string styleKey(const db::TextStyleMetrics& style) {
    std::string key = lowered(trimmed(style.fontFile));
    key += '\n';
    key += trimmed(style.fontFamily);
    key += style.bold ? "\nb" : "\n-";
    key += style.italic ? "i" : "-";
    return key;
}

}  // namespace

FontCatalog& FontCatalog::instance() {
    static FontCatalog catalog;
    return catalog;
}

std::shared_ptr<const FontFace> FontCatalog::fontFor(const db::TextStyleMetrics& style) {
    const std::string key = styleKey(style);
    std::lock_guard<std::mutex> lock(mutex_);
    if (auto found = byStyle_.find(key); found != byStyle_.end()) return found->second;
    if (!fontEnginesUsable()) return nullptr;  // not cached: Qt may be usable later
    std::shared_ptr<const FontFace> face = resolve(style);
    byStyle_.emplace(key, face);  // null too: a system without fonts is not searched again for every text
    return face;
}

std::shared_ptr<const FontFace> FontCatalog::fallbackFont() {
    std::lock_guard<std::mutex> lock(mutex_);
    return fallbackLocked();
}

std::optional<std::string> FontCatalog::findFontFile(std::string_view fileName) {
    std::lock_guard<std::mutex> lock(mutex_);
    const auto& files = fontFiles();
    const auto found = files.find(lowered(baseName(trimmed(fileName))));
    if (found == files.end()) return std::nullopt;
    return found->second;
}

std::shared_ptr<const FontFace> FontCatalog::resolve(const db::TextStyleMetrics& style) {
    const std::string_view file = baseName(trimmed(style.fontFile));
    if (!file.empty() && isShxName(file)) return fallbackLocked();
    const std::string name = lowered(file);
    if (!name.empty()) {
        const auto& files = fontFiles();
        if (const auto found = files.find(name); found != files.end()) {
            if (auto face = faceFor({QString::fromStdString(found->second), {}, false, false}, false)) return face;
        }
    }
    QString family = toQString(trimmed(style.fontFamily));
    bool bold = style.bold, italic = style.italic;
    if (family.isEmpty() && !name.empty()) {
        const auto known = std::find_if(std::begin(kKnownFontFiles), std::end(kKnownFontFiles),
                                        [&](const KnownFontFile& k) { return k.file == name; });
        if (known != std::end(kKnownFontFiles)) {
            family = toQString(known->family);
            bold = bold || known->bold;
            italic = italic || known->italic;
        } else {
            family = toQString(stemOf(file));
        }
    }
    if (!family.isEmpty()) {
        if (auto face = byFamily(family, bold, italic)) return face;
    }
    return fallbackLocked();
}

std::shared_ptr<const FontFace> FontCatalog::byFamily(const QString& family, bool bold, bool italic) {
    if (!defaultFamily_) defaultFamily_ = QRawFont::fromFont(QFont(QString::fromLatin1(kUnknownFamily))).familyName();
    QFont font(family);
    font.setBold(bold);
    font.setItalic(italic);
    const QString answer = QRawFont::fromFont(font).familyName();
    if (answer.isEmpty()) return nullptr;
    if (answer.compare(family, Qt::CaseInsensitive) != 0 && answer == *defaultFamily_) return nullptr;
    return faceFor({QString(), answer, bold, italic}, false);
}

std::shared_ptr<const FontFace> FontCatalog::faceFor(const FontSource& source, bool isFallback) {
    const std::string key = source.key();
    if (auto found = bySource_.find(key); found != bySource_.end()) return found->second;
    std::shared_ptr<const FontFace> face = FontFace::load(source, isFallback ? nullptr : fallbackLocked());
    if (face) bySource_.emplace(key, face);
    return face;
}

std::shared_ptr<const FontFace> FontCatalog::fallbackLocked() {
    if (fallback_ || fallbackSought_ || !fontEnginesUsable()) return fallback_;
    fallbackSought_ = true;
    const auto& files = fontFiles();
    if (const auto found = files.find(lowered(kFallbackFontFile)); found != files.end()) {
        fallback_ = faceFor({QString::fromStdString(found->second), {}, false, false}, true);
    }
    if (!fallback_) fallback_ = faceFor({QString(), toQString(kFallbackFontFamily), false, false}, true);
    return fallback_;
}

const std::unordered_map<std::string, std::string>& FontCatalog::fontFiles() {
    if (!fontFiles_) {
        fontFiles_.emplace();
        for (const std::filesystem::path& folder : fontFolders()) {
            for (const std::filesystem::path& file : fontFilesUnder(folder)) {
                fontFiles_->emplace(lowered(file.filename().string()), file.string());  // the first folder wins
            }
        }
    }
    return *fontFiles_;
}

}  // namespace korva::fonts
