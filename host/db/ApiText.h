// Texts between the database and the host API. Stored texts are UTF-8 as the
// file had them, control characters in DXF caret notation ("^J"); the API hands
// out wide strings with the real characters.
#pragma once

#include <string>
#include <string_view>

namespace korva::db {

std::wstring toApiText(std::string_view stored);
std::string toStoredText(std::wstring_view text);
std::string toStoredText(const wchar_t* text);  // null: empty

}  // namespace korva::db
