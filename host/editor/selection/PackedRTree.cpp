// Sort-tile-recursive packing and an explicit-stack query.
#include "editor/selection/PackedRTree.h"

#include <algorithm>
#include <cmath>

namespace korva::editor {

namespace {

double centerX(const Rect2& r) { return (r.minX + r.maxX) * 0.5; }
double centerY(const Rect2& r) { return (r.minY + r.maxY) * 0.5; }

Rect2 unite(const Rect2& a, const Rect2& b) {
    return {std::min(a.minX, b.minX), std::min(a.minY, b.minY), std::max(a.maxX, b.maxX), std::max(a.maxY, b.maxY)};
}

}  // namespace

void PackedRTree::build(const std::vector<Rect2>& boxes, const std::vector<uint32_t>& ids) {
    items_.clear();
    levels_.clear();
    items_.reserve(boxes.size());
    for (size_t i = 0; i < boxes.size(); ++i) items_.push_back({boxes[i], ids[i]});
    if (items_.empty()) return;

    // Slices of about sqrt(n / node size) leaves each, sorted by x; each slice by y.
    const size_t leafCount = (items_.size() + kNodeSize - 1) / kNodeSize;
    const size_t slices = static_cast<size_t>(std::ceil(std::sqrt(static_cast<double>(leafCount))));
    const size_t perSlice = slices * kNodeSize;
    std::sort(items_.begin(), items_.end(), [](const Item& a, const Item& b) { return centerX(a.box) < centerX(b.box); });
    for (size_t start = 0; start < items_.size(); start += perSlice) {
        const auto from = items_.begin() + static_cast<std::ptrdiff_t>(start);
        const auto to = items_.begin() + static_cast<std::ptrdiff_t>(std::min(items_.size(), start + perSlice));
        std::sort(from, to, [](const Item& a, const Item& b) { return centerY(a.box) < centerY(b.box); });
    }

    std::vector<Node> leaves;
    for (size_t start = 0; start < items_.size(); start += kNodeSize) {
        Node node;
        node.first = static_cast<uint32_t>(start);
        node.count = static_cast<uint32_t>(std::min<size_t>(kNodeSize, items_.size() - start));
        node.box = items_[start].box;
        for (uint32_t i = 1; i < node.count; ++i) node.box = unite(node.box, items_[start + i].box);
        leaves.push_back(node);
    }
    levels_.push_back(std::move(leaves));
    // Upper levels group consecutive nodes, which the packing already placed near each other.
    while (levels_.back().size() > 1) {
        const std::vector<Node>& below = levels_.back();
        std::vector<Node> level;
        for (size_t start = 0; start < below.size(); start += kNodeSize) {
            Node node;
            node.first = static_cast<uint32_t>(start);
            node.count = static_cast<uint32_t>(std::min<size_t>(kNodeSize, below.size() - start));
            node.box = below[start].box;
            for (uint32_t i = 1; i < node.count; ++i) node.box = unite(node.box, below[start + i].box);
            level.push_back(node);
        }
        levels_.push_back(std::move(level));
    }
}

void PackedRTree::query(const Rect2& area, std::vector<uint32_t>& out) const {
    if (levels_.empty()) return;
    struct Visit {
        uint32_t level;
        uint32_t node;
    };
    std::vector<Visit> stack;
    const auto top = static_cast<uint32_t>(levels_.size() - 1);
    for (uint32_t i = 0; i < levels_[top].size(); ++i) stack.push_back({top, i});
    while (!stack.empty()) {
        const Visit visit = stack.back();
        stack.pop_back();
        const Node& node = levels_[visit.level][visit.node];
        if (!node.box.intersects(area)) continue;
        if (visit.level == 0) {
            for (uint32_t i = node.first; i < node.first + node.count; ++i) {
                if (items_[i].box.intersects(area)) out.push_back(items_[i].id);
            }
            continue;
        }
        for (uint32_t i = node.first; i < node.first + node.count; ++i) stack.push_back({visit.level - 1, i});
    }
}

}  // namespace korva::editor
