#include "commands/view/NamedUcs.h"

#include "db/ApiText.h"
#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "kcdbdatabase.h"

namespace korva::commands {

namespace {

constexpr std::string_view kMarker = "AcDbUCSTableRecord";

Kcad::ErrorStatus writeFrame(KcDbUCSTableRecord& record, const editor::UcsFrame& frame) {
    Kcad::ErrorStatus status = record.setOrigin(frame.origin);
    if (status == Kcad::eOk) status = record.setXAxis(frame.xAxis.normal());
    if (status == Kcad::eOk) status = record.setYAxis(frame.yAxis.normal());
    return status;
}

// The groups a UCS record carries after its axes in current files (79 orthographic type, 146 elevation).
void completeRecord(db::ObjectRecord& record) {
    if (record.drawing && record.drawing->versionNumber() < 1015) return;
    if (!db::hasField(record, kMarker, 79)) db::setField(record, kMarker, db::Tag::integerValue(79, 0));
    if (!db::hasField(record, kMarker, 146)) db::setField(record, kMarker, db::Tag::real(146, 0.0));
}

}  // namespace

std::optional<NamedUcs> findNamedUcs(const db::Drawing& drawing, const std::wstring& name) {
    const db::ObjectRecord* record = drawing.tableRecord("UCS", db::toStoredText(name));
    if (!record) return std::nullopt;
    NamedUcs found;
    found.name = db::toApiText(db::recordName(*record));
    found.frame.origin = db::fieldPoint(*record, kMarker, 10);
    found.frame.xAxis = db::fieldVector(*record, kMarker, 11, KcGeVector3d::kXAxis).normal();
    found.frame.yAxis = db::fieldVector(*record, kMarker, 12, KcGeVector3d::kYAxis).normal();
    if (found.frame.xAxis.isZeroLength() || found.frame.yAxis.isZeroLength() ||
        found.frame.xAxis.isParallelTo(found.frame.yAxis)) {
        found.frame = editor::UcsFrame();
    }
    return found;
}

bool saveNamedUcs(db::Drawing& drawing, const std::wstring& name, const editor::UcsFrame& frame) {
    if (db::ObjectRecord* existing = drawing.tableRecord("UCS", db::toStoredText(name))) {
        KcDbUCSTableRecord* record = nullptr;
        if (kcdbOpenObject(record, db::ObjectAccess::id(existing), KcDb::kForWrite) != Kcad::eOk) return false;
        const Kcad::ErrorStatus status = writeFrame(*record, frame);
        record->close();
        return status == Kcad::eOk;
    }
    db::ensureTable(drawing, "UCS");  // minimal files may lack the table
    KcDbUCSTable* table = nullptr;
    if (!drawing.database || drawing.database->getUCSTable(table, KcDb::kForWrite) != Kcad::eOk) return false;
    auto* record = new KcDbUCSTableRecord();
    KcDbObjectId id;
    Kcad::ErrorStatus status = record->setName(name.c_str());
    if (status == Kcad::eOk) status = writeFrame(*record, frame);
    if (status == Kcad::eOk) status = table->add(id, record);
    table->close();
    if (status != Kcad::eOk) {
        delete record;
        return false;
    }
    record->close();
    if (db::ObjectRecord* added = db::ObjectAccess::record(id)) completeRecord(*added);
    return true;
}

bool eraseNamedUcs(db::ObjectRecord& record) {
    KcDbObject* object = nullptr;
    if (kcdbOpenObject(object, db::ObjectAccess::id(&record), KcDb::kForWrite) != Kcad::eOk) return false;
    const Kcad::ErrorStatus status = object->erase();
    object->close();
    return status == Kcad::eOk;
}

}  // namespace korva::commands
