// Reading the 331/5 pairs of a SORTENTSTABLE.
#include "db/objects/SortentsPairs.h"

#include <string_view>

namespace korva::db {

std::unordered_map<Handle, Handle> sortentsPairs(const ObjectRecord& table) {
    std::unordered_map<Handle, Handle> pairs;
    Handle entity = 0;
    bool inside = false;
    for (TagRef tag : table.tags) {
        if (tag.code() == 100) inside = tag.text() == std::string_view("AcDbSortentsTable");
        else if (tag.code() == 1001) break;
        else if (inside && tag.code() == 331) entity = tag.handle();
        else if (inside && tag.code() == 5 && entity != 0) {
            pairs[entity] = tag.handle();
            entity = 0;
        }
    }
    return pairs;
}

}  // namespace korva::db
