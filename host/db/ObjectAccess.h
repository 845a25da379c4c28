// The host's side of the database classes: what the SDK classes keep private
// (the record behind an object id or an open object) and the open protocol.
#pragma once

#include "db/Drawing.h"
#include "kcdb.h"

namespace korva::db {

class ObjectAccess {
public:
    static ObjectRecord* record(KcDbObjectId id) { return id.m_record; }
    static KcDbObjectId id(const ObjectRecord* record) { return KcDbObjectId(const_cast<ObjectRecord*>(record)); }

    // The record an object views; a new object gets its pending record here.
    static ObjectRecord& record(const KcDbObject& object);
    static bool isPending(const KcDbObject& object) { return object.m_pending != nullptr || object.m_record == nullptr; }
    static KcDb::OpenMode mode(const KcDbObject& object) { return object.m_mode; }

    // Opens a resident record: checks the open rules, creates the view of its class.
    static Kcad::ErrorStatus open(KcDbObject*& object, ObjectRecord& record, KcDb::OpenMode mode, bool openErased);
    // Ends the open of a view (close()).
    static void release(KcDbObject& object);
    // Makes a pending object resident in a drawing: the record moves into the store.
    // The object stays open for write on it.
    static ObjectRecord& adopt(KcDbObject& object, Drawing& drawing, RecordKind kind);
    // Creates the view object (not yet attached) for a record's type.
    static KcDbObject* newView(const ObjectRecord& record);
    // The DXF type a class creates when it is constructed new.
    static TypeId typeOfClass(const KcRxClass* cls);
};

// Whether an entity lies on a locked layer (the layer record's state at this moment).
bool isOnLockedLayer(const ObjectRecord& entity);

}  // namespace korva::db
