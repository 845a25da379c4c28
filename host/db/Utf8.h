// UTF-8 conversions. The database holds every text as UTF-8; the host API hands
// out wide strings (32-bit wchar_t on this platform).
#pragma once

#include <string>
#include <string_view>

namespace korva::db {

// Invalid UTF-8 bytes decode as the Latin-1 character of the same value, so that a
// mislabelled single-byte text still reads sensibly.
std::u32string utf8ToUtf32(std::string_view utf8);
std::string utf32ToUtf8(std::u32string_view text);
std::wstring utf8ToWide(std::string_view utf8);
std::string wideToUtf8(std::wstring_view text);
void appendUtf8(std::string& out, char32_t codepoint);

// Upper case of one code point (ASCII, Latin-1, Latin Extended-A, Greek, Cyrillic).
char32_t upperCodepoint(char32_t c);

}  // namespace korva::db
