// Entity names: (drawing serial << 32 | record index + 1, handle).
#include "db/EntityNames.h"

#include "db/Drawing.h"

namespace korva::db {

void nameOf(const ObjectRecord* record, kcad_name out) {
    if (!record || !record->drawing) {
        out[0] = out[1] = 0;
        return;
    }
    out[0] = (static_cast<int64_t>(record->drawing->serial()) << 32) | (static_cast<int64_t>(record->index) + 1);
    out[1] = static_cast<int64_t>(record->handle);
}

ObjectRecord* recordOf(const kcad_name name) {
    if (!name || name[0] <= 0) return nullptr;
    const auto serial = static_cast<uint32_t>(static_cast<uint64_t>(name[0]) >> 32);
    const auto index = static_cast<uint32_t>(name[0] & 0xFFFFFFFF);
    Drawing* drawing = Drawing::bySerial(serial);
    if (!drawing || index == 0) return nullptr;
    return drawing->record(index - 1);
}

}  // namespace korva::db
