// PackedRTree: a static R-tree over 2D boxes, packed bottom-up in
// sort-tile-recursive order (slices by x, runs by y), so that a query visits
// only the nodes whose boxes meet it. Built once from a list of boxes; the
// spatial index rebuilds it when too much has changed.
#pragma once

#include <cstdint>
#include <vector>

#include "editor/selection/FlatShape.h"

namespace korva::editor {

class PackedRTree {
public:
    static constexpr uint32_t kNodeSize = 16;

    // boxes[i] belongs to item ids[i].
    void build(const std::vector<Rect2>& boxes, const std::vector<uint32_t>& ids);
    // Appends the ids of the items whose boxes meet the query.
    void query(const Rect2& area, std::vector<uint32_t>& out) const;
    size_t size() const { return items_.size(); }

private:
    struct Node {
        Rect2 box;
        uint32_t first = 0;  // first child (in the level below, or in items_ for leaves)
        uint32_t count = 0;
    };
    struct Item {
        Rect2 box;
        uint32_t id = 0;
    };

    std::vector<Item> items_;               // in packing order
    std::vector<std::vector<Node>> levels_;  // levels_[0] are the leaves; the last level holds the root
};

}  // namespace korva::editor
