// ObjectRecord: one object of a drawing (entity, table record, block begin or
// end, dictionary, ...) as the ordered tags it was read with, plus the few
// structural facts the database keeps at hand: handle, owner, kind and open state.
//
// The tags are the truth. Everything after the DXF 0 group is kept, in order:
// the handle (5), the 102 groups, the owner (330), subclass markers, the object's
// own groups and its extended data. The cached handle and owner mirror their tags.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "db/ObjectType.h"
#include "db/TagList.h"

namespace korva::db {

class Drawing;

enum class RecordKind : uint8_t {
    Entity,       // graphical entity of a block, model or paper space
    BlockBegin,   // the BLOCK entity of a block definition
    BlockEnd,     // the ENDBLK entity
    TableHead,    // the TABLE entry that heads a symbol table
    TableRecord,  // an entry of a symbol table
    Object,       // a non-graphical object of the OBJECTS section
};

class ObjectRecord;

// Members of a container: the entities of a block record, or the attributes or
// vertices of a complex entity. Only records that contain something carry one.
struct Container {
    std::vector<ObjectRecord*> members;
    ObjectRecord* begin = nullptr;  // BLOCK of a block record
    ObjectRecord* end = nullptr;    // ENDBLK of a block record, SEQEND of a complex entity
    // Sub-records of a new entity not yet in a drawing (attributes or vertices of an
    // explode part); members and end point at them until the entity is added.
    std::vector<std::unique_ptr<ObjectRecord>> pending;
};

class ObjectRecord {
public:
    Drawing* drawing = nullptr;
    Handle handle = 0;
    ObjectRecord* owner = nullptr;
    TagList tags;
    std::unique_ptr<Container> container;
    uint32_t index = 0;          // position in the drawing's record store (entity names use it)
    uint32_t order = 0;          // creation order among the entities of layouts, or in the owner's list
    TypeId type = Type::Unknown;
    RecordKind kind = RecordKind::Object;
    bool erased = false;
    bool openForWrite = false;
    uint16_t readers = 0;

    bool isEntity() const { return kind == RecordKind::Entity; }
    // Erases or restores the record; an entity's sub-entities (attributes,
    // vertices and their SEQEND) go and come back with it.
    void setErased(bool value) {
        erased = value;
        if (!isEntity() || !container) return;
        for (ObjectRecord* member : container->members) member->erased = value;
        if (container->end) container->end->erased = value;
    }
    bool isOpen() const { return openForWrite || readers > 0; }
    Container& ensureContainer() {
        if (!container) container = std::make_unique<Container>();
        return *container;
    }
};

}  // namespace korva::db
