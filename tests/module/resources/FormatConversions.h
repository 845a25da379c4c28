// The printf conversions a resource text asks for, read the way a formatting
// call reads them, so that a test can hold each text to the arguments the
// module passes: "s" a wide string, "d" an integer, "f" a real.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korva::test {

// The conversion letters of the text in order ("%s ... %d" gives "sd"; "%%" is
// a literal percent sign and gives nothing). Nothing at all when the text holds
// a "%" that is no conversion the module's arguments can feed: a dangling "%",
// a "*" width, a length modifier ("%ls" is not the host's convention for
// resource texts) or a letter other than d, i, s, f, e and g.
std::optional<std::string> printfConversions(std::wstring_view text);

}  // namespace korva::test
