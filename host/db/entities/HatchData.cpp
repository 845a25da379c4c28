// Reading the boundary paths and pattern lines of a HATCH.
#include "db/entities/HatchData.h"

#include <cmath>

#include "db/entities/EntityFields.h"

namespace korva::db {

namespace {

constexpr std::string_view kHatch = "AcDbHatch";

// A cursor over the tags of the AcDbHatch run.
class HatchCursor {
public:
    explicit HatchCursor(std::vector<TagRef> tags) : tags_(std::move(tags)) {}

    bool atEnd() const { return at_ >= tags_.size(); }
    bool next(int code) const { return !atEnd() && tags_[at_].code() == code; }
    int nextCode() const { return atEnd() ? -1 : tags_[at_].code(); }
    // The next tag, when it has that code; the cursor moves past it.
    bool take(int code, TagRef& out) {
        if (!next(code)) return false;
        out = tags_[at_++];
        return true;
    }
    double real(int code, double fallback = 0.0) {
        TagRef tag;
        return take(code, tag) ? tag.real() : fallback;
    }
    int64_t integer(int code, int64_t fallback = 0) {
        TagRef tag;
        return take(code, tag) ? tag.integer() : fallback;
    }
    KcGePoint2d point(int code) {
        TagRef tag;
        return take(code, tag) ? tag.point().convert2d() : KcGePoint2d();
    }
    bool seek(int code) {
        while (!atEnd() && tags_[at_].code() != code) ++at_;
        return !atEnd();
    }
    // The code of the tag after the next one.
    int codeAfterNext() const { return at_ + 1 < tags_.size() ? tags_[at_ + 1].code() : -1; }

private:
    std::vector<TagRef> tags_;
    size_t at_ = 0;
};

// Counts read from a file are trusted only up to the tags there are.
constexpr int64_t kMaxCount = 1 << 24;

bool readCount(HatchCursor& cursor, int code, int64_t& count) {
    TagRef tag;
    if (!cursor.take(code, tag)) return false;
    count = tag.integer();
    return count >= 0 && count <= kMaxCount;
}

void readPolylineLoop(HatchCursor& cursor, HatchLoop& loop) {
    cursor.integer(72);  // has bulges: the 42s say so themselves
    cursor.integer(73);  // closed
    int64_t count = 0;
    if (!readCount(cursor, 93, count)) return;
    for (int64_t i = 0; i < count && cursor.next(10); ++i) {
        loop.vertices.push_back(cursor.point(10));
        loop.bulges.push_back(cursor.real(42, 0.0));
    }
}

KcGePoint2d onCircle(const KcGePoint2d& center, double radius, double degrees) {
    const double a = radiansFromDegrees(degrees);
    return {center.x + radius * std::cos(a), center.y + radius * std::sin(a)};
}

// A clockwise arc stores its angles as 360 minus the real ones.
void addArcEdge(HatchCursor& cursor, HatchLoop& loop) {
    const KcGePoint2d center = cursor.point(10);
    const double radius = cursor.real(40);
    const double start = cursor.real(50);
    const double end = cursor.real(51);
    const bool ccw = cursor.integer(73, 1) != 0;
    double sweep = end - start;
    while (sweep <= 0.0) sweep += 360.0;
    while (sweep > 360.0) sweep -= 360.0;
    const double first = ccw ? start : -start;
    const double sign = ccw ? 1.0 : -1.0;
    if (sweep >= 360.0 - 1e-9) {
        // A full circle as two half circles: a bulge cannot span 360 degrees.
        loop.vertices.push_back(onCircle(center, radius, first));
        loop.bulges.push_back(sign);
        loop.vertices.push_back(onCircle(center, radius, first + 180.0 * sign));
        loop.bulges.push_back(sign);
        return;
    }
    loop.vertices.push_back(onCircle(center, radius, first));
    loop.bulges.push_back(sign * std::tan(radiansFromDegrees(sweep) / 4.0));
}

void addEllipseEdge(HatchCursor& cursor, HatchLoop& loop) {
    const KcGePoint2d center = cursor.point(10);
    const KcGePoint2d major = cursor.point(11);
    const double ratio = cursor.real(40, 1.0);
    const double start = cursor.real(50);
    cursor.real(51);
    const bool ccw = cursor.integer(73, 1) != 0;
    const double t = radiansFromDegrees(ccw ? start : -start);
    const KcGeVector2d minor(-major.y * ratio, major.x * ratio);
    loop.vertices.push_back({center.x + major.x * std::cos(t) + minor.x * std::sin(t),
                             center.y + major.y * std::cos(t) + minor.y * std::sin(t)});
    loop.bulges.push_back(0.0);
}

void addSplineEdge(HatchCursor& cursor, HatchLoop& loop) {
    cursor.integer(94);  // degree
    const bool rational = cursor.integer(73, 0) != 0;
    cursor.integer(74);  // periodic
    int64_t knots = 0, controls = 0;
    if (!readCount(cursor, 95, knots) || !readCount(cursor, 96, controls)) return;
    for (int64_t i = 0; i < knots && cursor.next(40); ++i) cursor.real(40);
    bool first = true;
    for (int64_t i = 0; i < controls && cursor.next(10); ++i) {
        const KcGePoint2d point = cursor.point(10);
        if (rational) cursor.real(42);
        if (first) {
            loop.vertices.push_back(point);
            loop.bulges.push_back(0.0);
            first = false;
        }
    }
    // Fit data (files from 2010 on): a 97 followed by fit points or tangents, not
    // the source-boundary 97 that ends the path.
    const int after = cursor.codeAfterNext();
    if (cursor.next(97) && (after == 11 || after == 12 || after == 13 || after == 97)) {
        int64_t fits = 0;
        if (!readCount(cursor, 97, fits)) return;
        for (int64_t i = 0; i < fits && cursor.next(11); ++i) cursor.point(11);
        cursor.point(12);
        cursor.point(13);
    }
}

void readEdgeLoop(HatchCursor& cursor, HatchLoop& loop) {
    int64_t edges = 0;
    if (!readCount(cursor, 93, edges)) return;
    for (int64_t i = 0; i < edges; ++i) {
        switch (cursor.integer(72, -1)) {
            case 1:
                loop.vertices.push_back(cursor.point(10));
                loop.bulges.push_back(0.0);
                cursor.point(11);
                break;
            case 2: addArcEdge(cursor, loop); break;
            case 3: addEllipseEdge(cursor, loop); break;
            case 4: addSplineEdge(cursor, loop); break;
            default: return;  // not an edge: the path ends here
        }
    }
}

void skipSourceBoundaries(HatchCursor& cursor) {
    int64_t count = 0;
    if (!readCount(cursor, 97, count)) return;
    for (int64_t i = 0; i < count && cursor.next(330); ++i) {
        TagRef unused;
        cursor.take(330, unused);
    }
}

void readPatternLines(HatchCursor& cursor, std::vector<HatchPatternLine>& lines) {
    int64_t count = 0;
    if (!readCount(cursor, 78, count)) return;
    for (int64_t i = 0; i < count && cursor.next(53); ++i) {
        HatchPatternLine line;
        line.angleDegrees = cursor.real(53);
        line.baseX = cursor.real(43);
        line.baseY = cursor.real(44);
        line.offsetX = cursor.real(45);
        line.offsetY = cursor.real(46);
        int64_t dashes = 0;
        if (readCount(cursor, 79, dashes)) {
            for (int64_t d = 0; d < dashes && cursor.next(49); ++d) line.dashes.push_back(cursor.real(49));
        }
        lines.push_back(std::move(line));
    }
}

}  // namespace

HatchData readHatchData(const ObjectRecord& hatch) {
    HatchData data;
    HatchCursor cursor(subclassTags(hatch, kHatch));
    if (!cursor.seek(91)) return data;
    int64_t loops = 0;
    if (!readCount(cursor, 91, loops)) return data;
    for (int64_t i = 0; i < loops && cursor.next(92); ++i) {
        HatchLoop loop;
        loop.type = static_cast<int32_t>(cursor.integer(92));
        if (loop.type & 2) readPolylineLoop(cursor, loop);
        else readEdgeLoop(cursor, loop);
        skipSourceBoundaries(cursor);
        data.loops.push_back(std::move(loop));
    }
    // Style, pattern type, angle, scale and double flag precede the pattern lines.
    while (!cursor.atEnd()) {
        const int code = cursor.nextCode();
        if (code == 78) {
            readPatternLines(cursor, data.patternLines);
            break;
        }
        if (code != 75 && code != 76 && code != 52 && code != 41 && code != 77) break;
        TagRef unused;
        cursor.take(code, unused);
    }
    return data;
}

}  // namespace korva::db
