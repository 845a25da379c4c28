// Terminal input through the editline library: each line typed becomes script
// text, so that "LINE 0,0 10,0" answers three prompts as it would in a script.
#include "console/InteractiveInput.h"

#include <editline/readline.h>

#include <cstdlib>

#include "db/Utf8.h"
#include "editor/TextInput.h"

namespace korva::console {

std::unique_ptr<editor::InputSource> terminalInput() {
    auto refill = [](std::wstring& text, const std::wstring& prompt) {
        // The prompt is shown by the terminal line itself; drop its leading line breaks.
        std::wstring shown = prompt;
        while (!shown.empty() && shown.front() == L'\n') shown.erase(0, 1);
        char* line = ::readline(db::wideToUtf8(shown).c_str());
        if (!line) return false;
        if (*line) ::add_history(line);
        text += db::utf8ToWide(line);
        text += L'\n';
        std::free(line);
        return true;
    };
    return std::make_unique<editor::TextInput>(std::wstring(), refill, true);
}

}  // namespace korva::console
