// Text placement prompts and placing the text entity.
#include "commands/draw/TextPlacement.h"

#include <cmath>
#include <string>

#include "commands/draw/DrawingPlacement.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "db/TextAlignment.h"
#include "db/TextMetrics.h"
#include "editor/SystemVariables.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

double lastRotation = 0.0;  // the default rotation of the next text (UCS angle)

struct Justification {
    const wchar_t* keyword;
    KcDb::TextHorzMode horizontal;
    KcDb::TextVertMode vertical;
    const wchar_t* prompt;
};

constexpr Justification kJustifications[] = {
    {L"Left", KcDb::kTextLeft, KcDb::kTextBase, L"\nSpecify start point of text: "},
    {L"Center", KcDb::kTextCenter, KcDb::kTextBase, L"\nSpecify center point of text: "},
    {L"Right", KcDb::kTextRight, KcDb::kTextBase, L"\nSpecify right endpoint of text baseline: "},
    {L"Align", KcDb::kTextAlign, KcDb::kTextBase, L"\nSpecify first endpoint of text baseline: "},
    {L"Middle", KcDb::kTextMid, KcDb::kTextBase, L"\nSpecify middle point of text: "},
    {L"Fit", KcDb::kTextFit, KcDb::kTextBase, L"\nSpecify first endpoint of text baseline: "},
    {L"TL", KcDb::kTextLeft, KcDb::kTextTop, L"\nSpecify top-left point of text: "},
    {L"TC", KcDb::kTextCenter, KcDb::kTextTop, L"\nSpecify top-center point of text: "},
    {L"TR", KcDb::kTextRight, KcDb::kTextTop, L"\nSpecify top-right point of text: "},
    {L"ML", KcDb::kTextLeft, KcDb::kTextVertMid, L"\nSpecify middle-left point of text: "},
    {L"MC", KcDb::kTextCenter, KcDb::kTextVertMid, L"\nSpecify middle point of text: "},
    {L"MR", KcDb::kTextRight, KcDb::kTextVertMid, L"\nSpecify middle-right point of text: "},
    {L"BL", KcDb::kTextLeft, KcDb::kTextBottom, L"\nSpecify bottom-left point of text: "},
    {L"BC", KcDb::kTextCenter, KcDb::kTextBottom, L"\nSpecify bottom-center point of text: "},
    {L"BR", KcDb::kTextRight, KcDb::kTextBottom, L"\nSpecify bottom-right point of text: "},
};

const Justification& justificationNamed(const std::wstring& keyword) {
    for (const Justification& j : kJustifications) {
        if (keyword == j.keyword) return j;
    }
    return kJustifications[0];
}

std::wstring styleName(KcDbObjectId style) {
    KcDbTextStyleTableRecord* record = nullptr;
    if (kcdbOpenObject(record, style, KcDb::kForRead) != Kcad::eOk) return L"Standard";
    const wchar_t* name = nullptr;
    std::wstring result = record->getName(name) == Kcad::eOk && name ? name : L"Standard";
    record->close();
    return result;
}

// The height a style fixes (group 40), 0 when the text chooses.
double fixedHeight(KcDbObjectId style) {
    KcDbTextStyleTableRecord* record = nullptr;
    if (kcdbOpenObject(record, style, KcDb::kForRead) != Kcad::eOk) return 0.0;
    const double height = record->textSize();
    record->close();
    return height;
}

void listStyles() {
    kcutPrintf(L"\nText styles:");
    for (resbuf* entry = kcdbTblNext(L"STYLE", 1); entry; entry = kcdbTblNext(L"STYLE", 0)) {
        for (const resbuf* rb = entry; rb; rb = rb->rbnext) {
            if (rb->restype == 2 && rb->resval.rstring && *rb->resval.rstring) kcutPrintf(L"\n  %s", rb->resval.rstring);
        }
        kcutRelRb(entry);
    }
}

// "Style": makes an existing style current (TEXTSTYLE). False on cancel.
bool chooseStyle(KcDbObjectId current) {
    while (true) {
        wchar_t name[256] = {};
        const std::wstring prompt = L"\nEnter style name or [?] <" + styleName(current) + L">: ";
        if (kcedGetString(0, prompt.c_str(), name, 256) != RTNORM) return false;
        const std::wstring typed = name;
        if (typed.empty()) return true;
        if (typed == L"?") {
            listStyles();
            continue;
        }
        if (resbuf* found = kcdbTblSearch(L"STYLE", typed.c_str())) {
            kcutRelRb(found);
            resbuf value{};
            value.restype = RTSTR;
            value.resval.rstring = const_cast<wchar_t*>(typed.c_str());
            kcedSetVar(L"TEXTSTYLE", &value);
            return true;
        }
        kcutPrintf(L"\nCannot find text style \"%s\".", typed.c_str());
    }
}

void setTextSize(double height) {
    resbuf value{};
    value.restype = RTREAL;
    value.resval.rreal = height;
    kcedSetVar(L"TEXTSIZE", &value);
}

