// The reader of the host's LISP: source text to forms. Integers, reals,
// strings ("..." with \" \\ \n \t \r escapes), symbols (nil and T read as their
// values), 'x for (quote x), lists and dotted pairs ((0 . "LINE")), and ";"
// comments to the end of the line.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "editor/LispValue.h"

namespace korva::editor::lisp {

// Reads every form of the text; false with the reason when the text is malformed.
bool readForms(std::wstring_view source, std::vector<LispValue>& forms, std::wstring& error);

}  // namespace korva::editor::lisp
