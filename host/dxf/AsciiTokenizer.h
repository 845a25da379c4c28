// Splits ASCII DXF into group code / value line pairs. Values are handed out
// as views into the file's bytes; nothing is copied here.
#pragma once

#include <charconv>
#include <functional>
#include <string>
#include <string_view>

#include "dxf/RawTag.h"

namespace korva::dxf {

class AsciiTokenizer {
public:
    explicit AsciiTokenizer(std::string_view data) : p_(data.data()), end_(data.data() + data.size()) {}

    enum class Status { Ok, End, Error };

    Status next(RawTag& tag, std::string& error) {
        skipBlankLinesAtEnd();
        if (p_ >= end_) return Status::End;
        const size_t codeLine = line_ + 1;
        std::string_view codeText = readLine();
        std::string_view trimmed = trim(codeText);
        int code = 0;
        auto [ptr, ec] = std::from_chars(trimmed.data(), trimmed.data() + trimmed.size(), code);
        if (ec != std::errc() || ptr != trimmed.data() + trimmed.size() || trimmed.empty()) {
            error = "line " + std::to_string(codeLine) + ": expected a group code, found \"" +
                    std::string(codeText.substr(0, 40)) + "\"";
            return Status::Error;
        }
        if (p_ >= end_) {
            error = "line " + std::to_string(codeLine) + ": the file ends after group code " + std::to_string(code) +
                    " without its value";
            return Status::Error;
        }
        tag.code = code;
        tag.form = RawTag::Form::Text;
        tag.text = readLine();
        tag.position = codeLine;
        if (releaser_ && p_ - released_ > kReleaseStep) {
            // A value pushed back is the last one read: everything a megabyte behind is done with.
            releaser_(p_ - kReleaseMargin);
            released_ = p_;
        }
        return Status::Ok;
    }

    // Called now and then with a position before which the bytes are no longer
    // needed, so that a memory-mapped file need not stay resident as a whole.
    void setReleaser(std::function<void(const char*)> releaser) { releaser_ = std::move(releaser); }

    size_t line() const { return line_; }
    // The bytes not yet read (what follows EOF).
    std::string_view rest() const { return {p_, static_cast<size_t>(end_ - p_)}; }

    static std::string_view trim(std::string_view s) {
        while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
        while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
        return s;
    }

private:
    std::string_view readLine() {
        const char* start = p_;
        const char* nl = static_cast<const char*>(std::char_traits<char>::find(p_, static_cast<size_t>(end_ - p_), '\n'));
        const char* stop = nl ? nl : end_;
        p_ = nl ? nl + 1 : end_;
        ++line_;
        if (stop > start && stop[-1] == '\r') --stop;
        return {start, static_cast<size_t>(stop - start)};
    }

    // A file may end with empty lines after the last value; they are not a tag.
    void skipBlankLinesAtEnd() {
        const char* q = p_;
        while (q < end_ && (*q == '\r' || *q == '\n' || *q == ' ' || *q == '\t' || *q == '\0')) ++q;
        if (q == end_) p_ = end_;
    }

    static constexpr std::ptrdiff_t kReleaseStep = 16 << 20;
    static constexpr std::ptrdiff_t kReleaseMargin = 1 << 20;

    const char* p_;
    const char* end_;
    const char* released_ = p_;
    size_t line_ = 0;
    std::function<void(const char*)> releaser_;
};

}  // namespace korva::dxf
