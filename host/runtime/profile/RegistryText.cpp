// Writing and reading the text form of the registry store (see RegistryText.h).
#include "runtime/profile/RegistryText.h"

#include <cstdio>
#include <cstring>
#include <optional>

#include "db/Utf8.h"

namespace korva::runtime {

namespace {

constexpr std::wstring_view kRootName = L"HKEY_CURRENT_USER";

bool needsCodeEscape(uint32_t code) {
    return code < 0x20 || code == 0x7F || (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF;
}

void appendQuoted(std::string& out, std::wstring_view text) {
    out += '"';
    for (wchar_t c : text) {
        const auto code = static_cast<uint32_t>(c);
        switch (c) {
            case L'\\': out += "\\\\"; break;
            case L'"': out += "\\\""; break;
            case L'\n': out += "\\n"; break;
            case L'\r': out += "\\r"; break;
            case L'\t': out += "\\t"; break;
            default:
                if (needsCodeEscape(code)) {
                    char escape[16];
                    std::snprintf(escape, sizeof escape, "\\u{%x}", code);
                    out += escape;
                } else {
                    db::appendUtf8(out, static_cast<char32_t>(code));
                }
        }
    }
    out += '"';
}

// REG_SZ data that read back exactly from a quoted text: whole wide characters,
// one terminating null and no other, every character a Unicode scalar value.
std::optional<std::wstring> canonicalText(const std::vector<uint8_t>& data) {
    if (data.size() < sizeof(wchar_t) || data.size() % sizeof(wchar_t) != 0) return std::nullopt;
    std::wstring text(data.size() / sizeof(wchar_t), L'\0');
    std::memcpy(text.data(), data.data(), data.size());
    if (text.back() != L'\0') return std::nullopt;
    text.pop_back();
    for (wchar_t c : text) {
        const auto code = static_cast<uint32_t>(c);
        if (code == 0 || (code >= 0xD800 && code <= 0xDFFF) || code > 0x10FFFF) return std::nullopt;
    }
    return text;
}

void appendValue(std::string& out, const RegistryValue& value) {
    if (value.name.empty()) {
        out += '@';
    } else {
        appendQuoted(out, value.name);
    }
    out += '=';
    if (value.type == REG_SZ) {
        if (const auto text = canonicalText(value.data)) {
            appendQuoted(out, *text);
            out += '\n';
            return;
        }
    }
    char buffer[32];
    if (value.type == REG_DWORD && value.data.size() == sizeof(uint32_t)) {
        uint32_t number = 0;
        std::memcpy(&number, value.data.data(), sizeof number);
        std::snprintf(buffer, sizeof buffer, "dword:%08x\n", number);
        out += buffer;
        return;
    }
    std::snprintf(buffer, sizeof buffer, "hex(%x):", static_cast<unsigned>(value.type));
    out += buffer;
    for (size_t i = 0; i < value.data.size(); ++i) {
        std::snprintf(buffer, sizeof buffer, i ? ",%02x" : "%02x", value.data[i]);
        out += buffer;
    }
    out += '\n';
}

// --- reading ---------------------------------------------------------------

bool isValidUtf8(std::string_view text) {
    size_t i = 0;
    while (i < text.size()) {
        const auto lead = static_cast<unsigned char>(text[i]);
        size_t length = 0;
        uint32_t code = 0;
        if (lead < 0x80) {
            ++i;
            continue;
        } else if (lead >= 0xC2 && lead <= 0xDF) {
            length = 2;
            code = lead & 0x1F;
        } else if (lead >= 0xE0 && lead <= 0xEF) {
            length = 3;
            code = lead & 0x0F;
        } else if (lead >= 0xF0 && lead <= 0xF4) {
            length = 4;
            code = lead & 0x07;
        } else {
            return false;
        }
        if (i + length > text.size()) return false;
        for (size_t k = 1; k < length; ++k) {
            const auto next = static_cast<unsigned char>(text[i + k]);
            if ((next & 0xC0) != 0x80) return false;
            code = (code << 6) | (next & 0x3F);
        }
        const uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
        if (code < smallest[length] || code > 0x10FFFF || (code >= 0xD800 && code <= 0xDFFF)) return false;
        i += length;
    }
    return true;
}

int hexDigit(wchar_t c) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    return -1;
}

// A cursor over one line of the file; each reader sets `error` when it fails.
class LineReader {
public:
    explicit LineReader(std::wstring_view line) : line_(line) {}

