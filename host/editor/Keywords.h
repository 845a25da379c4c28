// Keyword lists of prompts: keywords separated by spaces, the capital letters of
// each forming its shortest abbreviation ("eXit" takes "x", "ex", "exit"); a list
// may hold local and global forms separated by " _ " ("Yes No _ Yes No"), and
// the result is always the global form. "_word" matches a global keyword.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace korva::editor {

class Keywords {
public:
    Keywords() = default;
    explicit Keywords(std::wstring_view list);

    bool empty() const { return local_.empty(); }
    // The global keyword the input names, or nothing.
    std::optional<std::wstring> match(std::wstring_view input) const;
    // The local keywords, for a prompt's "[A/B/C]" list.
    const std::vector<std::wstring>& local() const { return local_; }

private:
    static bool matches(std::wstring_view keyword, std::wstring_view input);
    std::vector<std::wstring> local_;
    std::vector<std::wstring> global_;
};

}  // namespace korva::editor
