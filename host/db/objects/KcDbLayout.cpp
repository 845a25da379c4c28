// Layouts (LAYOUT): the name (1), tab order (71) and block record (330) of the
// AcDbLayout subclass. The AcDbPlotSettings part before it has a group 1 of its
// own (the page setup name), so every look-up names the subclass.
#include "db/ApiText.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "kcdbdatabase.h"

namespace db = korva::db;

namespace {
constexpr std::string_view kMarker = "AcDbLayout";
}

Kcad::ErrorStatus KcDbLayout::getLayoutName(const wchar_t*& name) const {
    name = keepString(db::toApiText(db::fieldText(record(), kMarker, 1)));
    return Kcad::eOk;
}

int KcDbLayout::getTabOrder() const { return static_cast<int>(db::fieldInteger(record(), kMarker, 71, 0)); }

KcDbObjectId KcDbLayout::getBlockTableRecordId() const {
    const korva::db::ObjectRecord& self = record();
    const db::Handle block = db::fieldHandle(self, kMarker, 330);
    if (block == 0 || !self.drawing) return KcDbObjectId();
    return db::ObjectAccess::id(self.drawing->findByHandle(block));
}
