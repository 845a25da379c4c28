// The iterator over the members of a complex entity's container.
#include "db/entities/ContainerIterator.h"

#include "db/ObjectAccess.h"

namespace korva::db {

ContainerIterator::ContainerIterator(const ObjectRecord* owner) : owner_(owner) { start(); }

ContainerIterator::~ContainerIterator() { closeOpened(); }

size_t ContainerIterator::memberCount() const {
    return owner_ && owner_->container ? owner_->container->members.size() : 0;
}

const ObjectRecord* ContainerIterator::member(size_t index) const {
    return index < memberCount() ? owner_->container->members[index] : nullptr;
}

void ContainerIterator::settle(bool backwards, bool skipErased) {
    const auto count = static_cast<std::ptrdiff_t>(memberCount());
    while (position_ >= 0 && position_ < count && skipErased && member(static_cast<size_t>(position_))->erased) {
        position_ += backwards ? -1 : 1;
    }
}

void ContainerIterator::start(bool atEnd) {
    closeOpened();
    position_ = atEnd ? static_cast<std::ptrdiff_t>(memberCount()) - 1 : 0;
    settle(atEnd, true);
}

bool ContainerIterator::done() const {
    return position_ < 0 || position_ >= static_cast<std::ptrdiff_t>(memberCount());
}

void ContainerIterator::step(bool backwards, bool skipErased) {
    closeOpened();
    if (done()) return;
    position_ += backwards ? -1 : 1;
    settle(backwards, skipErased);
}

KcDbObjectId ContainerIterator::objectId() const {
    return done() ? KcDbObjectId() : ObjectAccess::id(member(static_cast<size_t>(position_)));
}

KcDbEntity* ContainerIterator::entity() {
    if (done()) return nullptr;
    if (!opened_) {
        const ObjectRecord* record = member(static_cast<size_t>(position_));
        KcDbEntity* opened = nullptr;
        if (kcdbOpenObject(opened, ObjectAccess::id(record), KcDb::kForRead, true) == Kcad::eOk) opened_ = opened;
    }
    return opened_;
}

void ContainerIterator::closeOpened() {
    if (opened_) opened_->close();
    opened_ = nullptr;
}

}  // namespace korva::db
