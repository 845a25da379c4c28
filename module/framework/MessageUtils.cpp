// Localized strings and messages. Strings come from the current resource
// handle, so callers hold a CKcModuleResourceOverride while they use them.
#include "framework/MessageUtils.h"

#include <cstdarg>
#include <cwchar>
#include <cwctype>
#include <vector>

#include "framework/ModuleResources.h"
#include "kced.h"
#include "kcmfc.h"
#include "kcut.h"

CString StringFromID(UINT id) {
    CString text = loadStringFrom(AfxGetResourceHandle(), id);
    if (text.IsEmpty()) {
        AfxMessageBox(L"loadstring error! check string id is right!");
        return CString();
    }
    return text;
}

void alertWithResourceId(UINT id) {
    const CString text = loadStringFrom(hLibModule, id);
    AfxMessageBox(text);
}

void kcedErrorPrompt(UINT id, int mode) {
    __ResourceString text(id, L"");
    if (mode == 0) kcutPrintf(L"\n%ls\n", static_cast<const wchar_t*>(text));
    else if (mode == 1) AfxMessageBox(text);
}

std::wstring formatWide(const wchar_t* format, ...) {
    if (!format) return std::wstring();
    // The host's formatting, where "%s" takes a wide string as in every module text.
    CString text;
    va_list arguments;
    va_start(arguments, format);
    text.FormatV(format, arguments);
    va_end(arguments);
    return std::wstring(text.GetString());
}

namespace {

// Converts in place; on any failure the text taken beforehand is put back.
template <class Text, class Convert>
bool convertGuarded(Text& text, Convert convert) {
    const Text original = text;
    try {
        convert(text);
        return true;
    } catch (...) {
        text = original;
        return false;
    }
}

void upperAll(std::wstring& text) {
    for (wchar_t& c : text) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
}

void lowerAll(std::wstring& text) {
    for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
}

}  // namespace

bool KvErrorEat::strMakeUpper(CString& text) {
    return convertGuarded(text, [](CString& t) { t.MakeUpper(); });
}

bool KvErrorEat::strMakeLower(CString& text) {
    return convertGuarded(text, [](CString& t) { t.MakeLower(); });
}

bool KvErrorEat::strMakeUpper(std::wstring& text) { return convertGuarded(text, upperAll); }

bool KvErrorEat::strMakeLower(std::wstring& text) { return convertGuarded(text, lowerAll); }
