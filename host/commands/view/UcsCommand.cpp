// UCS: one option per run. Every change pushes the old UCS on the history of
// the current space (ten deep) for Previous; the name of the current UCS
// (UCSNAME, PUCSNAME in paper space) is that of a restored or saved UCS and
// becomes "" with every other option.
#include "commands/view/UcsCommand.h"

#include <cmath>
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/CommandInput.h"
#include "commands/NamePatterns.h"
#include "commands/view/NamedUcs.h"
#include "commands/view/UcsOfEntity.h"
#include "db/ApiText.h"
#include "db/EntityNames.h"
#include "db/tables/SymbolNames.h"
#include "editor/Document.h"
#include "editor/SystemVariables.h"
#include "kced.h"

namespace korva::commands {

namespace {

using editor::Document;
using editor::UcsFrame;

constexpr size_t kHistoryDepth = 10;
constexpr double kPi = 3.14159265358979323846;

constexpr const wchar_t* kUcsKeywords =
    L"Face NAmed OBject Previous View World X Y Z ZAxis Entity Origin Save Restore Delete ? _ "
    L"Face NAmed OBject Previous View World X Y Z ZAxis Entity Origin Save Restore Delete ?";

bool paperSpace(const Document& document) { return document.cvport() == 1; }

KcGeVector3d zAxisOf(const UcsFrame& frame) { return frame.xAxis.crossProduct(frame.yAxis).normal(); }

// The name the command line shows: the UCS's name, "*WORLD*" or "*NO NAME*".
std::wstring shownName(Document& document) {
    const std::wstring name = editor::currentUcsName(&document);
    if (!name.empty()) return name;
    const UcsFrame frame = editor::currentUcs(&document);
    const bool world = frame.origin == KcGePoint3d::kOrigin && frame.xAxis.isEqualTo(KcGeVector3d::kXAxis) &&
                       frame.yAxis.isEqualTo(KcGeVector3d::kYAxis);
    return world ? L"*WORLD*" : L"*NO NAME*";
}

// Makes a frame current, remembering the old one for Previous.
void changeUcs(Document& document, const UcsFrame& frame, const std::wstring& name) {
    std::vector<editor::UcsState>& history = document.ucsHistory(paperSpace(document));
    const UcsFrame old = editor::currentUcs(&document);
    history.push_back({old.origin, old.xAxis, old.yAxis, editor::currentUcsName(&document)});
    if (history.size() > kHistoryDepth) history.erase(history.begin());
    editor::setCurrentUcs(document, frame);
    editor::setCurrentUcsName(document, name);
}

void previousUcs(Document& document) {
    std::vector<editor::UcsState>& history = document.ucsHistory(paperSpace(document));
    if (history.empty()) {
        printMessage(L"** No previous UCS saved **");
        return;
    }
    const editor::UcsState state = history.back();
    history.pop_back();
    UcsFrame frame;
    frame.origin = state.origin;
    frame.xAxis = state.xAxis;
    frame.yAxis = state.yAxis;
    editor::setCurrentUcs(document, frame);
    editor::setCurrentUcsName(document, state.name);
}

// The current UCS turned about one of its own axes.
void rotateUcs(Document& document, int axis) {
    static const wchar_t* const names[] = {L"X", L"Y", L"Z"};
    double angle = kPi / 2;
    const std::wstring prompt = std::wstring(L"\nSpecify rotation angle about ") + names[axis] + L" axis <90>: ";
    const int status = kcedGetAngle(nullptr, prompt.c_str(), &angle);
    if (status != RTNORM && status != RTNONE) return;
    if (status == RTNONE) angle = kPi / 2;
    UcsFrame frame = editor::currentUcs(&document);
    const KcGeVector3d about = axis == 0 ? frame.xAxis : (axis == 1 ? frame.yAxis : zAxisOf(frame));
    frame.xAxis.rotateBy(angle, about);
    frame.yAxis.rotateBy(angle, about);
    changeUcs(document, frame, L"");
}

bool askPoint(const std::wstring& prompt, KcGePoint3d& worldPoint) {
    double point[3] = {0, 0, 0};
    if (kcedGetPoint(nullptr, prompt.c_str(), point) != RTNORM) return false;
    worldPoint = editor::ucsPointToWorld({point[0], point[1], point[2]});
    return true;
}

void moveOrigin(Document& document) {
    KcGePoint3d origin;
    if (!askPoint(L"\nSpecify new origin point <0,0,0>: ", origin)) return;
    UcsFrame frame = editor::currentUcs(&document);
    frame.origin = origin;
    changeUcs(document, frame, L"");
}

// ZAxis: a new origin and a point on the positive Z axis.
void zAxisUcs(Document& document) {
    KcGePoint3d origin = editor::currentUcs(&document).origin;
    double point[3] = {0, 0, 0};
    int status = kcedGetPoint(nullptr, L"\nSpecify new origin point <0,0,0>: ", point);
    if (status == RTNORM)
        origin = editor::ucsPointToWorld({point[0], point[1], point[2]});
    else if (status != RTNONE)
        return;
    const UcsFrame current = editor::currentUcs(&document);
    KcGePoint3d onAxis = origin + zAxisOf(current);
    const double base[3] = {origin.x, origin.y, origin.z};
    status = kcedGetPoint(base, L"\nSpecify point on positive portion of Z-axis <0,0,1>: ", point);
    if (status == RTNORM)
        onAxis = editor::ucsPointToWorld({point[0], point[1], point[2]});
    else if (status != RTNONE)
        return;
    const KcGeVector3d z = (onAxis - origin).normal();
    if (z.isZeroLength()) return;
    UcsFrame frame;
    frame.origin = origin;
    frame.xAxis = z.perpVector().normal();
    frame.yAxis = z.crossProduct(frame.xAxis).normal();
    changeUcs(document, frame, L"");
}

// View: the XY plane parallel to the screen, the origin kept.
void viewUcs(Document& document) {
    const KcGeMatrix3d toWorld = editor::displayToWorld(&document);
    UcsFrame frame;
    frame.origin = editor::currentUcs(&document).origin;
    frame.xAxis = KcGeVector3d::kXAxis;
    frame.yAxis = KcGeVector3d::kYAxis;
    frame.xAxis.transformBy(toWorld);
    frame.yAxis.transformBy(toWorld);
    changeUcs(document, frame, L"");
}

void entityUcs(Document& document) {
    while (true) {
        kcad_name name = {0, 0};
        double pick[3] = {0, 0, 0};
        const int status = kcedEntSel(L"\nSelect object to align UCS: ", name, pick);
        if (status == RTNORM) {
            const db::ObjectRecord* entity = db::recordOf(name);
            const auto frame = entity ? ucsOfEntity(*entity) : std::nullopt;
            if (!frame) {
                printMessage(L"The object does not define a coordinate system.");
                return;
            }
            changeUcs(document, *frame, L"");
            return;
        }
        // A pick that hit nothing asks again; Enter or cancel ends the option.
        if (status != RTERROR || editor::SystemVariables::instance().integer(L"ERRNO", 0) != 7) return;
    }
}

// --- named coordinate systems ---------------------------------------------------

void listNamed(Document& document) {
    const TextAnswer answer = askString(L"\nEnter UCS name(s) to list <*>: ", true);
    if (answer.cancelled()) return;
    printMessage(L"Current ucs name:  " + shownName(document));
    printMessage(L"Saved coordinate systems:");
    const NamePatterns patterns(answer.text.empty() ? L"*" : answer.text);
    const auto match = patterns.matchRecords(document.drawing().table("UCS"));
    auto point = [](const auto& p) {
        return L"<" + formatReal(p.x) + L"," + formatReal(p.y) + L"," + formatReal(p.z) + L">";
    };
    for (const db::ObjectRecord* record : match.records) {
        const auto named = findNamedUcs(document.drawing(), db::toApiText(db::recordName(*record)));
        if (!named) continue;
        printMessage(L"\n" + named->name);
        printMessage(L"    Origin = " + point(named->frame.origin) + L", X Axis = " + point(named->frame.xAxis));
        printMessage(L"    Y Axis = " + point(named->frame.yAxis) + L", Z Axis = " + point(zAxisOf(named->frame)));
    }
}

void saveUcs(Document& document) {
    std::wstring name;
    while (true) {
        const TextAnswer answer = askString(L"\nEnter name to save current UCS or [?]: ", false);
        if (answer.cancelled() || answer.text.empty()) return;
        if (answer.text != L"?") {
            name = answer.text;
            break;
        }
        listNamed(document);
    }
    if (!db::isValidSymbolName(name, false)) {
        refuseAnswer(L"Invalid UCS name.");
        return;
    }
    if (const auto existing = findNamedUcs(document.drawing(), name)) {
        bool cancelled = false;
        if (!askYes(L"\nUCS " + existing->name + L" already exists.  Replace it? <N> ", cancelled)) return;
        name = existing->name;
    }
    if (!saveNamedUcs(document.drawing(), name, editor::currentUcs(&document))) {
        printMessage(L"The UCS could not be saved.");
        return;
    }
    editor::setCurrentUcsName(document, name);
}

void restoreUcs(Document& document) {
    while (true) {
        const TextAnswer answer = askString(L"\nEnter name of UCS to restore or [?]: ", false);
        if (answer.cancelled() || answer.text.empty()) return;
        if (answer.text == L"?") {
            listNamed(document);
            continue;
        }
        const auto named = findNamedUcs(document.drawing(), answer.text);
        if (!named) {
            printMessage(L"Cannot find UCS " + answer.text + L".");
            return;
        }
        changeUcs(document, named->frame, named->name);
        return;
    }
}

void deleteUcs(Document& document) {
    const TextAnswer answer = askString(L"\nEnter UCS name(s) to delete <none>: ", false);
    if (answer.cancelled() || answer.text.empty()) return;
    const auto match = NamePatterns(answer.text).matchRecords(document.drawing().table("UCS"));
    size_t deleted = 0;
    for (db::ObjectRecord* record : match.records) deleted += eraseNamedUcs(*record) ? 1 : 0;
    printMessage(L"Deleted " + std::to_wstring(deleted) + (deleted == 1 ? L" UCS." : L" UCSs."));
    editor::setCurrentUcsName(document, L"");
}

void namedOption(Document& document) {
    const TextAnswer option =
        askKeyword(L"\nEnter an option [Restore/Save/Delete/?]: ", L"Restore Save Delete ? _ Restore Save Delete ?");
    if (option.status != RTNORM) return;
    if (option.text == L"Restore")
        restoreUcs(document);
    else if (option.text == L"Save")
        saveUcs(document);
    else if (option.text == L"Delete")
        deleteUcs(document);
    else
        listNamed(document);
}

void runOption(Document& document, const std::wstring& option) {
    if (option == L"World")
        changeUcs(document, UcsFrame(), L"");
    else if (option == L"Previous")
        previousUcs(document);
    else if (option == L"Origin")
        moveOrigin(document);
    else if (option == L"ZAxis")
        zAxisUcs(document);
    else if (option == L"View")
        viewUcs(document);
    else if (option == L"X")
        rotateUcs(document, 0);
    else if (option == L"Y")
        rotateUcs(document, 1);
    else if (option == L"Z")
        rotateUcs(document, 2);
    else if (option == L"OBject" || option == L"Entity")
        entityUcs(document);
    else if (option == L"NAmed")
        namedOption(document);
    else if (option == L"Save")
        saveUcs(document);
    else if (option == L"Restore")
        restoreUcs(document);
    else if (option == L"Delete")
        deleteUcs(document);
    else if (option == L"?")
        listNamed(document);
    else if (option == L"Face")
        printMessage(L"No solid face is available to align the UCS with.");
}

void runUcsCommand() {
    Document* document = currentDocument();
    if (!document) return;
    printMessage(L"Current ucs name:  " + shownName(*document));
    double point[3] = {0, 0, 0};
    kcedInitGet(0, kUcsKeywords);
    const int status = kcedGetPoint(
        nullptr, L"\nSpecify origin of UCS or [Face/NAmed/OBject/Previous/View/World/X/Y/Z/ZAxis] <World>: ", point);
    if (status == RTNONE) {
        changeUcs(*document, UcsFrame(), L"");
    } else if (status == RTNORM) {
        UcsFrame frame = editor::currentUcs(document);
        frame.origin = editor::ucsPointToWorld({point[0], point[1], point[2]});
        changeUcs(*document, frame, L"");
    } else if (status == RTKWORD) {
        wchar_t keyword[64] = {0};
        kcedGetInput(keyword, 64);
        runOption(*document, keyword);
    }
}

}  // namespace

void registerUcsCommand() { addBuiltInCommand(L"UCS", runUcsCommand); }

}  // namespace korva::commands
