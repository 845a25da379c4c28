// The application object and its profile entries: each section is the key
// HKEY_CURRENT_USER\<product root key>\<section>, each entry a value there.
// Integers are REG_DWORD and strings REG_SZ.
#include <cstring>
#include <cwctype>

#include "kcdbdatabase.h"
#include "kcmfc.h"
#include "runtime/profile/ProfileStore.h"

using korva::runtime::RegistryPath;
using korva::runtime::RegistryValue;

namespace {

std::optional<RegistryPath> sectionPath(LPCWSTR section) {
    if (!section || !*section) return std::nullopt;
    auto path = korva::runtime::splitRegistryPath(kcdbHostApplicationServices()->getRegistryProductRootKey());
    const auto names = korva::runtime::splitRegistryPath(section);
    if (!path || !names) return std::nullopt;
    path->insert(path->end(), names->begin(), names->end());
    return path;
}

std::optional<RegistryValue> entryValue(LPCWSTR section, LPCWSTR entry) {
    const auto path = sectionPath(section);
    if (!path || !entry) return std::nullopt;
    return korva::runtime::findProfileValue(*path, entry);
}

// A REG_SZ value's text, up to its first null.
std::wstring valueText(const RegistryValue& value) {
    std::wstring text(value.data.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), value.data.data(), text.size() * sizeof(wchar_t));
    return text.substr(0, text.find(L'\0'));
}

// An integer written as text, read as the text-file profile reads it: the
// leading decimal (or "0x" hexadecimal) integer after blanks, 0 when there is none.
UINT parseProfileInteger(const std::wstring& text) {
    size_t i = 0;
    while (i < text.size() && std::iswspace(static_cast<wint_t>(text[i]))) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == L'-' || text[i] == L'+')) negative = text[i++] == L'-';
    unsigned base = 10;
    if (i + 1 < text.size() && text[i] == L'0' && (text[i + 1] == L'x' || text[i + 1] == L'X')) {
        base = 16;
        i += 2;
    }
    uint32_t value = 0;
    for (; i < text.size(); ++i) {
        const wchar_t c = text[i];
        unsigned digit;
        if (c >= L'0' && c <= L'9') {
            digit = static_cast<unsigned>(c - L'0');
        } else if (base == 16 && c >= L'a' && c <= L'f') {
            digit = static_cast<unsigned>(c - L'a' + 10);
        } else if (base == 16 && c >= L'A' && c <= L'F') {
            digit = static_cast<unsigned>(c - L'A' + 10);
        } else {
            break;
        }
        value = value * base + digit;  // wraps as the unsigned result of its model does
    }
    return negative ? 0u - value : value;
}

std::vector<uint8_t> bytesOf(const void* data, size_t size) {
    const auto* first = static_cast<const uint8_t*>(data);
    return std::vector<uint8_t>(first, first + size);
}

}  // namespace

UINT CWinApp::GetProfileInt(LPCWSTR section, LPCWSTR entry, int defaultValue) {
    const auto value = entryValue(section, entry);
    if (!value) return static_cast<UINT>(defaultValue);
    if (value->type == REG_DWORD && value->data.size() == sizeof(uint32_t)) {
        uint32_t number = 0;
        std::memcpy(&number, value->data.data(), sizeof number);
        return number;
    }
    if (value->type == REG_SZ) return parseProfileInteger(valueText(*value));
    return static_cast<UINT>(defaultValue);
}

BOOL CWinApp::WriteProfileInt(LPCWSTR section, LPCWSTR entry, int value) {
    const auto path = sectionPath(section);
    if (!path || !entry) return FALSE;
    const auto number = static_cast<uint32_t>(value);
    return korva::runtime::writeProfileValue(*path, entry, REG_DWORD, bytesOf(&number, sizeof number)) == ERROR_SUCCESS;
}

CString CWinApp::GetProfileString(LPCWSTR section, LPCWSTR entry, LPCWSTR defaultValue) {
    const auto value = entryValue(section, entry);
    if (!value || value->type != REG_SZ) return CString(defaultValue);
    return CString(valueText(*value));
}

BOOL CWinApp::WriteProfileString(LPCWSTR section, LPCWSTR entry, LPCWSTR value) {
    const auto path = sectionPath(section);
    if (!path) return FALSE;
    // As its model: no entry removes the whole section, no value removes the entry.
    if (!entry) return korva::runtime::removeProfileKey(*path) == ERROR_SUCCESS;
    if (!value) return korva::runtime::removeProfileValue(*path, entry) == ERROR_SUCCESS;
    const size_t bytes = (std::wcslen(value) + 1) * sizeof(wchar_t);
    return korva::runtime::writeProfileValue(*path, entry, REG_SZ, bytesOf(value, bytes)) == ERROR_SUCCESS;
}

CWinApp* kcedGetKcadWinApp() {
    static CWinApp* application = new CWinApp;  // never destroyed: modules use it while unloading
    return application;
}
