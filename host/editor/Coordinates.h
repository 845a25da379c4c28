// The coordinate systems of the current document: the world (WCS), the user
// coordinate system of the current space (UCS, from UCSORG/UCSXDIR/UCSYDIR or
// their paper-space twins), and the display coordinates of the current view (DCS:
// origin at TARGET, z along VIEWDIR, turned by VIEWTWIST).
#pragma once

#include <string>
#include <string_view>

#include "kcge.h"

namespace korva::editor {

class Document;
struct ViewState;

struct UcsFrame {
    KcGePoint3d origin;
    KcGeVector3d xAxis{1, 0, 0};
    KcGeVector3d yAxis{0, 1, 0};
};

// The UCS of the current space of a document (the world when there is none).
UcsFrame currentUcs(Document* document);
void setCurrentUcs(Document& document, const UcsFrame& frame);
// The name of the current UCS of the current space (UCSNAME, or PUCSNAME in paper
// space); "" when it is unnamed. UCSNAME is read-only for users: the host writes it.
std::wstring currentUcsName(Document* document);
void setCurrentUcsName(Document& document, std::wstring_view name);

KcGeMatrix3d ucsToWorld(Document* document);
KcGeMatrix3d worldToUcs(Document* document);
KcGeMatrix3d displayToWorld(Document* document);
KcGeMatrix3d worldToDisplay(Document* document);
// The display coordinates of one view (the current view's above, the paper-space
// view's for PSDCS): origin TARGET, z along VIEWDIR, x and y by the arbitrary-axis
// rule turned by VIEWTWIST.
KcGeMatrix3d displayToWorld(const ViewState& view);

KcGePoint3d ucsPointToWorld(const KcGePoint3d& ucsPoint);
KcGePoint3d worldPointToUcs(const KcGePoint3d& worldPoint);

// The pick box as a distance in drawing units of the current view:
// PICKBOX pixels of a SCREENSIZE-high screen showing VIEWSIZE units.
double pickAperture();

}  // namespace korva::editor
