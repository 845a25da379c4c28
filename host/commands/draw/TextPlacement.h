// The placement prompts that -TEXT and -ATTDEF share: the start point or the
// point of a justification ("Justify"), the text style ("Style"), the height
// (unless the style fixes it, or "Align" takes it from the baseline) and the
// rotation angle (unless "Align" or "Fit" take it from the baseline), and how a
// text entity is then placed.
#pragma once

#include "kcdbdatabase.h"

namespace korva::commands {

struct TextPlacement {
    KcDb::TextHorzMode horizontal = KcDb::kTextLeft;
    KcDb::TextVertMode vertical = KcDb::kTextBase;
    KcGePoint3d first;   // world: start point, justification point, or first end of the baseline
    KcGePoint3d second;  // world: the second end of the baseline (Align, Fit)
    KcGeVector3d normal = KcGeVector3d::kZAxis;
    double height = 0.0;    // Align: 0, the baseline decides
    double rotation = 0.0;  // in the object coordinate system of normal
    KcDbObjectId style;

    bool isTwoPoint() const { return horizontal == KcDb::kTextAlign || horizontal == KcDb::kTextFit; }
};

// Runs the placement prompts. RTNORM, or the status that ended them (RTCAN, RTNONE).
int promptTextPlacement(TextPlacement& placement);

// Places a resident text (open for write, its string set): plane, style, height,
// rotation, justification and points; Align scales the height and Fit the width
// factor so that the string spans the baseline.
void placeText(KcDbText& text, const TextPlacement& placement);

}  // namespace korva::commands
