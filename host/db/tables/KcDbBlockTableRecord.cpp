// Block records: the properties a block keeps on its BLOCK entity (base point,
// flags, xref path, description) and on the BLOCK_RECORD itself (layout 340,
// explodable 280), and iteration over the block's entities.
#include <cmath>

#include "db/ApiText.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "db/ResultBuffers.h"
#include "db/tables/BlockBegin.h"
#include "db/tables/SymbolNames.h"
#include "kcdbdatabase.h"

using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;
namespace db = korva::db;

namespace {

constexpr std::string_view kRecordMarker = "AcDbBlockTableRecord";

Kcad::ErrorStatus beginText(const ObjectRecord& block, int code, wchar_t*& text) {
    const ObjectRecord* begin = db::blockBeginOf(block);
    text = db::duplicateWide(db::toApiText(begin ? db::fieldText(*begin, db::kBlockBeginMarker, code) : ""));
    return text ? Kcad::eOk : Kcad::eOutOfMemory;
}

bool isLayoutRecord(const ObjectRecord& block) {
    if (block.drawing && block.drawing->modelSpace() == &block) return true;
    const std::string_view name = db::recordName(block);
    return db::isModelSpaceName(name) || db::isPaperSpaceName(name);
}

}  // namespace

KcGePoint3d KcDbBlockTableRecord::origin() const {
    const ObjectRecord* begin = db::blockBeginOf(record());
    return begin ? db::fieldPoint(*begin, db::kBlockBeginMarker, 10) : KcGePoint3d::kOrigin;
}

Kcad::ErrorStatus KcDbBlockTableRecord::setOrigin(const KcGePoint3d& point) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) return Kcad::eInvalidInput;
    db::setField(db::blockBeginForWrite(record()), db::kBlockBeginMarker, Tag::point(10, point));
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbBlockTableRecord::pathName(wchar_t*& path) const { return beginText(record(), 1, path); }

Kcad::ErrorStatus KcDbBlockTableRecord::setPathName(const wchar_t* path) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!path) return Kcad::eInvalidInput;
    db::setField(db::blockBeginForWrite(record()), db::kBlockBeginMarker, Tag::string(1, db::toStoredText(path)));
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbBlockTableRecord::comments(wchar_t*& text) const { return beginText(record(), 4, text); }

Kcad::ErrorStatus KcDbBlockTableRecord::setComments(const wchar_t* text) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!text) return Kcad::eInvalidInput;
    db::setField(db::blockBeginForWrite(record()), db::kBlockBeginMarker, Tag::string(4, db::toStoredText(text)));
    return Kcad::eOk;
}

bool KcDbBlockTableRecord::isAnonymous() const {
    const ObjectRecord& self = record();
    if ((db::blockFlags(self) & db::BlockFlag::Anonymous) != 0) return true;
    const std::string_view name = db::recordName(self);
    return !name.empty() && name.front() == '*' && !isLayoutRecord(self);
}

bool KcDbBlockTableRecord::isLayout() const { return isLayoutRecord(record()); }

bool KcDbBlockTableRecord::isFromExternalReference() const {
    return (db::blockFlags(record()) & db::BlockFlag::External) != 0;
}

bool KcDbBlockTableRecord::isFromOverlayReference() const {
    return (db::blockFlags(record()) & db::BlockFlag::Overlay) != 0;
}

bool KcDbBlockTableRecord::hasAttributeDefinitions() const {
    const ObjectRecord& self = record();
    if (!self.container) return false;
    for (const ObjectRecord* entity : self.container->members) {
        if (!entity->erased && entity->type == db::Type::AttDef) return true;
    }
    return false;
}

bool KcDbBlockTableRecord::explodable() const { return db::fieldInteger(record(), kRecordMarker, 280, 1) != 0; }

Kcad::ErrorStatus KcDbBlockTableRecord::setExplodable(bool explodable) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    db::setField(record(), kRecordMarker, Tag::integerValue(280, explodable ? 1 : 0));
    return Kcad::eOk;
}

KcDbObjectId KcDbBlockTableRecord::getLayoutId() const {
    const ObjectRecord& self = record();
    const db::Handle layout = db::fieldHandle(self, kRecordMarker, 340);
    if (layout == 0 || !self.drawing) return KcDbObjectId();
    return ObjectAccess::id(self.drawing->findByHandle(layout));
}

Kcad::ErrorStatus KcDbBlockTableRecord::newIterator(KcDbBlockTableRecordIterator*& iterator, bool atBeginning,
                                                    bool skipDeleted) const {
    iterator = nullptr;
    if (ObjectAccess::isPending(*this)) return Kcad::eNotInDatabase;
    iterator = new KcDbBlockTableRecordIterator(objectId(), atBeginning, skipDeleted);
    return Kcad::eOk;
}
