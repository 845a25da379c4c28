// The baseline scan: line splitting and std::from_chars, nothing else.
#include "BaselineScan.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <cstring>
#include <stdexcept>

namespace korva::bench {

namespace {

struct CodeRange {
    int first;
    int last;
};

// Group code ranges of the DXF reference: reals (coordinates, distances, angles,
// extended-data reals) and integers (16-, 32- and 64-bit, booleans, colors).
constexpr CodeRange kRealCodes[] = {{10, 59}, {110, 149}, {210, 239}, {460, 469}, {1010, 1059}};
constexpr CodeRange kIntegerCodes[] = {{60, 99},   {160, 179}, {270, 299}, {370, 389},
                                       {400, 409}, {420, 429}, {440, 459}, {1060, 1071}};

template <size_t N>
bool inRanges(const CodeRange (&ranges)[N], int code) {
    for (const CodeRange& range : ranges) {
        if (code >= range.first && code <= range.last) return true;
    }
    return false;
}

// Numbers may be padded with blanks (group codes are right-aligned by many writers).
std::string_view trimBlanks(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

class LineSplitter {
public:
    explicit LineSplitter(std::string_view text) : p_(text.data()), end_(text.data() + text.size()) {}

    bool atEnd() const { return p_ >= end_; }

    std::string_view next() {
        const char* start = p_;
        const auto* newline = static_cast<const char*>(std::memchr(p_, '\n', static_cast<size_t>(end_ - p_)));
        const char* stop = newline ? newline : end_;
        p_ = newline ? newline + 1 : end_;
        if (stop > start && stop[-1] == '\r') --stop;
        return {start, static_cast<size_t>(stop - start)};
    }

private:
    const char* p_;
    const char* end_;
};

template <class Number>
bool convert(std::string_view text, Number& value) {
    text = trimBlanks(text);
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size() && !text.empty();
}

}  // namespace

bool isRealGroupCode(int code) { return inRanges(kRealCodes, code); }
bool isIntegerGroupCode(int code) { return inRanges(kIntegerCodes, code); }

ScanTotals scanDxfPairs(std::string_view text) {
    ScanTotals totals;
    LineSplitter lines(text);
    while (!lines.atEnd()) {
        int code = 0;
        if (!convert(lines.next(), code)) {
            totals.complete = false;
            break;
        }
        if (lines.atEnd()) break;
        const std::string_view value = lines.next();
        ++totals.pairs;
        if (isRealGroupCode(code)) {
            double real = 0.0;
            if (convert(value, real)) {
                totals.realSum += real;
                ++totals.realValues;
            } else {
                ++totals.malformedValues;
            }
        } else if (isIntegerGroupCode(code)) {
            int64_t integer = 0;
            if (convert(value, integer)) {
                totals.integerSum += integer;
                ++totals.integerValues;
            } else {
                ++totals.malformedValues;
            }
        }
    }
    return totals;
}

std::string readWholeFile(const std::string& path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) throw std::runtime_error("cannot open " + path + ": " + std::strerror(errno));
    struct stat info {};
    std::string bytes;
    if (::fstat(fd, &info) == 0) bytes.resize(static_cast<size_t>(info.st_size));
    size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t got = ::read(fd, bytes.data() + done, bytes.size() - done);
        if (got <= 0) break;
        done += static_cast<size_t>(got);
    }
    ::close(fd);
    if (done != bytes.size()) throw std::runtime_error("cannot read " + path);
    return bytes;
}

}  // namespace korva::bench
