// The coordinate systems of the current document: the world (WCS), the user
// coordinate system of the current space (UCS, from UCSORG/UCSXDIR/UCSYDIR or
// their paper-space twins), and the display coordinates of the current view (DCS:
// origin at TARGET, z along VIEWDIR, turned by VIEWTWIST).
#pragma once

#include "kcge.h"

namespace korva::editor {

class Document;

struct UcsFrame {
    KcGePoint3d origin;
    KcGeVector3d xAxis{1, 0, 0};
    KcGeVector3d yAxis{0, 1, 0};
};

// The UCS of the current space of a document (the world when there is none).
UcsFrame currentUcs(Document* document);
void setCurrentUcs(Document& document, const UcsFrame& frame);

KcGeMatrix3d ucsToWorld(Document* document);
KcGeMatrix3d worldToUcs(Document* document);
KcGeMatrix3d displayToWorld(Document* document);
KcGeMatrix3d worldToDisplay(Document* document);

KcGePoint3d ucsPointToWorld(const KcGePoint3d& ucsPoint);
KcGePoint3d worldPointToUcs(const KcGePoint3d& worldPoint);

// The pick box as a distance in drawing units of the current view:
// PICKBOX pixels of a SCREENSIZE-high screen showing VIEWSIZE units.
double pickAperture();

}  // namespace korva::editor
