// Descent into block references, with a guard against blocks that contain
// references to themselves.
#include "editor/selection/EntityWalk.h"

#include <algorithm>

#include "db/RecordFields.h"
#include "db/geometry/BlockTransform.h"
#include "editor/selection/EntityFacts.h"

namespace korva::editor {

namespace {

constexpr size_t kMaxNesting = 64;

class Walker {
public:
    Walker(LayerStates& layers, const std::function<void(const LeafVisit&)>& visit) : layers_(layers), visit_(visit) {}

    void entity(const db::ObjectRecord& e, const KcGeMatrix3d& toWorld, std::string_view effectiveLayer) {
        if (!isBlockReference(e)) {
            LeafVisit leaf;
            leaf.leaf = &e;
            leaf.toWorld = toWorld;
            leaf.containers = containers_;
            visit_(leaf);
            return;
        }
        if (e.type == db::Type::Insert) attributes(e, toWorld, effectiveLayer);
        const db::ObjectRecord* block = db::geometry::referencedBlock(e);
        if (!block || !block->container || open_.size() >= kMaxNesting ||
            std::find(open_.begin(), open_.end(), block) != open_.end()) {
            return;
        }
        open_.push_back(block);
        containers_.push_back(&e);
        if (e.type == db::Type::Dimension) {
            // A dimension's block is drawn in world coordinates.
            members(*block, toWorld, effectiveLayer, false);
        } else {
            const db::geometry::InsertFields fields = db::geometry::readInsertFields(e);
            const KcGePoint3d base = db::geometry::blockBasePoint(*block);
            for (int row = 0; row < fields.rows; ++row) {
                for (int column = 0; column < fields.columns; ++column) {
                    members(*block, toWorld * db::geometry::insertTransform(fields, base, column, row), effectiveLayer, true);
                }
            }
        }
        containers_.pop_back();
        open_.pop_back();
    }

private:
    // Whether an entity inside a reference shows, and the layer its own members inherit.
    bool shows(const db::ObjectRecord& e, std::string_view parentLayer, std::string_view& effective) {
        if (e.erased) return false;
        const CommonProperties common = commonProperties(e);
        if (common.invisible) return false;
        effective = common.layer == "0" ? parentLayer : common.layer;
        return !layers_.of(effective).hidden();
    }

    void members(const db::ObjectRecord& block, const KcGeMatrix3d& toWorld, std::string_view parentLayer, bool asReference) {
        for (const db::ObjectRecord* member : block.container->members) {
            // Attribute definitions show in references only when constant.
            if (asReference && member->type == db::Type::AttDef && !(db::fieldInteger(*member, {}, 70, 0) & 2)) continue;
            std::string_view effective;
            if (!shows(*member, parentLayer, effective)) continue;
            entity(*member, toWorld, effective);
        }
    }

    void attributes(const db::ObjectRecord& insert, const KcGeMatrix3d& toWorld, std::string_view insertLayer) {
        if (!insert.container) return;
        for (const db::ObjectRecord* attribute : insert.container->members) {
            if (attribute->type != db::Type::Attrib) continue;
            if (db::fieldInteger(*attribute, {}, 70, 0) & 1) continue;  // an invisible attribute
            std::string_view effective;
            if (!shows(*attribute, insertLayer, effective)) continue;
            LeafVisit leaf;
            leaf.leaf = attribute;
            leaf.toWorld = toWorld;
            leaf.containers = containers_;
            visit_(leaf);
        }
    }

    LayerStates& layers_;
    const std::function<void(const LeafVisit&)>& visit_;
    std::vector<const db::ObjectRecord*> open_;
    std::vector<const db::ObjectRecord*> containers_;
};

}  // namespace

bool isBlockReference(const db::ObjectRecord& entity) {
    return entity.type == db::Type::Insert || entity.type == db::Type::Dimension;
}

void walkLeaves(const db::ObjectRecord& entity, LayerStates& layers, const std::function<void(const LeafVisit&)>& visit) {
    Walker walker(layers, visit);
    walker.entity(entity, KcGeMatrix3d::kIdentity, commonProperties(entity).layer);
}

}  // namespace korva::editor
