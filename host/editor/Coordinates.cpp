#include "editor/Coordinates.h"

#include <string_view>

#include "db/ApiText.h"
#include "editor/Document.h"
#include "editor/SystemVariables.h"

namespace korva::editor {

namespace {

bool paperSpaceCurrent(const Document& document) { return document.cvport() == 1; }

// Header variables of the UCS of a space: UCS... for model space, PUCS... for paper space.
const char* ucsVariable(bool paper, const char* name) {
    if (!paper) return name;
    if (std::string_view(name) == "$UCSORG") return "$PUCSORG";
    if (std::string_view(name) == "$UCSXDIR") return "$PUCSXDIR";
    return "$PUCSYDIR";
}

}  // namespace

UcsFrame currentUcs(Document* document) {
    UcsFrame frame;
    if (!document) return frame;
    const bool paper = paperSpaceCurrent(*document);
    const auto& header = document->drawing().header;
    frame.origin = header.getPoint(ucsVariable(paper, "$UCSORG")).value_or(KcGePoint3d::kOrigin);
    const KcGePoint3d x = header.getPoint(ucsVariable(paper, "$UCSXDIR")).value_or(KcGePoint3d(1, 0, 0));
    const KcGePoint3d y = header.getPoint(ucsVariable(paper, "$UCSYDIR")).value_or(KcGePoint3d(0, 1, 0));
    frame.xAxis = x.asVector().normal();
    frame.yAxis = y.asVector().normal();
    if (frame.xAxis.isZeroLength() || frame.yAxis.isZeroLength() || frame.xAxis.isParallelTo(frame.yAxis)) {
        frame.xAxis = KcGeVector3d::kXAxis;
        frame.yAxis = KcGeVector3d::kYAxis;
    }
    return frame;
}

void setCurrentUcs(Document& document, const UcsFrame& frame) {
    const bool paper = paperSpaceCurrent(document);
    auto& header = document.drawing().header;
    const KcGeVector3d x = frame.xAxis.normal();
    const KcGeVector3d y = frame.yAxis.normal();
    header.setPoint(ucsVariable(paper, "$UCSORG"), 10, frame.origin);
    header.setPoint(ucsVariable(paper, "$UCSXDIR"), 10, {x.x, x.y, x.z});
    header.setPoint(ucsVariable(paper, "$UCSYDIR"), 10, {y.x, y.y, y.z});
}

std::wstring currentUcsName(Document* document) {
    if (!document) return {};
    const char* variable = paperSpaceCurrent(*document) ? "$PUCSNAME" : "$UCSNAME";
    return db::toApiText(document->drawing().header.getString(variable).value_or(""));
}

void setCurrentUcsName(Document& document, std::wstring_view name) {
    if (!paperSpaceCurrent(document) && Session::instance().current() == &document) {
        SystemVariables::instance().setValue(L"UCSNAME", VarValue::ofText(std::wstring(name)), true);
        return;
    }
    const char* variable = paperSpaceCurrent(document) ? "$PUCSNAME" : "$UCSNAME";
    document.drawing().header.setString(variable, 2, db::toStoredText(name));
}

KcGeMatrix3d ucsToWorld(Document* document) {
    const UcsFrame frame = currentUcs(document);
    KcGeMatrix3d m;
    m.setCoordSystem(frame.origin, frame.xAxis, frame.yAxis, frame.xAxis.crossProduct(frame.yAxis).normal());
    return m;
}

KcGeMatrix3d worldToUcs(Document* document) { return ucsToWorld(document).inverse(); }

KcGeMatrix3d displayToWorld(Document* document) {
    if (!document) return KcGeMatrix3d::kIdentity;
    return displayToWorld(document->view(paperSpaceCurrent(*document)));
}

KcGeMatrix3d displayToWorld(const ViewState& view) {
    KcGeVector3d direction = view.direction.isZeroLength() ? KcGeVector3d::kZAxis : view.direction.normal();
    // The display plane follows the arbitrary-axis rule for the view direction, turned by the twist.
    const KcGeMatrix3d plane = KcGeMatrix3d::planeToWorld(direction);
    const KcGeMatrix3d twist = KcGeMatrix3d::rotation(-view.twist, KcGeVector3d::kZAxis);
    return KcGeMatrix3d::translation(view.target.asVector()) * plane * twist;
}

KcGeMatrix3d worldToDisplay(Document* document) { return displayToWorld(document).inverse(); }

KcGePoint3d ucsPointToWorld(const KcGePoint3d& ucsPoint) { return ucsToWorld(Session::instance().current()) * ucsPoint; }

KcGePoint3d worldPointToUcs(const KcGePoint3d& worldPoint) {
    return worldToUcs(Session::instance().current()) * worldPoint;
}

double pickAperture() {
    SystemVariables& variables = SystemVariables::instance();
    Document* document = Session::instance().current();
    const double viewHeight = document ? document->view(paperSpaceCurrent(*document)).height : 9.0;
    const auto screen = variables.value(L"SCREENSIZE");
    const double pixels = screen && screen->point.y > 0 ? screen->point.y : 768.0;
    return static_cast<double>(variables.integer(L"PICKBOX", 3)) * viewHeight / pixels;
}

}  // namespace korva::editor
