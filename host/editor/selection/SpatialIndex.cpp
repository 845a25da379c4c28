// Per-layout indexes of entity extents, kept in step with the drawing by entity
// counts (additions), erased flags (at query time) and tag hashes (changes).
#include "editor/selection/SpatialIndex.h"

#include <algorithm>
#include <cstring>

#include "db/Drawing.h"
#include "db/EntityGeometry.h"
#include "editor/selection/PackedRTree.h"

namespace korva::editor {

namespace {

// Entries not in the tree (added or changed since the build) are tested one by
// one; past this share of the layout the tree is built again.
constexpr size_t kMinLooseBeforeRebuild = 256;
constexpr size_t kLooseShare = 8;

uint64_t mix(uint64_t h, uint64_t word) {
    h ^= word;
    h *= 0x9E3779B97F4A7C15ULL;
    return h ^ (h >> 29);
}

uint64_t hashTags(uint64_t h, const db::TagList& tags) {
    const uint8_t* bytes = tags.begin().position();
    const size_t size = tags.byteSize();
    size_t i = 0;
    for (; i + 8 <= size; i += 8) {
        uint64_t word;
        std::memcpy(&word, bytes + i, 8);
        h = mix(h, word);
    }
    uint64_t tail = 0;
    if (i < size) std::memcpy(&tail, bytes + i, size - i);
    return mix(h, tail ^ (static_cast<uint64_t>(size) << 48));
}

Rect2 flatBox(const geom::Box3d& box) { return {box.min().x, box.min().y, box.max().x, box.max().y}; }

// What entity extents also depend on: block definitions (for references and
// dimensions) and text styles (for texts).
uint64_t environmentStamp(const db::Drawing& drawing) {
    uint64_t h = 0x5151;
    for (const db::ObjectRecord* block : drawing.blockOrder) {
        if (!block || drawing.isLayoutBlock(block)) continue;
        h = mix(h, block->erased ? 1 : 2);
        if (block->container && block->container->begin) h = hashTags(h, block->container->begin->tags);
        if (!block->container) continue;
        for (const db::ObjectRecord* member : block->container->members) {
            h = mix(h, member->erased ? 3 : 4);
            h = mix(h, entityStamp(*member));
        }
    }
    if (const db::SymbolTable* styles = drawing.table("STYLE")) {
        for (const db::ObjectRecord* style : styles->records) h = hashTags(mix(h, style->erased), style->tags);
    }
    return h;
}

}  // namespace

uint64_t entityStamp(const db::ObjectRecord& entity) {
    uint64_t h = hashTags(0x243F6A8885A308D3ULL, entity.tags);
    if (entity.container) {
        for (const db::ObjectRecord* member : entity.container->members) {
            h = mix(h, member->erased ? 5 : 6);
            h = hashTags(h, member->tags);
        }
    }
    return h;
}

struct SpatialIndex::BlockIndex {
    struct Entry {
        db::ObjectRecord* entity = nullptr;
        geom::Box3d box;
        uint64_t stamp = 0;
        // Where the tags lay when measured: an edit re-encodes them elsewhere, so a
        // moved list is worth hashing again (a cheap first test within a command).
        const uint8_t* tagBytes = nullptr;
        uint32_t tagSize = 0;
        CommonProperties common;  // views into the tags at tagBytes
        bool bounded = false;
        bool inTree = false;

        bool tagsMoved() const {
            return entity->tags.begin().position() != tagBytes || entity->tags.byteSize() != tagSize;
        }
    };

    uint32_t serial = 0;
    db::ObjectRecord* block = nullptr;
    std::vector<Entry> entries;  // in the block's entity order
    size_t memberCount = 0;
    const db::ObjectRecord* lastMember = nullptr;
    PackedRTree tree;
    std::vector<uint32_t> loose;  // entries tested without the tree
    uint64_t checkedEpoch = 0;
    uint64_t environment = 0;

    void noteTags(Entry& entry) {
        entry.tagBytes = entry.entity->tags.begin().position();
        entry.tagSize = entry.entity->tags.byteSize();
        entry.common = commonProperties(*entry.entity);
    }

