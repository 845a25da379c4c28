// kcedTextBox: the box of a TEXT, ATTRIB or ATTDEF data list relative to its
// insertion point, in the text's own unrotated frame, measured by the same
// db::measureText the database uses for extents and justification. What the
// list leaves out comes from its style (or TEXTSTYLE) and TEXTSIZE, so a list
// of just (1 . "text") is measured as a new text would be.
#include <algorithm>
#include <cwctype>
#include <string>

#include "db/ApiLists.h"
#include "db/ApiText.h"
#include "db/RecordFields.h"
#include "db/TextMetrics.h"
#include "editor/SystemVariables.h"
#include "kced.h"

namespace {

namespace db = korva::db;

constexpr double kDegree = 3.14159265358979323846 / 180.0;

// The first item of a code before the extended data.
const resbuf* itemOf(const resbuf* list, int code) {
    for (const resbuf* item = list; item; item = item->rbnext) {
        if (item->restype == -3) break;
        const int itemCode = item->restype == RTDXF0 ? 0 : item->restype;
        if (itemCode == code) return item;
    }
    return nullptr;
}

std::wstring textOf(const resbuf* item) { return item && item->resval.rstring ? item->resval.rstring : L""; }

std::wstring upper(std::wstring text) {
    for (wchar_t& c : text) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return text;
}

// ATTDEF shows its tag; TEXT and ATTRIB their value.
bool shownText(const resbuf* list, std::wstring& text) {
    const resbuf* type = itemOf(list, 0);
    const std::wstring typeName = type ? upper(textOf(type)) : L"";
    if (type && typeName != L"TEXT" && typeName != L"ATTRIB" && typeName != L"ATTDEF") return false;
    const resbuf* shown = typeName == L"ATTDEF" && itemOf(list, 2) ? itemOf(list, 2) : itemOf(list, 1);
    if (!shown) return false;
    text = textOf(shown);
    return true;
}

struct StyleDefaults {
    std::string fontFile, bigFontFile;
    double height = 0.0, widthFactor = 1.0, obliqueRadians = 0.0;
};

StyleDefaults styleDefaults(const resbuf* list) {
    StyleDefaults defaults;
    const resbuf* styleItem = itemOf(list, 7);
    std::wstring name = styleItem ? textOf(styleItem) : korva::editor::SystemVariables::instance().text(L"TEXTSTYLE");
    if (name.empty()) name = L"Standard";
    const db::Drawing* drawing = db::workingDrawing();
    const db::ObjectRecord* style = drawing ? drawing->tableRecord("STYLE", db::toStoredText(name)) : nullptr;
    if (!style) return defaults;
    defaults.fontFile = db::fieldText(*style, {}, 3);
    defaults.bigFontFile = db::fieldText(*style, {}, 4);
    defaults.height = db::fieldReal(*style, {}, 40, 0.0);
    defaults.widthFactor = db::fieldReal(*style, {}, 41, 1.0);
    defaults.obliqueRadians = db::fieldReal(*style, {}, 50, 0.0) * kDegree;
    return defaults;
}

void store(double x, double y, kcad_point out) {
    out[0] = x;
    out[1] = y;
    out[2] = 0.0;
}

}  // namespace

int kcedTextBox(const resbuf* textEntityList, kcad_point lowerLeft, kcad_point upperRight) {
    if (!textEntityList || !lowerLeft || !upperRight) return RTERROR;
    std::wstring text;
    if (!shownText(textEntityList, text)) return RTERROR;
    const StyleDefaults defaults = styleDefaults(textEntityList);
    const resbuf* height = itemOf(textEntityList, 40);
    const resbuf* width = itemOf(textEntityList, 41);
    const resbuf* oblique = itemOf(textEntityList, 51);  // radians in lists
    const resbuf* generation = itemOf(textEntityList, 71);

    db::TextStyleMetrics metrics;
    const double textSize = korva::editor::SystemVariables::instance().real(L"TEXTSIZE", 2.5);
    metrics.height = height ? height->resval.rreal : (defaults.height > 0 ? defaults.height : textSize);
    metrics.widthFactor = width ? width->resval.rreal : defaults.widthFactor;
    metrics.oblique = oblique ? oblique->resval.rreal : defaults.obliqueRadians;
    metrics.fontFile = defaults.fontFile;
    metrics.bigFontFile = defaults.bigFontFile;
    const db::TextBox box = db::orientedTextBox(db::measureText(db::toStoredText(text), metrics),
                                                 generation ? generation->resval.rint : 0);
    store(box.left, box.bottom, lowerLeft);
    store(box.right, box.top, upperRight);
    return RTNORM;
}
