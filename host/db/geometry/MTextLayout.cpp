// MTEXT layout: reading the contents into paragraphs of pieces of one height,
// wrapping them into lines, and stacking and aligning the lines.
#include "db/geometry/MTextLayout.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "db/RecordFields.h"
#include "db/geometry/TextGeometry.h"

namespace korva::db::geometry {

namespace {

constexpr std::string_view kMTextMarker = "AcDbMText";

// Text of one height as the contents give it.
struct Piece {
    std::string text;
    double height = 0.0;
};

struct Paragraph {
    std::vector<Piece> pieces;
    double height = 0.0;  // the height in effect where the paragraph starts
};

// Reads MTEXT contents into paragraphs, tracking the height codes and their groups.
class ContentsReader {
public:
    explicit ContentsReader(double height) : height_(height) { paragraphs_.push_back({{}, height}); }

    std::vector<Paragraph> read(std::string_view s) {
        for (size_t i = 0; i < s.size();) {
            const char c = s[i];
            if (c == '{') {
                groupHeights_.push_back(height_);
                ++i;
            } else if (c == '}') {
                if (!groupHeights_.empty()) {
                    height_ = groupHeights_.back();
                    groupHeights_.pop_back();
                }
                ++i;
            } else if (c == '\\' && i + 1 < s.size()) {
                i = readCode(s, i + 1);
            } else {
                append(std::string_view(&s[i], 1));
                ++i;
            }
        }
        return std::move(paragraphs_);
    }

private:
    void append(std::string_view text) {
        Paragraph& paragraph = paragraphs_.back();
        if (paragraph.pieces.empty() || paragraph.pieces.back().height != height_) {
            paragraph.pieces.push_back({{}, height_});
        }
        paragraph.pieces.back().text += text;
    }

    // The code after a backslash at `at`; returns where reading goes on.
    size_t readCode(std::string_view s, size_t at) {
        const char code = s[at];
        const size_t next = at + 1;
        switch (code) {
            case 'P': case 'N': case 'X':
                paragraphs_.push_back({{}, height_});
                return next;
            case '~': append("\xC2\xA0"); return next;  // a space lines do not break at
            case '\\': case '{': case '}': append(std::string_view(&s[at], 1)); return next;
            case 'L': case 'l': case 'O': case 'o': case 'K': case 'k': return next;
            case 'H': {
                const size_t end = argumentEnd(s, next);
                applyHeight(s.substr(next, end - next));
                return std::min(end + 1, s.size());
            }
            case 'C': case 'c': case 'F': case 'f': case 'A': case 'T': case 'Q': case 'W': case 'p':
                return std::min(argumentEnd(s, next) + 1, s.size());
            case 'S': {  // stacked text "a^b", "a/b" or "a#b": measured as a fraction
                const size_t end = argumentEnd(s, next);
                std::string stacked(s.substr(next, end - next));
                std::replace(stacked.begin(), stacked.end(), '^', '/');
                std::replace(stacked.begin(), stacked.end(), '#', '/');
                append(stacked);
                return std::min(end + 1, s.size());
            }
            default:  // \U+XXXX and \M+NXXXX are characters: the measurer reads them
                append(std::string_view(&s[at - 1], 2));
                return next;
        }
    }

    static size_t argumentEnd(std::string_view s, size_t from) {
        const size_t end = s.find(';', from);
        return end == std::string_view::npos ? s.size() : end;
    }

    // "\H2.5;" sets the height, "\H0.5x;" scales it; a value that does not read changes nothing.
    void applyHeight(std::string_view argument) {
        const bool relative = !argument.empty() && (argument.back() == 'x' || argument.back() == 'X');
        if (relative) argument.remove_suffix(1);
        double value = 0.0;
        const auto [end, error] = std::from_chars(argument.data(), argument.data() + argument.size(), value);
        if (error != std::errc() || end != argument.data() + argument.size() || !std::isfinite(value) || value <= 0.0) {
            return;
        }
        height_ = relative ? height_ * value : value;
    }

    double height_;
    std::vector<double> groupHeights_;
    std::vector<Paragraph> paragraphs_;
};

// A word or a run of spaces of one height, measured.
struct Segment {
    std::string text;
    double height = 0.0;
    double width = 0.0;
    bool isSpace = false;
};

class LineBreaker {
public:
    LineBreaker(const TextStyleMetrics& style, double referenceWidth) : style_(style), limit_(referenceWidth) {}

    std::vector<MTextLine> breakParagraph(const Paragraph& paragraph) {
        lines_.clear();
        startLine();
        for (const Piece& piece : paragraph.pieces) split(piece);
        flushWord();
        std::vector<MTextLine> lines;
        for (const LineSegments& line : lines_) lines.push_back(toLine(line, paragraph.height));
        return lines;
    }

private:
    struct LineSegments {
        std::vector<Segment> segments;
        double width = 0.0;
        bool hasWord = false;
    };

    double width(std::string_view text, double height) const {
        TextStyleMetrics style = style_;
        style.height = height;
        return measureText(text, style).right;
    }

    void startLine() { lines_.emplace_back(); }

