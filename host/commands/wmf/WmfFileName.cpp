// Asking for the metafile name.
#include "commands/wmf/WmfFileName.h"

#include <cwctype>
#include <filesystem>
#include <vector>

#include "commands/CommandInput.h"
#include "db/Utf8.h"
#include "editor/Document.h"
#include "editor/SystemVariables.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands::wmf {

namespace {

constexpr int kSaveMode = 1;

// The drawing's name with ".wmf": the default name to write.
std::wstring defaultName() {
    editor::Document* document = currentDocument();
    std::wstring name = document ? document->displayName() : std::wstring(L"Drawing1.dwg");
    if (const size_t dot = name.rfind(L'.'); dot != std::wstring::npos) name.erase(dot);
    return name + L".wmf";
}

int askOnCommandLine(FileUse use, std::wstring& typed) {
    const std::wstring prompt = use == FileUse::Write
                                    ? L"\nEnter name of metafile to create <" + defaultName() + L">: "
                                    : std::wstring(L"\nEnter name of metafile to insert: ");
    std::vector<wchar_t> answer(4096, L'\0');
    const int status = kcedGetString(1, prompt.c_str(), answer.data(), answer.size());
    if (status != RTNORM) return status;
    typed = answer.data();
    if (typed.empty()) {
        if (use == FileUse::Read) return RTNONE;
        typed = defaultName();
    }
    return RTNORM;
}

int askInDialog(FileUse use, std::wstring& typed) {
    resbuf* result = nullptr;
    const bool write = use == FileUse::Write;
    const int status = kcedGetFileNavDialog(write ? L"Create Metafile" : L"Insert Metafile",
                                            write ? defaultName().c_str() : L"", L"wmf",
                                            write ? L"WmfOut" : L"WmfIn", write ? kSaveMode : 0, &result);
    if (status == RTNORM && result && result->restype == RTSTR && result->resval.rstring) typed = result->resval.rstring;
    kcutRelRb(result);
    return status == RTNORM && !typed.empty() ? RTNORM : RTCAN;
}

}  // namespace

std::wstring metafilePath(std::wstring typed) {
    while (!typed.empty() && iswspace(static_cast<wint_t>(typed.back()))) typed.pop_back();
    while (!typed.empty() && iswspace(static_cast<wint_t>(typed.front()))) typed.erase(0, 1);
    if (typed.size() >= 2 && typed.front() == L'"' && typed.back() == L'"') typed = typed.substr(1, typed.size() - 2);
    for (wchar_t& c : typed) {
        if (c == L'\\') c = L'/';
    }
    if (typed.empty()) return typed;
    const std::filesystem::path path(db::wideToUtf8(typed));
    if (!path.has_extension() && path.has_filename()) typed += L".wmf";
    return typed;
}

int askMetafileName(FileUse use, std::wstring& path) {
    std::wstring typed;
    const bool dialog = editor::SystemVariables::instance().integer(L"FILEDIA", 1) == 1;
    const int status = dialog ? askInDialog(use, typed) : askOnCommandLine(use, typed);
    if (status != RTNORM) return status;
    path = metafilePath(typed);
    if (path.empty()) return RTNONE;
    std::error_code error;
    const std::filesystem::path file(db::wideToUtf8(path));
    if (use == FileUse::Read && !std::filesystem::is_regular_file(file, error)) {
        printMessage(L"The metafile \"" + path + L"\" does not exist.");
        return RTNONE;
    }
    if (use == FileUse::Write && std::filesystem::is_directory(file, error)) {
        printMessage(L"\"" + path + L"\" is a folder, not a file.");
        return RTNONE;
    }
    return RTNORM;
}

}  // namespace korva::commands::wmf
