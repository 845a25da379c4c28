// Reading a block's SORTENTSTABLE without opening it: the renderer only reads.
#include "render/DrawOrder.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <unordered_map>

#include "db/Drawing.h"
#include "db/RecordTags.h"
#include "db/objects/DictionaryEntries.h"

namespace korva::render {

namespace {

using db::Handle;
using db::ObjectRecord;

constexpr std::string_view kSortentsKey = "ACAD_SORTENTS";
constexpr std::string_view kSortentsMarker = "AcDbSortentsTable";

bool isSortentsKey(std::string_view key) {
    return key.size() == kSortentsKey.size() &&
           std::equal(key.begin(), key.end(), kSortentsKey.begin(),
                      [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; });
}

const ObjectRecord* sortentsTableOf(const ObjectRecord& blockRecord) {
    if (!blockRecord.drawing) return nullptr;
    for (Handle handle : db::applicationGroupHandles(blockRecord, "{ACAD_XDICTIONARY")) {
        const ObjectRecord* dictionary = blockRecord.drawing->findByHandle(handle);
        if (!dictionary || dictionary->erased) continue;
        for (const db::DictionaryEntry& entry : db::dictionaryEntries(*dictionary)) {
            if (!isSortentsKey(entry.key)) continue;
            const ObjectRecord* table = db::liveEntryObject(*dictionary, entry);
            if (table && table->type == db::Type::SortEntsTable) return table;
        }
    }
    return nullptr;
}

// Entity handle -> sort handle: the 331/5 pairs of the table's subclass.
std::unordered_map<Handle, Handle> sortHandles(const ObjectRecord& table) {
    std::unordered_map<Handle, Handle> pairs;
    Handle entity = 0;
    bool inside = false;
    for (db::TagRef tag : table.tags) {
        if (tag.code() == 100) inside = tag.text() == kSortentsMarker;
        else if (tag.code() == 1001) break;
        else if (inside && tag.code() == 331) entity = tag.handle();
        else if (inside && tag.code() == 5 && entity != 0) {
            pairs[entity] = tag.handle();
            entity = 0;
        }
    }
    return pairs;
}

}  // namespace

std::vector<const ObjectRecord*> entitiesInDrawOrder(const ObjectRecord& blockRecord) {
    std::vector<const ObjectRecord*> order;
    if (!blockRecord.container) return order;
    order.reserve(blockRecord.container->members.size());
    for (const ObjectRecord* entity : blockRecord.container->members) {
        if (!entity->erased) order.push_back(entity);
    }
    const ObjectRecord* table = sortentsTableOf(blockRecord);
    if (!table) return order;
    const auto pairs = sortHandles(*table);
    if (pairs.empty()) return order;
    auto key = [&pairs](const ObjectRecord* entity) {
        const auto it = pairs.find(entity->handle);
        return it == pairs.end() ? entity->handle : it->second;
    };
    std::stable_sort(order.begin(), order.end(), [&](const ObjectRecord* a, const ObjectRecord* b) {
        const Handle ka = key(a), kb = key(b);
        return ka != kb ? ka < kb : a->handle < b->handle;
    });
    return order;
}

}  // namespace korva::render