    bool atEnd() const { return pos_ >= line_.size(); }
    wchar_t peek() const { return atEnd() ? L'\0' : line_[pos_]; }
    bool accept(std::wstring_view text) {
        if (line_.substr(pos_, text.size()) != text) return false;
        pos_ += text.size();
        return true;
    }
    void skipBlanks() {
        while (!atEnd() && (line_[pos_] == L' ' || line_[pos_] == L'\t')) ++pos_;
    }

    std::optional<std::wstring> quoted() {
        if (!accept(L"\"")) return fail("a quoted text was expected");
        std::wstring out;
        while (!atEnd()) {
            const wchar_t c = line_[pos_++];
            if (c == L'"') return out;
            if (c != L'\\') {
                out += c;
                continue;
            }
            if (atEnd()) break;
            const wchar_t escaped = line_[pos_++];
            switch (escaped) {
                case L'\\': out += L'\\'; break;
                case L'"': out += L'"'; break;
                case L'n': out += L'\n'; break;
                case L'r': out += L'\r'; break;
                case L't': out += L'\t'; break;
                case L'u': {
                    const auto code = braceHex();
                    if (!code) return std::nullopt;
                    out += static_cast<wchar_t>(*code);
                    break;
                }
                default: return fail("an unknown escape \"\\" + db::wideToUtf8(std::wstring(1, escaped)) + "\"");
            }
        }
        return fail("a quoted text without its closing quote");
    }

    std::optional<uint32_t> hexNumber(size_t maxDigits) {
        uint32_t number = 0;
        size_t digits = 0;
        while (!atEnd() && hexDigit(peek()) >= 0 && digits < maxDigits) {
            number = number * 16 + static_cast<uint32_t>(hexDigit(line_[pos_++]));
            ++digits;
        }
        if (digits == 0 || (!atEnd() && hexDigit(peek()) >= 0)) return fail("a hexadecimal number of 1 to 8 digits was expected");
        return number;
    }

    std::optional<std::vector<uint8_t>> hexBytes() {
        std::vector<uint8_t> bytes;
        skipBlanks();
        if (atEnd()) return bytes;
        while (true) {
            skipBlanks();
            if (pos_ + 2 > line_.size() || hexDigit(line_[pos_]) < 0 || hexDigit(line_[pos_ + 1]) < 0)
                return fail("a byte of two hexadecimal digits was expected");
            bytes.push_back(static_cast<uint8_t>(hexDigit(line_[pos_]) * 16 + hexDigit(line_[pos_ + 1])));
            pos_ += 2;
            skipBlanks();
            if (!accept(L",")) return bytes;
        }
    }

    const std::string& error() const { return error_; }

    std::nullopt_t fail(std::string message) {
        if (error_.empty()) error_ = std::move(message);
        return std::nullopt;
    }

private:
    std::optional<uint32_t> braceHex() {
        if (!accept(L"{")) return fail("\"\\u\" must be followed by {hex}");
        const auto code = hexNumber(8);
        if (!code) return std::nullopt;
        if (!accept(L"}")) return fail("\"\\u{\" without its closing \"}\"");
        return code;
    }

