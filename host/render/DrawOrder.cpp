// Reading a block's SORTENTSTABLE without opening it: the renderer only reads.
#include "render/DrawOrder.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <unordered_map>

#include "db/objects/SortentsPairs.h"
#include "db/Drawing.h"
#include "db/RecordTags.h"
#include "db/objects/DictionaryEntries.h"

namespace korva::render {

namespace {

using db::Handle;
using db::ObjectRecord;

constexpr std::string_view kSortentsKey = "ACAD_SORTENTS";

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
    const auto pairs = db::sortentsPairs(*table);
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
