// SAVE, SAVEAS and QSAVE write the current drawing as DXF. SAVEAS may first
// take a file format keyword and saves in that version; the drawing then goes
// by the new name. SAVE writes to the name given without renaming the drawing
// (unless it had no name), QSAVE writes to the drawing's own file and asks for
// a name only when it has none. Failures are reported; the old file stays.
#include "commands/files/FileCommands.h"

#include <array>
#include <filesystem>
#include <optional>

#include "commands/BuiltInCommand.h"
#include "commands/CommandInput.h"
#include "db/Utf8.h"
#include "dxf/DxfWriter.h"
#include "editor/Document.h"
#include "kced.h"

namespace korva::commands {

namespace {

using editor::Document;
namespace fs = std::filesystem;

struct FileFormat {
    const wchar_t* keyword;
    const char* version;  // $ACADVER
};

constexpr std::array<FileFormat, 7> kFormats = {{{L"R12", "AC1009"},
                                                 {L"2000", "AC1015"},
                                                 {L"2004", "AC1018"},
                                                 {L"2007", "AC1021"},
                                                 {L"2010", "AC1024"},
                                                 {L"2013", "AC1027"},
                                                 {L"2018", "AC1032"}}};

// The keyword of the newest listed format that is not newer than a version.
std::wstring formatKeyword(const std::string& version) {
    std::wstring keyword = L"R12";
    for (const FileFormat& format : kFormats) {
        if (db::versionNumberOf(format.version) <= db::versionNumberOf(version)) keyword = format.keyword;
    }
    return keyword;
}

const char* versionOf(const std::wstring& keyword) {
    for (const FileFormat& format : kFormats) {
        if (keyword == format.keyword) return format.version;
    }
    return nullptr;
}

std::string defaultPath(const Document& document) { return document.path().empty() ? "Drawing1.dxf" : document.path(); }

// A name without extension gets ".dxf".
std::string withExtension(const std::string& path) { return fs::path(path).has_extension() ? path : path + ".dxf"; }

// The target file; nothing when cancelled or when the user keeps an existing file.
std::optional<std::string> askFileName(const Document& document) {
    const std::string proposed = defaultPath(document);
    const TextAnswer answer = askString(L"\nSave drawing as <" + db::utf8ToWide(proposed) + L">: ", true);
    if (answer.cancelled()) return std::nullopt;
    return answer.text.empty() ? proposed : withExtension(db::wideToUtf8(answer.text));
}

// Another file than the drawing's own is replaced only when the user agrees.
bool mayReplace(const Document& document, const std::string& path) {
    std::error_code ec;
    if (!fs::exists(path, ec) || path == document.path()) return true;
    bool cancelled = false;
    return askYes(L"\nA drawing with this name already exists.\nDo you want to replace it? <N> ", cancelled);
}

bool save(Document& document, const std::string& path, const std::string& version) {
    dxf::WriteOptions options;
    options.version = version;
    dxf::ConversionLosses losses;
    const std::string error = dxf::saveDxfFile(document.drawing(), path, options, &losses);
    if (!error.empty()) {
        printMessage(L"** Error: the drawing could not be saved to " + db::utf8ToWide(path) + L": " +
                     db::utf8ToWide(error));
        return false;
    }
    if (losses.total() > 0) printMessage(L"Left out in this format: " + db::utf8ToWide(losses.describe()));
    return true;
}

void runSaveAsCommand() {
    Document* document = currentDocument();
    if (!document) return;
    const std::wstring current = formatKeyword(document->drawing().format.version);
    const TextAnswer format =
        askKeyword(L"\nEnter file format [R12/2000/2004/2007/2010/2013/2018] <" + current + L">: ",
                   L"R12 2000 2004 2007 2010 2013 2018 _ R12 2000 2004 2007 2010 2013 2018", RSG_OTHER);
    if (format.cancelled()) return;
    std::string version;
    std::optional<std::string> path;
    if (const char* chosen = format.status == RTNORM ? versionOf(format.text) : nullptr) {
        version = chosen;
        path = askFileName(*document);
    } else if (format.status == RTNORM && !format.text.empty()) {
        path = withExtension(db::wideToUtf8(format.text));  // a file name given at once
    } else {
        path = askFileName(*document);
    }
    if (!path || !mayReplace(*document, *path)) return;
    if (save(*document, *path, version)) document->setPath(*path);
}

void runSaveCommand() {
    Document* document = currentDocument();
    if (!document) return;
    const auto path = askFileName(*document);
    if (!path || !mayReplace(*document, *path)) return;
    if (save(*document, *path, {}) && document->path().empty()) document->setPath(*path);
}

void runQuickSaveCommand() {
    Document* document = currentDocument();
    if (!document) return;
    if (!document->path().empty()) {
        save(*document, document->path(), {});
        return;
    }
    const auto path = askFileName(*document);
    if (!path || !mayReplace(*document, *path)) return;
    if (save(*document, *path, {})) document->setPath(*path);
}

}  // namespace

void registerFileCommands() {
    addBuiltInCommand(L"SAVE", runSaveCommand);
    addBuiltInCommand(L"SAVEAS", runSaveAsCommand);
    addBuiltInCommand(L"QSAVE", runQuickSaveCommand);
}

}  // namespace korva::commands
