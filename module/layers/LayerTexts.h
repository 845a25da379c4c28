// The layer commands' texts from the resource library: messages and prompts
// by id (empty when the id is missing), keyword lists with their built-in
// keywords as the fallback, and printing on the command line.
#pragma once

#include "kcmfc.h"

namespace KvLayers {

// The text of id in the current resource library; empty when it is missing.
CString layerText(UINT id);
// A keyword list of the resource library, or the given keywords when it is missing.
CString layerKeywords(UINT id, const wchar_t* builtInKeywords);
// Prints the text of id as it is.
void printLayerText(UINT id);
// Prints a text as it is (no formatting of its own "%" characters).
void printText(const CString& text);

}  // namespace KvLayers
