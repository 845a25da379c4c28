// Layer texts: loaded through __ResourceString while a LayerCommandFrame keeps
// the module's resource library current.
#include "layers/LayerTexts.h"

#include "framework/ModuleResources.h"
#include "kcut.h"

namespace KvLayers {

CString layerText(UINT id) {
    __ResourceString text(id, L"");
    return CString(static_cast<const wchar_t*>(text));
}

CString layerKeywords(UINT id, const wchar_t* builtInKeywords) {
    __ResourceString text(id, builtInKeywords);
    return CString(static_cast<const wchar_t*>(text));
}

void printLayerText(UINT id) { printText(layerText(id)); }

void printText(const CString& text) { kcutPrintf(L"%ls", text.GetString()); }

}  // namespace KvLayers