    // Splits a piece into words and spaces (only U+0020 breaks a line).
    void split(const Piece& piece) {
        size_t start = 0;
        while (start < piece.text.size()) {
            const bool space = piece.text[start] == ' ';
            size_t end = start;
            while (end < piece.text.size() && (piece.text[end] == ' ') == space) ++end;
            Segment segment{piece.text.substr(start, end - start), piece.height, 0.0, space};
            segment.width = width(segment.text, segment.height);
            if (space) {
                flushWord();
                spaces_.push_back(std::move(segment));
            } else {
                word_.push_back(std::move(segment));
            }
            start = end;
        }
    }

    // Places the pending word after the pending spaces, or on a new line when it does not fit.
    void flushWord() {
        if (word_.empty()) return;
        double spaceWidth = 0.0, wordWidth = 0.0;
        for (const Segment& s : spaces_) spaceWidth += s.width;
        for (const Segment& s : word_) wordWidth += s.width;
        if (limit_ > 0.0 && lines_.back().hasWord &&
            lines_.back().width + spaceWidth + wordWidth > limit_ * (1.0 + 1e-12)) {
            startLine();
            spaces_.clear();  // the spaces at a break are not shown
            spaceWidth = 0.0;
        }
        LineSegments& line = lines_.back();
        for (Segment& s : spaces_) line.segments.push_back(std::move(s));
        for (Segment& s : word_) line.segments.push_back(std::move(s));
        line.width += spaceWidth + wordWidth;
        line.hasWord = true;
        spaces_.clear();
        word_.clear();
    }

    // Joins the segments of one height into runs, measured whole; trailing spaces are dropped.
    MTextLine toLine(const LineSegments& segments, double paragraphHeight) const {
        MTextLine line;
        for (const Segment& s : segments.segments) {
            if (line.runs.empty() || line.runs.back().height != s.height) line.runs.push_back({{}, s.height, 0.0, 0.0});
            line.runs.back().text += s.text;
        }
        while (!line.runs.empty()) {
            std::string& text = line.runs.back().text;
            text.erase(text.find_last_not_of(' ') + 1);
            if (!text.empty()) break;
            line.runs.pop_back();
        }
        double x = 0.0;
        for (MTextRun& run : line.runs) {
            run.x = x;
            run.width = width(run.text, run.height);
            x += run.width;
            line.height = std::max(line.height, run.height);
        }
        line.width = x;
        if (line.runs.empty()) line.height = paragraphHeight;
        return line;
    }

    const TextStyleMetrics& style_;
    double limit_;
    std::vector<LineSegments> lines_;
    std::vector<Segment> spaces_;
    std::vector<Segment> word_;
};

// Stacks the lines below the top and aligns them in the box the attachment point places.
void placeLines(MTextLayout& layout, const MTextParameters& parameters) {
    double baseline = 0.0;
    for (size_t i = 0; i < layout.lines.size(); ++i) {
        MTextLine& line = layout.lines[i];
        baseline -= i == 0 ? line.height : kMTextLinePitch * parameters.lineSpacing * line.height;
        line.y = baseline;
        layout.width = std::max(layout.width, line.width);
    }
    layout.height = -baseline;
    const int attachment = std::clamp(parameters.attachment, 1, 9);
    const double column = static_cast<double>((attachment - 1) % 3);  // 0 left, 1 centre, 2 right
    const double row = static_cast<double>((attachment - 1) / 3);     // 0 top, 1 middle, 2 bottom
    layout.left = -layout.width * 0.5 * column;
    layout.top = layout.height * 0.5 * row;
    for (MTextLine& line : layout.lines) {
        line.x = layout.left + (layout.width - line.width) * 0.5 * column;
        line.y += layout.top;
    }
}

}  // namespace

MTextLayout layoutMText(std::string_view contents, const MTextParameters& parameters, const TextStyleMetrics& style) {
    MTextLayout layout;
    LineBreaker breaker(style, parameters.referenceWidth);
    for (const Paragraph& paragraph : ContentsReader(parameters.height).read(contents)) {
        for (MTextLine& line : breaker.breakParagraph(paragraph)) layout.lines.push_back(std::move(line));
    }
    placeLines(layout, parameters);
    return layout;
}

MTextLayout layoutMText(const ObjectRecord& mtext) {
    MTextParameters parameters;
    parameters.height = fieldReal(mtext, kMTextMarker, 40, 2.5);
    parameters.referenceWidth = std::max(0.0, fieldReal(mtext, kMTextMarker, 41, 0.0));
    const double spacing = fieldReal(mtext, kMTextMarker, 44, 1.0);
    parameters.lineSpacing = std::isfinite(spacing) && spacing > 0.0 ? spacing : 1.0;
    parameters.attachment = static_cast<int>(std::clamp<int64_t>(fieldInteger(mtext, kMTextMarker, 71, 1), 1, 9));
    return layoutMText(mtextContents(mtext), parameters, textStyleOf(mtext));
}

std::string mtextContents(const ObjectRecord& mtext) {
    std::string contents;
    for (const TagRef& chunk : fieldsOf(mtext, kMTextMarker, 3)) contents += chunk.text();
    contents += fieldText(mtext, kMTextMarker, 1);
    return contents;
}

}  // namespace korva::db::geometry
