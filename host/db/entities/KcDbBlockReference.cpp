// INSERT (AcDbBlockReference): 66 attributes-follow flag, 2 block name, 10
// insertion point (OCS), 41-43 scale factors, 50 rotation (degrees), 70/71
// column and row counts and 44/45 their spacings (multiple inserts), 210
// extrusion. The attributes are the members of the reference's container,
// closed by a SEQEND.
#include <algorithm>

#include "db/Drawing.h"
#include "db/ObjectAccess.h"
#include "db/RecordFactory.h"
#include "db/RecordTags.h"
#include "db/entities/ContainerIterator.h"
#include "db/entities/EntityFields.h"

namespace db = korva::db;
using db::admit;
using korva::db::ObjectAccess;
using korva::db::ObjectRecord;
using korva::db::Tag;

namespace {

constexpr std::string_view kInsert = "AcDbBlockReference";

KcGeVector3d insertNormal(const ObjectRecord& record) { return db::normalField(record, kInsert); }

const ObjectRecord* blockRecordOf(const ObjectRecord& record) {
    const db::Drawing* drawing = db::lookupDrawing(record);
    return drawing ? drawing->tableRecord("BLOCK_RECORD", db::fieldText(record, kInsert, 2)) : nullptr;
}

// A block a reference may insert: a live block record of the same drawing, not a layout.
bool isInsertableBlock(const ObjectRecord* block, const ObjectRecord& reference) {
    if (!block || block->type != db::Type::BlockRecord || block->erased || !block->drawing) return false;
    if (reference.drawing && block->drawing != reference.drawing) return false;
    return !block->drawing->isLayoutBlock(block);
}

// Files without subclass markers get attributes without them.
void dropSubclassMarkers(ObjectRecord& record) {
    std::vector<Tag> tags = record.tags.decode();
    std::erase_if(tags, [](const Tag& tag) { return tag.code == 100; });
    record.tags = db::TagList::encode(tags);
}

// The SEQEND that closes the attribute list: the reference's layer, owned by it.
ObjectRecord& createSequenceEnd(db::Drawing& drawing, ObjectRecord& reference, bool markers) {
    ObjectRecord& seqend = drawing.createRecord(db::Type::SeqEnd, db::RecordKind::Entity);
    std::vector<Tag> tags;
    if (markers) {
        tags.push_back(Tag::handle(330, reference.handle));
        tags.push_back(Tag::string(100, db::kEntityMarker));
    }
    tags.push_back(Tag::string(8, db::fieldText(reference, db::kEntityMarker, 8, "0")));
    seqend.tags = db::TagList::encode(tags);
    seqend.owner = &reference;
    db::assignNewHandle(drawing, seqend);
    return seqend;
}

}  // namespace

KcDbBlockReference::KcDbBlockReference(const KcGePoint3d& position, KcDbObjectId blockId) {
    db::setPointField(record(), kInsert, 10, position);
    const ObjectRecord* block = ObjectAccess::record(blockId);
    if (isInsertableBlock(block, record())) db::setTextField(record(), kInsert, 2, db::recordName(*block));
}

KcDbObjectId KcDbBlockReference::blockTableRecord() const { return ObjectAccess::id(blockRecordOf(record())); }

Kcad::ErrorStatus KcDbBlockReference::setBlockTableRecord(KcDbObjectId blockId) {
    const ObjectRecord* block = ObjectAccess::record(blockId);
    if (auto status = admit(checkWritable(), isInsertableBlock(block, record())); status != Kcad::eOk) return status;
    db::setTextField(record(), kInsert, 2, db::recordName(*block));
    return Kcad::eOk;
}

KcGePoint3d KcDbBlockReference::position() const {
    return db::worldPointField(record(), kInsert, 10, insertNormal(record()));
}

Kcad::ErrorStatus KcDbBlockReference::setPosition(const KcGePoint3d& point) {
    if (auto status = admit(checkWritable(), db::isFinitePoint(point)); status != Kcad::eOk) return status;
    db::setWorldPointField(record(), kInsert, 10, point, insertNormal(record()));
    return Kcad::eOk;
}

KcGeScale3d KcDbBlockReference::scaleFactors() const {
    const ObjectRecord& self = record();
    return {db::fieldReal(self, kInsert, 41, 1.0), db::fieldReal(self, kInsert, 42, 1.0),
            db::fieldReal(self, kInsert, 43, 1.0)};
}

// Scale factors may be negative (mirrored) but not zero. A factor of 1 that was
// absent stays absent, as DXF writers leave it out.
Kcad::ErrorStatus KcDbBlockReference::setScaleFactors(const KcGeScale3d& scale) {
    const double factors[3] = {scale.sx, scale.sy, scale.sz};
    bool valid = true;
    for (double f : factors) valid = valid && db::isFiniteValue(f) && f != 0.0;
    if (auto status = admit(checkWritable(), valid); status != Kcad::eOk) return status;
    for (int i = 0; i < 3; ++i) {
        if (factors[i] == 1.0 && !db::hasField(record(), kInsert, 41 + i)) continue;
        db::setRealField(record(), kInsert, 41 + i, factors[i]);
    }
    return Kcad::eOk;
}

