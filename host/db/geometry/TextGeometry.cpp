// Text boxes and MTEXT lines. Texts are measured by korva::db::measureText, so
// extents follow whatever measurer the host installed (real fonts, or the estimate).
#include "db/geometry/TextGeometry.h"

#include <algorithm>
#include <cmath>

#include "db/Drawing.h"
#include "db/RecordFields.h"
#include "db/geometry/EntityTags.h"
#include "geom/Angles.h"
#include "geom/Ocs.h"

namespace korva::db::geometry {

namespace {

// The text a TEXT-like record shows: ATTDEF shows its tag, the others their value.
std::string_view shownText(const ObjectRecord& text, const EntityTags& tags) {
    const Tag* shown = tags.first(text.type == Type::AttDef ? 2 : 1);
    return shown && shown->kind == TagKind::String ? std::string_view(shown->text) : std::string_view();
}

// Skips an inline code's argument up to and including its ';'.
size_t skipArgument(std::string_view s, size_t at) {
    const size_t end = s.find(';', at);
    return end == std::string_view::npos ? s.size() : end + 1;
}

}  // namespace

TextStyleMetrics textMetricsOf(const ObjectRecord& text) {
    const EntityTags tags(text);
    TextStyleMetrics metrics;
    metrics.height = tags.real(40, 2.5);
    metrics.widthFactor = text.type == Type::MText ? 1.0 : tags.real(41, 1.0);
    metrics.oblique = text.type == Type::MText ? 0.0 : geom::degreesToRadians(tags.real(51, 0.0));
    const Tag* styleName = tags.first(7);
    const std::string_view name = styleName && styleName->kind == TagKind::String ? std::string_view(styleName->text)
                                                                                   : std::string_view("Standard");
    if (text.drawing) {
        if (const ObjectRecord* style = text.drawing->tableRecord("STYLE", name)) {
            metrics.fontFile = fieldText(*style, {}, 3);
            metrics.bigFontFile = fieldText(*style, {}, 4);
        }
    }
    return metrics;
}

std::array<KcGePoint3d, 4> singleLineTextCorners(const ObjectRecord& text) {
    const EntityTags tags(text);
    const KcGePoint3d position = tags.point(10);
    const KcGeVector3d normal = tags.normal();
    const TextBox box = measureText(shownText(text, tags), textMetricsOf(text));
    double left = box.left, right = box.right, bottom = box.bottom, top = box.top;
    const int64_t generation = tags.integer(71, 0);
    if (generation & 2) {  // backward: mirrored in x about the insertion point
        std::swap(left, right);
        left = -left;
        right = -right;
    }
    if (generation & 4) {  // upside down: mirrored in y
        std::swap(bottom, top);
        bottom = -bottom;
        top = -top;
    }
    const double rotation = geom::degreesToRadians(tags.real(50, 0.0));
    const KcGeVector3d along(std::cos(rotation), std::sin(rotation), 0.0);
    const KcGeVector3d up(-along.y, along.x, 0.0);
    auto corner = [&](double x, double y) { return geom::ocsToWcs(position + along * x + up * y, normal); };
    return {corner(left, bottom), corner(right, bottom), corner(right, top), corner(left, top)};
}

MTextFrame mtextFrame(const ObjectRecord& mtext) {
    const EntityTags tags(mtext);
    MTextFrame frame;
    frame.location = tags.point(10);
    frame.normal = tags.normal().normal();
    KcGeVector3d direction;
    if (const Tag* d = tags.first(11); d && d->isPoint()) {
        direction = d->pointValue().asVector();
        direction -= frame.normal * direction.dotProduct(frame.normal);
    }
    if (direction.isZeroLength()) {
        const double rotation = tags.real(50, 0.0);
        direction = geom::ocsToWcs(KcGeVector3d(std::cos(rotation), std::sin(rotation), 0.0), frame.normal);
    }
    frame.direction = direction.normal();
    frame.up = frame.normal.crossProduct(frame.direction).normal();
    return frame;
}

std::vector<std::string> plainMTextLines(std::string_view s) {
    std::vector<std::string> lines(1);
    for (size_t i = 0; i < s.size();) {
        const char c = s[i];
        if (c == '{' || c == '}') {
            ++i;
            continue;
        }
        if (c != '\\' || i + 1 >= s.size()) {
            lines.back() += c;
            ++i;
            continue;
        }
        const char code = s[i + 1];
        i += 2;
        switch (code) {
            case 'P': case 'N': case 'X': lines.emplace_back(); break;
            case '~': lines.back() += ' '; break;
            case '\\': case '{': case '}': lines.back() += code; break;
            case 'L': case 'l': case 'O': case 'o': case 'K': case 'k': break;
            case 'H': case 'C': case 'c': case 'F': case 'f': case 'A': case 'T': case 'Q': case 'W': case 'p':
                i = skipArgument(s, i);
                break;
            case 'S': {  // stacked text "a^b", "a/b" or "a#b": shown as a fraction
                const size_t end = skipArgument(s, i);
                std::string stacked(s.substr(i, end - i - (end <= s.size() && s[end - 1] == ';' ? 1 : 0)));
                std::replace(stacked.begin(), stacked.end(), '^', '/');
                std::replace(stacked.begin(), stacked.end(), '#', '/');
                lines.back() += stacked;
                i = end;
                break;
            }
            default:  // \U+XXXX and \M+NXXXX are characters, kept for the text that shows them
                lines.back() += '\\';
                lines.back() += code;
                break;
        }
    }
    return lines;
}

std::vector<std::string> mtextLines(const ObjectRecord& mtext) {
    const EntityTags tags(mtext);
    std::string content;
    const Tag* last = nullptr;
    for (size_t i = 0; i < tags.extendedDataStart(); ++i) {
        if (!tags.isData(i)) continue;
        const Tag& t = tags.tags[i];
        if (t.code == 3 && t.kind == TagKind::String) content += t.text;
        else if (t.code == 1 && t.kind == TagKind::String && !last) last = &t;
    }
    if (last) content += last->text;
    return plainMTextLines(content);
}

std::array<KcGePoint3d, 4> mtextCorners(const ObjectRecord& mtext) {
    const EntityTags tags(mtext);
    const MTextFrame frame = mtextFrame(mtext);
    const double height = tags.real(40, 2.5);
    double width = tags.real(42, 0.0);
    if (width == 0.0) width = tags.real(41, 0.0);
    std::vector<std::string> lines;
    if (width == 0.0 || tags.real(43, 0.0) == 0.0) lines = mtextLines(mtext);
    if (width == 0.0) {
        const TextStyleMetrics metrics = textMetricsOf(mtext);
        for (const std::string& line : lines) {
            const TextBox box = measureText(line, metrics);
            width = std::max(width, box.right - std::min(0.0, box.left));
        }
    }
    double boxHeight = tags.real(43, 0.0);
    if (boxHeight == 0.0) boxHeight = static_cast<double>(lines.size()) * kMTextLinePitch * height;
    const int64_t attachment = std::clamp<int64_t>(tags.integer(71, 1), 1, 9);
    const double left = -width * 0.5 * static_cast<double>((attachment - 1) % 3);
    const double top = boxHeight * 0.5 * static_cast<double>((attachment - 1) / 3);
    auto corner = [&](double x, double y) { return frame.location + frame.direction * x + frame.up * y; };
    return {corner(left, top - boxHeight), corner(left + width, top - boxHeight), corner(left + width, top),
            corner(left, top)};
}

}  // namespace korva::db::geometry
