// Reading LISP text: a small recursive-descent reader over the characters.
#include "editor/lisp/LispReader.h"

#include <cerrno>
#include <climits>
#include <cwchar>
#include <cwctype>

#include "editor/lisp/LispData.h"

namespace korva::editor::lisp {

namespace {

constexpr int kMaxDepth = 256;  // deeper nesting is refused rather than exhausting the stack

bool isDelimiter(wchar_t c) {
    return std::iswspace(static_cast<wint_t>(c)) || c == L'(' || c == L')' || c == L'"' || c == L'\'' || c == L';';
}

bool isDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }

// An atom's text as a number: integers that fit in 32 bits stay integers, as in
// CAD LISPs; longer ones and everything with a point or exponent are reals.
bool numberOf(const std::wstring& text, LispValue& out) {
    size_t at = (text[0] == L'+' || text[0] == L'-') ? 1 : 0;
    bool digits = false, integer = true;
    for (size_t i = at; i < text.size(); ++i) {
        if (isDigit(text[i])) digits = true;
        else integer = false;
    }
    if (!digits) return false;
    if (integer) {
        errno = 0;
        const long long value = std::wcstoll(text.c_str(), nullptr, 10);
        if (errno == 0 && value >= INT32_MIN && value <= INT32_MAX) {
            out = LispValue::ofInteger(value);
            return true;
        }
    }
    wchar_t* end = nullptr;
    const double value = std::wcstod(text.c_str(), &end);
    if (end != text.c_str() + text.size()) return false;
    out = LispValue::ofReal(value);
    return true;
}

class Reader {
public:
    Reader(std::wstring_view source, std::wstring& error) : text_(source), error_(error) {}

    // Reads the next form; false at the end of the text (error_ stays empty) or on an error.
    bool next(LispValue& form) {
        skipBlanks();
        if (pos_ >= text_.size()) return false;
        return readForm(form, 0);
    }

private:
    void skipBlanks() {
        while (pos_ < text_.size()) {
            const wchar_t c = text_[pos_];
            if (std::iswspace(static_cast<wint_t>(c))) {
                ++pos_;
            } else if (c == L';') {
                const size_t end = text_.find(L'\n', pos_);
                pos_ = end == std::wstring_view::npos ? text_.size() : end + 1;
            } else {
                break;
            }
        }
    }

    bool fail(const wchar_t* why) {
        error_ = why;
        return false;
    }

    bool readForm(LispValue& out, int depth) {
        if (depth > kMaxDepth) return fail(L"the expression is nested too deeply");
        skipBlanks();
        if (pos_ >= text_.size()) return fail(L"malformed list on input");
        const wchar_t c = text_[pos_];
        if (c == L'(') {
            ++pos_;
            return list(out, depth);
        }
        if (c == L')') return fail(L"extra right paren on input");
        if (c == L'\'') {
            ++pos_;
            LispValue quoted;
            if (!readForm(quoted, depth + 1)) return false;
            out = LispValue::ofList({LispValue::ofSymbol(L"QUOTE"), std::move(quoted)});
            return true;
        }
        if (c == L'"') return string(out);
        return atom(out);
    }

    bool list(LispValue& out, int depth) {
        std::vector<LispValue> items;
        while (true) {
            skipBlanks();
            if (pos_ >= text_.size()) return fail(L"malformed list on input");
            if (text_[pos_] == L')') {
                ++pos_;
                out = LispValue::ofList(std::move(items));
                return true;
            }
            if (isDot()) return dottedPair(items, out, depth);
            LispValue item;
            if (!readForm(item, depth + 1)) return false;
            items.push_back(std::move(item));
        }
    }

    // A "." standing alone inside a list.
    bool isDot() const {
        return text_[pos_] == L'.' && (pos_ + 1 >= text_.size() || isDelimiter(text_[pos_ + 1]));
    }

    // (a . b): exactly one item before the dot and one after it.
    bool dottedPair(std::vector<LispValue>& items, LispValue& out, int depth) {
        ++pos_;
        if (items.size() != 1) return fail(L"a dotted pair needs exactly one item before the dot");
        LispValue second;
        if (!readForm(second, depth + 1)) return false;
        skipBlanks();
        if (pos_ >= text_.size() || text_[pos_] != L')') return fail(L"a dotted pair needs exactly one item after the dot");
        ++pos_;
        out.type = LispValue::Type::DottedPair;
        out.items = {std::move(items[0]), std::move(second)};
        return true;
    }

    bool string(LispValue& out) {
        ++pos_;
        std::wstring value;
        while (pos_ < text_.size()) {
            wchar_t c = text_[pos_++];
            if (c == L'"') {
                out = LispValue::ofString(std::move(value));
                return true;
            }
            if (c == L'\\' && pos_ < text_.size()) {
                c = text_[pos_++];
                switch (c) {
                    case L'n': c = L'\n'; break;
                    case L't': c = L'\t'; break;
                    case L'r': c = L'\r'; break;
                    case L'e': c = L'\x1b'; break;
                    default: break;  // \" and \\ stand for the character itself
                }
            }
            value.push_back(c);
        }
        return fail(L"malformed string on input");
    }

    bool atom(LispValue& out) {
        const size_t start = pos_;
        while (pos_ < text_.size() && !isDelimiter(text_[pos_])) ++pos_;
        const std::wstring text(text_.substr(start, pos_ - start));
        if (numberOf(text, out)) return true;
        const std::wstring upper = upperName(text);
        if (upper == L"NIL") out = LispValue::nil();
        else if (upper == L"T") out = LispValue::t();
        else out = LispValue::ofSymbol(upper);
        return true;
    }

    std::wstring_view text_;
    std::wstring& error_;
    size_t pos_ = 0;
};

}  // namespace

bool readForms(std::wstring_view source, std::vector<LispValue>& forms, std::wstring& error) {
    error.clear();
    Reader reader(source, error);
    LispValue form;
    while (reader.next(form)) forms.push_back(std::move(form));
    return error.empty();
}

}  // namespace korva::editor::lisp
