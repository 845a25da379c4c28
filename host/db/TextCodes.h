// The characters a single-line text shows. Texts are stored with codes:
// "%%d", "%%p" and "%%c" (degree, plus/minus and diameter signs), "%%%" (a
// percent sign), "%%nnn" (the character of that decimal number), the switches
// "%%u", "%%o" and "%%k" (underline, overline and strike-through, which show
// nothing), DXF caret notation for control characters ("^J"; "^ " is the caret
// itself) and the escapes \U+XXXX and \M+NXXXX. The estimate and the font
// measurer both read texts through this one decoder, so they agree on what a
// text shows.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace korva::db {

struct TextElement {
    enum class Kind : uint8_t { Character, Underline, Overline, StrikeThrough };
    Kind kind = Kind::Character;
    char32_t character = 0;  // for Kind::Character
};

inline constexpr char32_t kDegreeSign = 0x00B0;
inline constexpr char32_t kPlusMinusSign = 0x00B1;
inline constexpr char32_t kDiameterSign = 0x2300;
// What a double-byte \M+NXXXX character shows: the database keeps no code-page tables.
inline constexpr char32_t kReplacementCharacter = 0xFFFD;

// The characters and switches of a stored text, in order. Bytes that are not
// valid UTF-8 read as the Latin-1 character of the same value.
std::vector<TextElement> decodeTextElements(std::string_view stored);

// How many characters a stored text shows (switches count none).
size_t shownCharacterCount(std::string_view stored);

}  // namespace korva::db
