// kcedGetFileNavDialog: a QFileDialog for a person at a display; otherwise the
// next input line is the path ("\" and "/" alike, quotes allowed; an empty line
// cancels). In open mode the file must exist; in save mode a path without an
// extension gets the first one, as the file dialog adds its default suffix.
#include <QFileDialog>
#include <QStringList>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "db/ResultBuffers.h"
#include "db/Utf8.h"
#include "kced.h"
#include "runtime/dialogs/DialogEnvironment.h"
#include "runtime/dialogs/HostFrame.h"

namespace korva::runtime {

namespace {

constexpr int kSaveMode = 1;

// "svf;scr" -> {"svf", "scr"}; stray dots and "*." are dropped.
std::vector<std::wstring> extensionList(const wchar_t* extensions) {
    std::vector<std::wstring> list;
    std::wstring_view text = extensions ? extensions : L"";
    while (!text.empty()) {
        const size_t end = text.find(L';');
        std::wstring item = trimmed(text.substr(0, end));
        while (!item.empty() && (item.front() == L'*' || item.front() == L'.')) item.erase(0, 1);
        if (!item.empty()) list.push_back(item);
        if (end == std::wstring_view::npos) break;
        text.remove_prefix(end + 1);
    }
    return list;
}

QStringList nameFilters(const std::vector<std::wstring>& extensions) {
    QStringList filters;
    QStringList all;
    for (const std::wstring& extension : extensions) {
        const QString pattern = QStringLiteral("*.") + qtText(extension);
        all << pattern;
        filters << QStringLiteral("%1 files (%2)").arg(qtText(extension).toUpper(), pattern);
    }
    if (extensions.size() > 1) filters.prepend(QStringLiteral("Files (%1)").arg(all.join(QLatin1Char(' '))));
    filters << QStringLiteral("All files (*)");
    return filters;
}

std::optional<std::wstring> askPerson(const wchar_t* title, const wchar_t* defaultName,
                                      const std::vector<std::wstring>& extensions, const wchar_t* dialogName, bool save) {
    QFileDialog dialog(frameWidget(), qtText(title ? title : L""));
    if (dialogName && *dialogName) dialog.setObjectName(qtText(dialogName));
    dialog.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    dialog.setNameFilters(nameFilters(extensions));
    if (save && !extensions.empty()) dialog.setDefaultSuffix(qtText(extensions.front()));
    if (defaultName && *defaultName) dialog.selectFile(qtText(defaultName));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return wideText(dialog.selectedFiles().front());
}

// The path of a typed answer: separators made "/", surrounding quotes dropped, made absolute.
std::wstring typedPath(std::wstring answer, bool save, const std::vector<std::wstring>& extensions) {
    answer = trimmed(answer);
    if (answer.size() >= 2 && answer.front() == L'"' && answer.back() == L'"') answer = trimmed(answer.substr(1, answer.size() - 2));
    for (wchar_t& c : answer) {
        if (c == L'\\') c = L'/';
    }
    if (answer.empty()) return answer;
    std::filesystem::path path(db::wideToUtf8(answer));
    if (save && !extensions.empty() && !path.has_extension() && path.has_filename()) {
        path += "." + db::wideToUtf8(extensions.front());
    }
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return db::utf8ToWide((error ? path : absolute).lexically_normal().generic_string());
}

// Why the path cannot be the answer (empty when it can).
std::wstring refusalOf(const std::wstring& path, bool save) {
    std::error_code error;
    const std::filesystem::path file(db::wideToUtf8(path));
    if (std::filesystem::is_directory(file, error)) return L"\"" + path + L"\" is a folder, not a file.";
    if (!save && !std::filesystem::is_regular_file(file, error)) return L"The file \"" + path + L"\" does not exist.";
    if (save && file.has_parent_path() && !std::filesystem::is_directory(file.parent_path(), error)) {
        return L"The folder of \"" + path + L"\" does not exist.";
    }
    return {};
}

std::optional<std::wstring> askInput(const wchar_t* title, bool save, const std::vector<std::wstring>& extensions) {
    const std::wstring prompt = std::wstring(title && *title ? title : (save ? L"Save file" : L"Open file")) + L": ";
    std::wstring answer;
    if (!readDialogAnswer(prompt, answer)) return std::nullopt;
    const std::wstring path = typedPath(answer, save, extensions);
    if (path.empty()) return std::nullopt;
    if (const std::wstring refusal = refusalOf(path, save); !refusal.empty()) {
        printDialogMessage(refusal);
        return std::nullopt;
    }
    return path;
}

}  // namespace

}  // namespace korva::runtime

int kcedGetFileNavDialog(const wchar_t* title, const wchar_t* defaultName, const wchar_t* extensions,
                         const wchar_t* dialogName, int flags, resbuf** result) {
    using namespace korva::runtime;
    if (!result) return RTERROR;
    *result = nullptr;
    const bool save = (flags & kSaveMode) != 0;
    const std::vector<std::wstring> extensionsList = extensionList(extensions);
    const std::optional<std::wstring> path = personAtDisplay()
                                                 ? askPerson(title, defaultName, extensionsList, dialogName, save)
                                                 : askInput(title, save, extensionsList);
    if (!path) return RTCAN;
    resbuf* record = korva::db::newResbuf(RTSTR);
    if (!record) return RTERROR;
    record->resval.rstring = korva::db::duplicateWide(*path);
    *result = record;
    return RTNORM;
}