// The justification point(s), after "Justify" or the start point. RTNORM or the ending status.
int promptJustifiedPoints(const Justification& j, const UcsPlane& ucs, TextPlacement& placement, kcad_point first) {
    placement.horizontal = j.horizontal;
    placement.vertical = j.vertical;
    if (kcedGetPoint(nullptr, j.prompt, first) != RTNORM) return RTCAN;
    placement.first = ucs.toWorld(first);
    if (!placement.isTwoPoint()) return RTNORM;
    kcad_point second;
    if (kcedGetPoint(first, L"\nSpecify second endpoint of text baseline: ", second) != RTNORM) return RTCAN;
    placement.second = ucs.toWorld(second);
    const KcGePoint3d a = ucs.toOcs(placement.first), b = ucs.toOcs(placement.second);
    placement.rotation = std::atan2(b.y - a.y, b.x - a.x);
    if (placement.rotation < 0.0) placement.rotation += 2.0 * 3.14159265358979323846;
    return RTNORM;
}

}  // namespace

int promptTextPlacement(TextPlacement& placement) {
    const UcsPlane ucs = UcsPlane::current();
    placement.normal = ucs.normal();
    KcDbDatabase* database = workingDatabase();
    if (!database) return RTERROR;
    kcad_point first;
    while (true) {
        placement.style = database->textstyle();
        const double fixed = fixedHeight(placement.style);
        kcutPrintf(L"\nCurrent text style:  \"%s\"  Text height:  %s  Annotative:  No  Justify:  Left",
                   styleName(placement.style).c_str(), formatDistance(fixed > 0.0 ? fixed : database->textsize()).c_str());
        kcedInitGet(0, L"Justify Style");
        const int status = kcedGetPoint(nullptr, L"\nSpecify start point of text or [Justify/Style]: ", first);
        if (status == RTNORM) {
            placement.first = ucs.toWorld(first);
            break;
        }
        if (status != RTKWORD) return status;
        if (answeredKeyword() == L"Style") {
            if (!chooseStyle(placement.style)) return RTCAN;
            continue;
        }
        kcedInitGet(RSG_NONULL, L"Left Center Right Align Middle Fit TL TC TR ML MC MR BL BC BR");
        wchar_t keyword[32] = {};
        if (kcedGetKword(L"\nEnter an option [Left/Center/Right/Align/Middle/Fit/TL/TC/TR/ML/MC/MR/BL/BC/BR]: ",
                         keyword, 32) != RTNORM) {
            return RTCAN;
        }
        if (const int pointStatus = promptJustifiedPoints(justificationNamed(keyword), ucs, placement, first);
            pointStatus != RTNORM) {
            return pointStatus;
        }
        break;
    }

    const double fixed = fixedHeight(placement.style);
    if (placement.horizontal == KcDb::kTextAlign) {
        placement.height = 0.0;
    } else if (fixed > 0.0) {
        placement.height = fixed;
    } else {
        double height = database->textsize();
        kcedInitGet(RSG_NOZERO | RSG_NONEG, nullptr);
        const std::wstring prompt = L"\nSpecify height <" + formatDistance(height) + L">: ";
        const int status = kcedGetDist(first, prompt.c_str(), &height);
        if (status != RTNORM && status != RTNONE) return RTCAN;
        placement.height = height;
        setTextSize(height);
    }
    if (!placement.isTwoPoint()) {
        double rotation = lastRotation;
        const std::wstring prompt = L"\nSpecify rotation angle of text <" + formatAngle(rotation) + L">: ";
        const int status = kcedGetOrient(first, prompt.c_str(), &rotation);
        if (status != RTNORM && status != RTNONE) return RTCAN;
        lastRotation = rotation;
        placement.rotation = ucs.ocsAngle(rotation);
    }
    return RTNORM;
}

void placeText(KcDbText& text, const TextPlacement& placement) {
    text.setNormal(placement.normal);
    if (!placement.style.isNull()) text.setTextStyle(placement.style);
    if (placement.height > 0.0) text.setHeight(placement.height);
    text.setRotation(placement.rotation);
    if (placement.isTwoPoint()) {
        // The string's length at its height decides Align's height or Fit's width factor.
        const db::ObjectRecord& record = db::ObjectAccess::record(text);
        const db::TextBox box = db::measureText(db::fieldText(record, "AcDbText", 1), db::textStyleOf(record));
        const double baseline = placement.first.distanceTo(placement.second);
        const double length = box.right - std::min(box.left, 0.0);
        if (length > 0.0 && baseline > 0.0) {
            if (placement.horizontal == KcDb::kTextAlign) text.setHeight(text.height() * baseline / length);
            else text.setWidthFactor(text.widthFactor() * baseline / length);
        }
        text.setPosition(placement.first);
        text.setHorizontalMode(placement.horizontal);
        text.setPosition(placement.first);
        text.setAlignmentPoint(placement.second);
        return;
    }
    text.setPosition(placement.first);
    if (placement.horizontal == KcDb::kTextLeft && placement.vertical == KcDb::kTextBase) return;
    text.setHorizontalMode(placement.horizontal);
    text.setVerticalMode(placement.vertical);
    text.setAlignmentPoint(placement.first);
}

}  // namespace korva::commands
