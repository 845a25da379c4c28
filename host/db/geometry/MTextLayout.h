// The lines of an MTEXT as the database measures and a renderer draws them.
// The contents split into paragraphs at "\P"; inline format codes are removed,
// except that "\H<value>;" (absolute) and "\H<value>x;" (relative) set the
// height of what follows, up to the "}" that closes their group. With a
// reference width (group 41) > 0 lines wrap greedily at spaces; a word wider
// than the reference width keeps a line of its own. Every piece of text is
// measured by korva::db::measureText, so the layout follows the installed
// measurer (real fonts, or the estimate).
//
// Vertically, the first line's baseline lies its height (the tallest height on
// it) below the top of the text; each next line lies 5/3 of its height times
// the line spacing factor (group 44) below the one before. The actual height
// is the distance from the top to the last baseline; the actual width is the
// widest line. The box is placed at the location by the attachment point (71),
// and each line is aligned left, centre or right in it by the same point.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "db/ObjectRecord.h"
#include "db/TextMetrics.h"

namespace korva::db::geometry {

// Text of one height within a line.
struct MTextRun {
    std::string text;    // as the TEXT it explodes into would store it (%% codes kept)
    double height = 0.0;
    double x = 0.0;      // start of the run from the start of its line
    double width = 0.0;
};

struct MTextLine {
    std::vector<MTextRun> runs;  // empty for an empty paragraph
    double width = 0.0;
    double height = 0.0;         // the tallest run, or the paragraph's height when empty
    // Start of the baseline in the MTEXT's frame: from the location, x along the
    // direction, y along the up vector.
    double x = 0.0;
    double y = 0.0;
};

struct MTextLayout {
    std::vector<MTextLine> lines;
    double width = 0.0;   // actual width
    double height = 0.0;  // actual height
    double left = 0.0;    // the box's top-left corner in the MTEXT's frame
    double top = 0.0;
};

struct MTextParameters {
    double height = 2.5;          // group 40
    double referenceWidth = 0.0;  // group 41: 0 does not wrap
    double lineSpacing = 1.0;     // group 44
    int attachment = 1;           // group 71: 1 top left ... 9 bottom right
};

// Lays out MTEXT contents (as stored: codes kept) in the given style (its height is ignored).
MTextLayout layoutMText(std::string_view contents, const MTextParameters& parameters, const TextStyleMetrics& style);
// Lays out an MTEXT record: its contents, height, reference width, spacing, attachment and style.
MTextLayout layoutMText(const ObjectRecord& mtext);

// The contents of an MTEXT record: the 3 chunks and the 1 that ends them.
std::string mtextContents(const ObjectRecord& mtext);

}  // namespace korva::db::geometry
