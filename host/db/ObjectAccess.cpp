// The open protocol and the mapping between DXF types and database classes.
#include "db/ObjectAccess.h"

#include <unordered_map>

#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"
#include "db/tables/BlockBegin.h"
#include "kcdbdatabase.h"

namespace korva::db {

namespace {

using ViewMaker = KcDbObject* (*)();

template <class T>
KcDbObject* make() {
    return new T();
}

struct ClassBinding {
    TypeId type;
    KcRxClass* (*desc)();
    ViewMaker maker;
};

// The class a record of each DXF type opens as (refined by flags in newView).
const ClassBinding kBindings[] = {
    {Type::Line, &KcDbLine::desc, &make<KcDbLine>},
    {Type::Point, &KcDbPoint::desc, &make<KcDbPoint>},
    {Type::Circle, &KcDbCircle::desc, &make<KcDbCircle>},
    {Type::Arc, &KcDbArc::desc, &make<KcDbArc>},
    {Type::Text, &KcDbText::desc, &make<KcDbText>},
    {Type::AttDef, &KcDbAttributeDefinition::desc, &make<KcDbAttributeDefinition>},
    {Type::Attrib, &KcDbAttribute::desc, &make<KcDbAttribute>},
    {Type::MText, &KcDbMText::desc, &make<KcDbMText>},
    {Type::Insert, &KcDbBlockReference::desc, &make<KcDbBlockReference>},
    {Type::Solid, &KcDbSolid::desc, &make<KcDbSolid>},
    {Type::Trace, &KcDbTrace::desc, &make<KcDbTrace>},
    {Type::Face3d, &KcDbFace::desc, &make<KcDbFace>},
    {Type::LwPolyline, &KcDbPolyline::desc, &make<KcDbPolyline>},
    {Type::Polyline, &KcDb2dPolyline::desc, &make<KcDb2dPolyline>},
    {Type::Vertex, &KcDb2dVertex::desc, &make<KcDb2dVertex>},
    {Type::SeqEnd, &KcDbSequenceEnd::desc, &make<KcDbSequenceEnd>},
    {Type::Ellipse, &KcDbEllipse::desc, &make<KcDbEllipse>},
    {Type::Spline, &KcDbSpline::desc, &make<KcDbSpline>},
    {Type::Ray, &KcDbRay::desc, &make<KcDbRay>},
    {Type::Xline, &KcDbXline::desc, &make<KcDbXline>},
    {Type::Shape, &KcDbShape::desc, &make<KcDbShape>},
    {Type::Dimension, &KcDbRotatedDimension::desc, &make<KcDbRotatedDimension>},
    {Type::ArcDimension, &KcDbArcDimension::desc, &make<KcDbArcDimension>},
    {Type::LargeRadialDimension, &KcDbRadialDimensionLarge::desc, &make<KcDbRadialDimensionLarge>},
    {Type::Leader, &KcDbLeader::desc, &make<KcDbLeader>},
    {Type::Region, &KcDbRegion::desc, &make<KcDbRegion>},
    {Type::Body, &KcDbBody::desc, &make<KcDbBody>},
    {Type::Solid3d, &KcDb3dSolid::desc, &make<KcDb3dSolid>},
    {Type::MLine, &KcDbMline::desc, &make<KcDbMline>},
    {Type::Hatch, &KcDbHatch::desc, &make<KcDbHatch>},
    {Type::Image, &KcDbRasterImage::desc, &make<KcDbRasterImage>},
    {Type::Wipeout, &KcDbWipeout::desc, &make<KcDbWipeout>},
    {Type::Ole2Frame, &KcDbOle2Frame::desc, &make<KcDbOle2Frame>},
    {Type::Tolerance, &KcDbFcf::desc, &make<KcDbFcf>},
    {Type::Viewport, &KcDbViewport::desc, &make<KcDbViewport>},
    {Type::AcadTable, &KcDbTable::desc, &make<KcDbTable>},
    {Type::Layer, &KcDbLayerTableRecord::desc, &make<KcDbLayerTableRecord>},
    {Type::Ltype, &KcDbLinetypeTableRecord::desc, &make<KcDbLinetypeTableRecord>},
    {Type::Style, &KcDbTextStyleTableRecord::desc, &make<KcDbTextStyleTableRecord>},
    {Type::DimStyle, &KcDbDimStyleTableRecord::desc, &make<KcDbDimStyleTableRecord>},
    {Type::BlockRecord, &KcDbBlockTableRecord::desc, &make<KcDbBlockTableRecord>},
    {Type::AppId, &KcDbRegAppTableRecord::desc, &make<KcDbRegAppTableRecord>},
    {Type::Ucs, &KcDbUCSTableRecord::desc, &make<KcDbUCSTableRecord>},
    {Type::Vport, &KcDbViewportTableRecord::desc, &make<KcDbViewportTableRecord>},
    {Type::View, &KcDbViewTableRecord::desc, &make<KcDbViewTableRecord>},
    {Type::Dictionary, &KcDbDictionary::desc, &make<KcDbDictionary>},
    {Type::DictionaryWithDefault, &KcDbDictionary::desc, &make<KcDbDictionary>},
    {Type::Xrecord, &KcDbXrecord::desc, &make<KcDbXrecord>},
    {Type::Group, &KcDbGroup::desc, &make<KcDbGroup>},
    {Type::Scale, &KcDbScale::desc, &make<KcDbScale>},
    {Type::Layout, &KcDbLayout::desc, &make<KcDbLayout>},
    {Type::DictionaryVar, &KcDbDictionaryVar::desc, &make<KcDbDictionaryVar>},
    {Type::SortEntsTable, &KcDbSortentsTable::desc, &make<KcDbSortentsTable>},
};

const ClassBinding* bindingOf(TypeId type) {
    for (const ClassBinding& b : kBindings) {
        if (b.type == type) return &b;
    }
    return nullptr;
}

KcDbObject* tableView(std::string_view tableName) {
    const std::string name = asciiUpper(tableName);
    if (name == "LAYER") return new KcDbLayerTable();
    if (name == "LTYPE") return new KcDbLinetypeTable();
    if (name == "STYLE") return new KcDbTextStyleTable();
    if (name == "DIMSTYLE") return new KcDbDimStyleTable();
    if (name == "BLOCK_RECORD") return new KcDbBlockTable();
    if (name == "APPID") return new KcDbRegAppTable();
    if (name == "UCS") return new KcDbUCSTable();
    if (name == "VPORT") return new KcDbViewportTable();
    if (name == "VIEW") return new KcDbViewTable();
    return new KcDbSymbolTable();
}

}  // namespace

KcDbObject* ObjectAccess::newView(const ObjectRecord& record) {
    if (record.kind == RecordKind::TableHead) return tableView(recordName(record));
    switch (record.type) {
        case Type::Dimension: {
            switch (fieldInteger(record, "AcDbDimension", 70) & 7) {
                case 0: return new KcDbRotatedDimension();
                case 1: return new KcDbAlignedDimension();
                case 2: return new KcDb2LineAngularDimension();
                case 3: return new KcDbDiametricDimension();
                case 4: return new KcDbRadialDimension();
                case 5: return new KcDb3PointAngularDimension();
                default: return new KcDbOrdinateDimension();
            }
        }
        case Type::Insert: {
            const int64_t columns = fieldInteger(record, {}, 70, 0);
            const int64_t rows = fieldInteger(record, {}, 71, 0);
            if (columns > 1 || rows > 1) return new KcDbMInsertBlock();
            return new KcDbBlockReference();
        }
        case Type::Polyline: {
            const int64_t flags = fieldInteger(record, {}, 70, 0);
            if (flags & 64) return new KcDbPolyFaceMesh();
            if (flags & 16) return new KcDbPolygonMesh();
            if (flags & 8) return new KcDb3dPolyline();
            return new KcDb2dPolyline();
        }
        case Type::Vertex: {
            const int64_t flags = fieldInteger(record, {}, 70, 0);
            if ((flags & 128) && !(flags & 64)) return new KcDbFaceRecord();
            if (flags & 128) return new KcDbPolyFaceMeshVertex();
            if (flags & 64) return new KcDbPolygonMeshVertex();
            if (flags & 32) return new KcDb3dPolylineVertex();
            return new KcDb2dVertex();
        }
        default: break;
    }
    if (const ClassBinding* binding = bindingOf(record.type)) return binding->maker();
    if (record.kind == RecordKind::Object) return new KcDbObject();
    return new KcDbEntity();
}

TypeId ObjectAccess::typeOfClass(const KcRxClass* cls) {
    static const std::unordered_map<const KcRxClass*, TypeId> types = [] {
        std::unordered_map<const KcRxClass*, TypeId> map;
        for (const ClassBinding& b : kBindings) map.emplace(b.desc(), b.type);
        map[KcDbMInsertBlock::desc()] = Type::Insert;
        for (auto* dim : {KcDbRotatedDimension::desc(), KcDbAlignedDimension::desc(),
                          KcDb2LineAngularDimension::desc(), KcDb3PointAngularDimension::desc(),
                          KcDbDiametricDimension::desc(), KcDbRadialDimension::desc(),
                          KcDbOrdinateDimension::desc()}) {
            map[dim] = Type::Dimension;
        }
        for (auto* poly : {KcDb3dPolyline::desc(), KcDbPolygonMesh::desc(), KcDbPolyFaceMesh::desc()}) {
            map[poly] = Type::Polyline;
        }
        for (auto* vertex : {KcDb3dPolylineVertex::desc(), KcDbPolygonMeshVertex::desc(),
                             KcDbPolyFaceMeshVertex::desc(), KcDbFaceRecord::desc()}) {
            map[vertex] = Type::Vertex;
        }
        return map;
    }();
    auto it = types.find(cls);
    return it == types.end() ? TypeId{Type::Unknown} : it->second;
}

ObjectRecord& ObjectAccess::record(const KcDbObject& object) {
    auto& self = const_cast<KcDbObject&>(object);
    if (!self.m_record) {
        self.m_pending = std::make_unique<ObjectRecord>();
        const TypeId type = typeOfClass(object.isA());
        self.m_pending->type = type;
        if (isSymbolTableRecordType(type)) self.m_pending->kind = RecordKind::TableRecord;
        else if (isEntityType(type) || type == Type::SeqEnd) self.m_pending->kind = RecordKind::Entity;
        else self.m_pending->kind = RecordKind::Object;
        self.m_pending->tags = newObjectTags(type);
        self.m_record = self.m_pending.get();
        self.m_mode = KcDb::kForWrite;
    }
    return *self.m_record;
}

bool isOnLockedLayer(const ObjectRecord& entity) {
    if (!entity.isEntity() || !entity.drawing) return false;
    const std::string_view layer = fieldText(entity, kEntityMarker, 8, "0");
    const ObjectRecord* record = entity.drawing->tableRecord("LAYER", layer);
    return record && (fieldInteger(*record, {}, 70, 0) & 4) != 0;
}

// Whether a record lies inside an external reference: an entity (or a sub-entity)
// of a block that is an xref (BLOCK flag 4) or xref-dependent (16). Such contents
// come from the xref's file and are read-only.
static bool isInsideXref(const ObjectRecord& record) {
    if (!record.isEntity()) return false;
    const ObjectRecord* owner = record.owner;
    while (owner && owner->isEntity()) owner = owner->owner;
    return owner && owner->type == Type::BlockRecord && (blockFlags(*owner) & (BlockFlag::External | BlockFlag::Dependent));
}

Kcad::ErrorStatus ObjectAccess::open(KcDbObject*& object, ObjectRecord& record, KcDb::OpenMode mode, bool openErased) {
    object = nullptr;
    if (record.erased && !openErased) return Kcad::eWasErased;
    if (record.openForWrite) return Kcad::eWasOpenForWrite;
    if (mode == KcDb::kForWrite) {
        if (record.readers > 0) return Kcad::eWasOpenForRead;
        if (isOnLockedLayer(record)) return Kcad::eOnLockedLayer;
        if (isInsideXref(record)) return Kcad::eNotApplicable;
    }
    KcDbObject* view = newView(record);
    view->m_record = &record;
    view->m_mode = mode;
    view->m_open = true;
    if (mode == KcDb::kForWrite) record.openForWrite = true;
    else ++record.readers;
    object = view;
    return Kcad::eOk;
}

void ObjectAccess::release(KcDbObject& object) {
    if (!object.m_open || !object.m_record) return;
    ObjectRecord& record = *object.m_record;
    if (object.m_mode == KcDb::kForWrite) record.openForWrite = false;
    else if (record.readers > 0) --record.readers;
    object.m_open = false;
}

ObjectRecord& ObjectAccess::adopt(KcDbObject& object, Drawing& drawing, RecordKind kind) {
    ObjectRecord& pending = record(object);
    ObjectRecord& resident = drawing.createRecord(pending.type, kind);
    resident.tags = std::move(pending.tags);
    resident.container = std::move(pending.container);
    object.m_pending.reset();
    object.m_record = &resident;
    object.m_mode = KcDb::kForWrite;
    object.m_open = true;
    resident.openForWrite = true;
    assignNewHandle(drawing, resident);
    return resident;
}

}  // namespace korva::db
