// Dictionary variables (DICTIONARYVAR): a schema number (280) and a text value
// (1) under "100 DictionaryVariables".
#include "db/ApiText.h"
#include "db/RecordFields.h"
#include "kcdbdatabase.h"

namespace db = korva::db;

namespace {
constexpr std::string_view kMarker = "DictionaryVariables";
}

const wchar_t* KcDbDictionaryVar::value() const { return keepString(db::toApiText(db::fieldText(record(), kMarker, 1))); }

Kcad::ErrorStatus KcDbDictionaryVar::setValue(const wchar_t* value) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!value) return Kcad::eInvalidInput;
    db::setField(record(), kMarker, db::Tag::string(1, db::toStoredText(value)));
    return Kcad::eOk;
}
