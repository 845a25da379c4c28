// Parsing of dialog action lines.
#include "runtime/dialogs/DialogAction.h"

#include <array>
#include <cwctype>
#include <utility>

#include "runtime/dialogs/DialogEnvironment.h"

namespace korva::runtime {

namespace {

constexpr std::array<std::pair<std::wstring_view, ActionKind>, 5> kWords = {{
    {L"check", ActionKind::Check},
    {L"uncheck", ActionKind::Uncheck},
    {L"set", ActionKind::Set},
    {L"pick", ActionKind::Pick},
    {L"press", ActionKind::Press},
}};

std::wstring lowered(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& c : out) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
    return out;
}

std::vector<std::wstring> splitItems(std::wstring_view text) {
    std::vector<std::wstring> items;
    size_t start = 0;
    while (start <= text.size()) {
        const size_t end = text.find(L';', start);
        std::wstring item = trimmed(text.substr(start, end == std::wstring_view::npos ? std::wstring_view::npos : end - start));
        if (!item.empty()) items.push_back(std::move(item));
        if (end == std::wstring_view::npos) break;
        start = end + 1;
    }
    return items;
}

}  // namespace

std::wstring_view actionWord(ActionKind kind) {
    for (const auto& [word, wordKind] : kWords) {
        if (wordKind == kind) return word;
    }
    return {};
}

bool isDialogActionLine(std::wstring_view line) {
    const std::wstring text = trimmed(line);
    return text.size() >= 2 && text[0] == L'@' && std::iswalpha(static_cast<wint_t>(text[1]));
}

std::optional<DialogAction> parseDialogAction(std::wstring_view line, std::wstring& error) {
    const std::wstring text = trimmed(line);
    if (!isDialogActionLine(text)) {
        error = L"\"" + text + L"\" is not a dialog action.";
        return std::nullopt;
    }
    size_t wordEnd = 1;
    while (wordEnd < text.size() && !std::iswspace(static_cast<wint_t>(text[wordEnd]))) ++wordEnd;
    const std::wstring word = lowered(std::wstring_view(text).substr(1, wordEnd - 1));
    DialogAction action;
    bool known = false;
    for (const auto& [name, kind] : kWords) {
        if (word == name) {
            action.kind = kind;
            known = true;
        }
    }
    if (!known) {
        error = L"Unknown dialog action \"@" + word + L"\": the actions are @check, @uncheck, @set, @pick and @press.";
        return std::nullopt;
    }
    const std::wstring_view rest = std::wstring_view(text).substr(wordEnd);
    const std::wstring usage = L"@" + word + (action.kind == ActionKind::Set    ? L" LABEL = VALUE"
                                              : action.kind == ActionKind::Pick ? L" LABEL = ITEM;ITEM"
                                                                                : L" LABEL");
    if (action.kind == ActionKind::Set || action.kind == ActionKind::Pick) {
        const size_t equals = rest.find(L'=');
        if (equals == std::wstring_view::npos) {
            error = L"The dialog action \"" + text + L"\" has no \"=\": write " + usage + L".";
            return std::nullopt;
        }
        action.label = trimmed(rest.substr(0, equals));
        const std::wstring_view value = rest.substr(equals + 1);
        if (action.kind == ActionKind::Set) action.value = trimmed(value);
        else action.items = splitItems(value);
    } else {
        action.label = trimmed(rest);
    }
    if (action.label.empty()) {
        error = L"The dialog action \"" + text + L"\" names no control: write " + usage + L".";
        return std::nullopt;
    }
    return action;
}

}  // namespace korva::runtime
