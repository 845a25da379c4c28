// The iterator over the sub-entities of a complex entity: the attributes of a
// block reference or the vertices of a polyline (the members of its container,
// in order). Each entity it hands out is opened for read and closed by the next
// step or when the iterator is deleted.
#pragma once

#include "db/ObjectRecord.h"
#include "kcdbents.h"

namespace korva::db {

class ContainerIterator : public KcDbObjectIterator {
public:
    // owner may be null or without a container: the iterator is then done at once.
    explicit ContainerIterator(const ObjectRecord* owner);
    ~ContainerIterator() override;
    ContainerIterator(const ContainerIterator&) = delete;
    ContainerIterator& operator=(const ContainerIterator&) = delete;

    void start(bool atEnd = false) override;
    bool done() const override;
    void step(bool backwards = false, bool skipErased = true) override;
    KcDbObjectId objectId() const override;
    KcDbEntity* entity() override;

private:
    size_t memberCount() const;
    const ObjectRecord* member(size_t index) const;
    // Moves from position_ in a direction until a member that may be shown.
    void settle(bool backwards, bool skipErased);
    void closeOpened();

    const ObjectRecord* owner_;
    std::ptrdiff_t position_ = 0;  // -1 or memberCount() when done
    KcDbEntity* opened_ = nullptr;
};

}  // namespace korva::db
