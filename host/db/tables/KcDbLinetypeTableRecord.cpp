// Linetype records: description (3), total pattern length (40), number of
// dashes (73) and the dash lengths (49, one per dash, negative for gaps).
#include <vector>

#include "db/ApiText.h"
#include "db/RecordFields.h"
#include "db/ResultBuffers.h"
#include "kcdbdatabase.h"

namespace db = korva::db;

namespace {
constexpr std::string_view kMarker = "AcDbLinetypeTableRecord";
}

wchar_t* KcDbLinetypeTableRecord::comments() const {
    return db::duplicateWide(db::toApiText(db::fieldText(record(), kMarker, 3)));
}

Kcad::ErrorStatus KcDbLinetypeTableRecord::setComments(const wchar_t* text) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!text) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, db::Tag::string(3, db::toStoredText(text)));
    return Kcad::eOk;
}

double KcDbLinetypeTableRecord::patternLength() const { return db::fieldReal(record(), kMarker, 40, 0.0); }

int KcDbLinetypeTableRecord::numDashes() const { return static_cast<int>(db::fieldInteger(record(), kMarker, 73, 0)); }

double KcDbLinetypeTableRecord::dashLengthAt(int index) const {
    const std::vector<db::TagRef> dashes = db::fieldsOf(record(), kMarker, 49);
    if (index < 0 || index >= static_cast<int>(dashes.size())) return 0.0;
    return dashes[static_cast<size_t>(index)].real();
}
