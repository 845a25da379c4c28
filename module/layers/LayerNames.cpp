// Layer name helpers; plain string work without host calls.
#include "layers/LayerNames.h"

#include <cwchar>
#include <cwctype>

namespace KvLayers {

namespace {

// The buffer "block|layer" is joined in holds 255 characters with its terminator.
constexpr size_t kXrefLayerBuffer = 255;

}  // namespace

bool sameLayerName(const wchar_t* a, const wchar_t* b) {
    if (!a || !b) return false;
    for (; *a && *b; ++a, ++b) {
        if (std::towupper(static_cast<wint_t>(*a)) != std::towupper(static_cast<wint_t>(*b))) return false;
    }
    return *a == *b;
}

bool lacksPipe(const wchar_t* layer) { return !layer || !std::wcschr(layer, L'|'); }

bool startsWithZero(const wchar_t* layer) { return layer && layer[0] == L'0'; }

std::wstring xrefLayerName(const wchar_t* block, const wchar_t* layer) {
    std::wstring joined = std::wstring(block ? block : L"") + L"|" + (layer ? layer : L"");
    if (joined.size() > kXrefLayerBuffer - 1) joined.resize(kXrefLayerBuffer - 1);
    return joined;
}

std::wstring layerNamePattern(const wchar_t* layer) {
    std::wstring pattern;
    for (const wchar_t* c = layer; c && *c; ++c) {
        if (std::wcschr(L"#@.*?~[],-`", *c)) pattern += L'`';
        pattern += *c;
    }
    return pattern;
}

}  // namespace KvLayers
