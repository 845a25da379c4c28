// Layer names as the layer tools treat them: comparing without regard to
// case, the two tests LAYOFF applies to names inside external references, the
// "xref|layer" form, and the name written as a -LAYER name pattern.
#pragma once

#include <string>

namespace KvLayers {

// Whether two layer names are the same without regard to case.
bool sameLayerName(const wchar_t* a, const wchar_t* b);
// Whether the name has no "|" (it is not yet an xref-dependent name).
bool lacksPipe(const wchar_t* layer);
// Whether the first character is "0". Only that character is compared, so any
// name beginning with the digit zero is treated like layer "0" (deliberate).
bool startsWithZero(const wchar_t* layer);
// "block|layer", cut to the 255-character buffer the name is joined in.
std::wstring xrefLayerName(const wchar_t* block, const wchar_t* layer);
// The name as a -LAYER name-list pattern that names exactly this layer: the
// characters with a wildcard meaning ("#", "@", ".", "*", "?", "~", "[", "]",
// ",", "-" and the backquote) are escaped with a backquote.
std::wstring layerNamePattern(const wchar_t* layer);

}  // namespace KvLayers