double KcDbBlockReference::rotation() const { return db::angleField(record(), kInsert, 50); }

Kcad::ErrorStatus KcDbBlockReference::setRotation(double angle) {
    if (auto status = admit(checkWritable(), db::isFiniteValue(angle)); status != Kcad::eOk) return status;
    db::setAngleField(record(), kInsert, 50, db::normalizedAngle(angle));
    return Kcad::eOk;
}

KcGeVector3d KcDbBlockReference::normal() const { return insertNormal(record()); }

// The insertion point keeps its place in the world.
Kcad::ErrorStatus KcDbBlockReference::setNormal(const KcGeVector3d& normal) {
    if (auto status = admit(checkWritable(), db::isUsableDirection(normal)); status != Kcad::eOk) return status;
    ObjectRecord& self = record();
    const KcGePoint3d world = db::worldPointField(self, kInsert, 10, insertNormal(self));
    const KcGeVector3d unit = normal.normal();
    db::setPointField(self, kInsert, 210, KcGePoint3d::kOrigin + unit);
    db::setWorldPointField(self, kInsert, 10, world, unit);
    return Kcad::eOk;
}

// World from block coordinates: the block's base point to the origin, scale,
// rotation about the OCS z axis, the OCS to the world, then the insertion point.
KcGeMatrix3d KcDbBlockReference::blockTransform() const {
    KcGePoint3d base = KcGePoint3d::kOrigin;
    const ObjectRecord* block = blockRecordOf(record());
    if (block && block->container && block->container->begin) base = db::fieldPoint(*block->container->begin, {}, 10);
    const KcGeVector3d normal = insertNormal(record());
    return KcGeMatrix3d::translation(position().asVector()) * KcGeMatrix3d::planeToWorld(normal) *
           KcGeMatrix3d::rotation(rotation(), KcGeVector3d::kZAxis) * KcGeMatrix3d::scaling(scaleFactors()) *
           KcGeMatrix3d::translation(-base.asVector());
}

KcDbObjectIterator* KcDbBlockReference::attributeIterator() const { return new db::ContainerIterator(&record()); }

// The attribute becomes resident, owned by the reference, last in its list; it
// stays open for write for the caller to close.
Kcad::ErrorStatus KcDbBlockReference::appendAttribute(KcDbAttribute* attribute) {
    if (Kcad::ErrorStatus status = checkWritable(); status != Kcad::eOk) return status;
    if (!attribute) return Kcad::eNullEntityPointer;
    if (ObjectAccess::isPending(*this)) return Kcad::eNotInDatabase;
    if (!ObjectAccess::isPending(*attribute)) return Kcad::eAlreadyInDb;
    ObjectRecord& reference = record();
    db::Drawing& drawing = *reference.drawing;
    const bool markers = db::hasSubclassMarkers(reference.tags);

    ObjectRecord& pending = ObjectAccess::record(*attribute);
    if (db::fieldText(pending, db::kEntityMarker, 8).empty()) {
        db::setTextField(pending, db::kEntityMarker, 8, db::fieldText(reference, db::kEntityMarker, 8, "0"));
    }
    if (!markers) dropSubclassMarkers(pending);

    ObjectRecord& resident = ObjectAccess::adopt(*attribute, drawing, db::RecordKind::Entity);
    resident.owner = &reference;
    if (markers) db::writeOwnerHandle(resident, reference.handle);
    db::Container& container = reference.ensureContainer();
    resident.order = static_cast<uint32_t>(container.members.size());
    container.members.push_back(&resident);
    if (!container.end) container.end = &createSequenceEnd(drawing, reference, markers);
    db::setIntegerField(reference, kInsert, 66, 1);
    return Kcad::eOk;
}

Kcad::ErrorStatus KcDbBlockReference::appendAttribute(KcDbObjectId& id, KcDbAttribute* attribute) {
    const Kcad::ErrorStatus status = appendAttribute(attribute);
    id = status == Kcad::eOk ? attribute->objectId() : KcDbObjectId();
    return status;
}

// --- multiple inserts ------------------------------------------------------------

Kcad::UInt16 KcDbMInsertBlock::columns() const {
    return static_cast<Kcad::UInt16>(std::max<int64_t>(1, db::fieldInteger(record(), kInsert, 70, 1)));
}
Kcad::UInt16 KcDbMInsertBlock::rows() const {
    return static_cast<Kcad::UInt16>(std::max<int64_t>(1, db::fieldInteger(record(), kInsert, 71, 1)));
}
double KcDbMInsertBlock::columnSpacing() const { return db::fieldReal(record(), kInsert, 44, 0.0); }
double KcDbMInsertBlock::rowSpacing() const { return db::fieldReal(record(), kInsert, 45, 0.0); }