    void measure(Entry& entry) {
        entry.stamp = entityStamp(*entry.entity);
        noteTags(entry);
        entry.box = geom::Box3d();
        entry.bounded = db::entityExtents(*entry.entity, entry.box) && !entry.box.isEmpty();
    }
};

SpatialIndex& SpatialIndex::instance() {
    static SpatialIndex index;
    return index;
}

SpatialIndex::SpatialIndex() = default;
SpatialIndex::~SpatialIndex() = default;

void SpatialIndex::clear() { blocks_.clear(); }

void SpatialIndex::dropDeadDrawings() {
    // A drawing that is gone took its block records along; its indexes go too.
    for (auto it = blocks_.begin(); it != blocks_.end();) {
        if (!db::Drawing::bySerial(it->second->serial)) it = blocks_.erase(it);
        else ++it;
    }
}

SpatialIndex::BlockIndex& SpatialIndex::indexFor(db::ObjectRecord& block) {
    dropDeadDrawings();
    auto& slot = blocks_[&block];
    if (!slot || slot->serial != block.drawing->serial()) {
        slot = std::make_unique<BlockIndex>();
        slot->serial = block.drawing->serial();
        slot->block = &block;
        rebuild(*slot);
    } else {
        refresh(*slot);
    }
    return *slot;
}

void SpatialIndex::rebuild(BlockIndex& index) {
    ++stats_.builds;
    index.entries.clear();
    index.loose.clear();
    const std::vector<db::ObjectRecord*> empty;
    const auto& members = index.block->container ? index.block->container->members : empty;
    index.entries.resize(members.size());
    std::vector<Rect2> boxes;
    std::vector<uint32_t> ids;
    boxes.reserve(members.size());
    ids.reserve(members.size());
    for (size_t i = 0; i < members.size(); ++i) {
        BlockIndex::Entry& entry = index.entries[i];
        entry.entity = members[i];
        index.measure(entry);
        entry.inTree = entry.bounded;
        if (entry.bounded) {
            boxes.push_back(flatBox(entry.box));
            ids.push_back(static_cast<uint32_t>(i));
        } else {
            index.loose.push_back(static_cast<uint32_t>(i));
        }
    }
    index.tree.build(boxes, ids);
    index.memberCount = members.size();
    index.lastMember = members.empty() ? nullptr : members.back();
    index.checkedEpoch = epoch_;
    index.environment = environmentStamp(*index.block->drawing);
}

void SpatialIndex::refresh(BlockIndex& index) {
    const std::vector<db::ObjectRecord*> empty;
    const auto& members = index.block->container ? index.block->container->members : empty;
    // Entities are only ever appended to a layout's list; anything else (a
    // removal, a reordering) calls for a new index.
    if (members.size() < index.memberCount ||
        (index.memberCount > 0 && members[index.memberCount - 1] != index.lastMember)) {
        rebuild(index);
        return;
    }
    if (index.checkedEpoch != epoch_) {
        index.checkedEpoch = epoch_;
        const uint64_t environment = environmentStamp(*index.block->drawing);
        if (environment != index.environment) {
            rebuild(index);
            return;
        }
        for (size_t i = 0; i < index.entries.size(); ++i) {
            BlockIndex::Entry& entry = index.entries[i];
            if (entityStamp(*entry.entity) == entry.stamp) continue;
            ++stats_.remeasured;
            index.measure(entry);
            if (entry.inTree) {
                entry.inTree = false;
                index.loose.push_back(static_cast<uint32_t>(i));
            }
        }
    }
    for (size_t i = index.memberCount; i < members.size(); ++i) {
        BlockIndex::Entry entry;
        entry.entity = members[i];
        index.measure(entry);
        index.entries.push_back(entry);
        index.loose.push_back(static_cast<uint32_t>(index.entries.size() - 1));
    }
    index.memberCount = members.size();
    index.lastMember = members.empty() ? nullptr : members.back();
    if (index.loose.size() > std::max(kMinLooseBeforeRebuild, index.entries.size() / kLooseShare)) rebuild(index);
}

namespace {

// The ids in ascending order: sorted when few, through a bitmap over the id range when many.
void ascendingUnique(std::vector<uint32_t>& ids, size_t entryCount) {
    if (ids.size() < entryCount / 64 + 16) {
        std::sort(ids.begin(), ids.end());
        ids.erase(std::unique(ids.begin(), ids.end()), ids.end());
        return;
    }
    std::vector<uint64_t> bits(entryCount / 64 + 1, 0);
    for (uint32_t id : ids) bits[id / 64] |= uint64_t{1} << (id % 64);
    ids.clear();
    for (size_t word = 0; word < bits.size(); ++word) {
        for (uint64_t w = bits[word]; w != 0; w &= w - 1) {
            ids.push_back(static_cast<uint32_t>(word * 64 + static_cast<size_t>(__builtin_ctzll(w))));
        }
    }
}

}  // namespace

void SpatialIndex::query(db::ObjectRecord& layoutBlock, const std::optional<Rect2>& worldArea,
                         std::vector<IndexedEntity>& out) {
    if (!layoutBlock.drawing) return;
    BlockIndex& index = indexFor(layoutBlock);
    std::vector<uint32_t> ids;
    if (worldArea) {
        index.tree.query(*worldArea, ids);
        for (uint32_t id : index.loose) {
            const BlockIndex::Entry& entry = index.entries[id];
            if (!entry.bounded || flatBox(entry.box).intersects(*worldArea)) ids.push_back(id);
        }
        ascendingUnique(ids, index.entries.size());
    } else {
        ids.resize(index.entries.size());
        for (size_t i = 0; i < ids.size(); ++i) ids[i] = static_cast<uint32_t>(i);
    }
    out.reserve(out.size() + ids.size());
    for (uint32_t id : ids) {
        BlockIndex::Entry& entry = index.entries[id];
        if (entry.entity->erased) continue;
        if (entry.tagsMoved()) {
            // Changed within this command: read again, and measured again where it stands now.
            index.noteTags(entry);
            if (entityStamp(*entry.entity) != entry.stamp) {
                ++stats_.remeasured;
                index.measure(entry);
                if (entry.inTree) {
                    entry.inTree = false;
                    index.loose.push_back(id);
                }
                if (worldArea && entry.bounded && !flatBox(entry.box).intersects(*worldArea)) continue;
            }
        }
        out.push_back({entry.entity, entry.box, entry.bounded, &entry.common});
    }
}

}  // namespace korva::editor