    std::wstring_view line_;
    size_t pos_ = 0;
    std::string error_;
};

std::vector<uint8_t> textData(const std::wstring& text) {
    std::vector<uint8_t> data((text.size() + 1) * sizeof(wchar_t), 0);
    std::memcpy(data.data(), text.c_str(), data.size());
    return data;
}

std::optional<RegistryValue> parseValueLine(LineReader& reader) {
    RegistryValue value;
    if (!reader.accept(L"@")) {
        auto name = reader.quoted();
        if (!name) return std::nullopt;
        if (name->empty() || name->size() > kMaxValueNameLength) return reader.fail("a value name must have 1 to 16383 characters");
        value.name = std::move(*name);
    }
    reader.skipBlanks();
    if (!reader.accept(L"=")) return reader.fail("\"=\" was expected after the value name");
    reader.skipBlanks();
    if (reader.peek() == L'"') {
        const auto text = reader.quoted();
        if (!text) return std::nullopt;
        value.type = REG_SZ;
        value.data = textData(*text);
    } else if (reader.accept(L"dword:")) {
        const auto number = reader.hexNumber(8);
        if (!number) return std::nullopt;
        value.type = REG_DWORD;
        value.data.resize(sizeof(uint32_t));
        std::memcpy(value.data.data(), &*number, sizeof(uint32_t));
    } else if (reader.accept(L"hex(")) {
        const auto type = reader.hexNumber(8);
        if (!type) return std::nullopt;
        if (!reader.accept(L"):")) return reader.fail("\"):\" was expected after the value type");
        auto bytes = reader.hexBytes();
        if (!bytes) return std::nullopt;
        value.type = *type;
        value.data = std::move(*bytes);
    } else {
        return reader.fail("a value must be \"text\", dword:<hex> or hex(<type>):<bytes>");
    }
    reader.skipBlanks();
    if (!reader.atEnd()) return reader.fail("unexpected text after the value");
    return value;
}

// "HKEY_CURRENT_USER\a\b" as a key path, or a reason why it is not one.
std::optional<RegistryPath> parseSectionPath(std::wstring_view inner, std::string& error) {
    const bool rooted = inner.size() >= kRootName.size() && registryNamesEqual(inner.substr(0, kRootName.size()), kRootName);
    if (!rooted || (inner.size() > kRootName.size() && inner[kRootName.size()] != L'\\')) {
        error = "a key outside HKEY_CURRENT_USER";
        return std::nullopt;
    }
    inner.remove_prefix(kRootName.size());
    if (!inner.empty()) inner.remove_prefix(1);
    if (inner.empty()) return RegistryPath{};
    auto path = splitRegistryPath(inner);
    if (!path) error = "an invalid key path (an empty name, a name of more than 255 characters or a control character)";
    return path;
}

}  // namespace

std::string writeRegistryText(const RegistryTree& tree) {
    std::string out =
        "; Korva user profile: the registry store under HKEY_CURRENT_USER, one section per key.\n"
        "; Values: \"Name\"=\"text\", \"Name\"=dword:<8 hex digits>, \"Name\"=hex(<type>):<bytes>; @ is the unnamed value.\n";
    for (const RegistryKey* key : tree.keys()) {
        if (key->path.empty() && key->values.empty()) continue;
        out += "\n[";
        out += db::wideToUtf8(kRootName);
        for (const std::wstring& name : key->path) {
            out += '\\';
            out += db::wideToUtf8(name);
        }
        out += "]\n";
        for (const RegistryValue& value : key->values) appendValue(out, value);
    }
    return out;
}

RegistryTree readRegistryText(std::string_view text, std::vector<RegistryTextProblem>& problems) {
    RegistryTree tree;
    std::optional<RegistryPath> current;
    bool skippingSection = false;
    int lineNumber = 0;
    size_t start = 0;
    while (start < text.size()) {
        size_t end = text.find('\n', start);
        if (end == std::string_view::npos) end = text.size();
        std::string_view raw = text.substr(start, end - start);
        start = end + 1;
        ++lineNumber;
        if (!raw.empty() && raw.back() == '\r') raw.remove_suffix(1);
        auto report = [&](std::string message) { problems.push_back({lineNumber, std::move(message)}); };
        if (!isValidUtf8(raw)) {
            report("the line is not UTF-8 text");
            continue;
        }
        const std::wstring wide = db::utf8ToWide(raw);
        LineReader reader(wide);
        reader.skipBlanks();
        if (reader.atEnd() || reader.peek() == L';' || reader.peek() == L'#') continue;
        if (reader.peek() == L'[') {
            std::wstring_view line(wide);
            const size_t open = line.find(L'[');
            const size_t close = line.rfind(L']');
            skippingSection = true;
            current.reset();
            if (close == std::wstring_view::npos) {
                report("a section header without its closing \"]\"");
                continue;
            }
            if (line.find_first_not_of(L" \t", close + 1) != std::wstring_view::npos) {
                report("unexpected text after the section header");
                continue;
            }
            std::string error;
            current = parseSectionPath(line.substr(open + 1, close - open - 1), error);
            if (!current) {
                report(error);
                continue;
            }
            skippingSection = false;
            tree.createKey(*current);
            continue;
        }
        if (reader.peek() != L'"' && reader.peek() != L'@') {
            report("neither a section header nor a value");
            continue;
        }
        if (skippingSection) continue;
        if (!current) {
            report("a value before the first section header");
            continue;
        }
        auto value = parseValueLine(reader);
        if (!value) {
            report(reader.error());
            continue;
        }
        tree.createKey(*current).setValue(value->name, value->type, std::move(value->data));
    }
    return tree;
}

}  // namespace korva::runtime
