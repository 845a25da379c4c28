// SpatialIndex: the world extents of the top-level entities of each layout
// (model space and every paper-space layout), in a packed R-tree per layout
// block, so that window, crossing and pick selections test only the entities
// near them instead of every entity of the drawing.
//
// Built lazily on the first query of a layout. Entities added since then are
// found by the layout's entity list and tested until the next rebuild; erased
// ones are left out of answers. Whether entities were modified is checked when
// told that they may have been (noteChanges, which the command-end hook calls):
// the next query then compares a hash of every entity's tags (and of the block
// definitions and text styles that shape them) with the one taken when its box
// was measured, and measures again what changed. Within one command a
// candidate whose tags were re-encoded since (an edit writes them anew) is
// hashed and measured again too, so an entity that moved away is not reported
// where it was.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "db/ObjectRecord.h"
#include "editor/selection/EntityFacts.h"
#include "editor/selection/FlatShape.h"
#include "geom/Box3d.h"

namespace korva::editor {

struct IndexedEntity {
    db::ObjectRecord* entity = nullptr;
    geom::Box3d box;      // world extents
    bool bounded = true;  // false: no extents known (rays, empty entities); always a candidate
    // Layer, colour and visibility as the entity's tags hold them now (read again
    // whenever the tags were rewritten); valid until the next query.
    const CommonProperties* common = nullptr;
};

class SpatialIndex {
public:
    static SpatialIndex& instance();
    SpatialIndex();
    ~SpatialIndex();

    // The entities of a layout block, not erased, whose world extents may meet the
    // world xy area (with no area: all of them), in the block's entity order.
    void query(db::ObjectRecord& layoutBlock, const std::optional<Rect2>& worldArea, std::vector<IndexedEntity>& out);

    // Entities may have changed since the last query: the next one checks them all.
    void noteChanges() { ++epoch_; }
    // Forgets every index (a test, or a drawing about to be replaced).
    void clear();

    // What the index did, for tests and the benchmark.
    struct Stats {
        size_t builds = 0;      // full builds of a layout's index
        size_t remeasured = 0;  // entities measured again after a change
    };
    const Stats& stats() const { return stats_; }

private:
    struct BlockIndex;
    BlockIndex& indexFor(db::ObjectRecord& block);
    void rebuild(BlockIndex& index);
    void refresh(BlockIndex& index);
    void dropDeadDrawings();

    std::map<const db::ObjectRecord*, std::unique_ptr<BlockIndex>> blocks_;
    uint64_t epoch_ = 1;
    Stats stats_;
};

// A hash of an entity's tags and those of its attributes or vertices.
uint64_t entityStamp(const db::ObjectRecord& entity);

}  // namespace korva::editor
