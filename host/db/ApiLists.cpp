// Shared helpers of the C-level functions.
#include "db/ApiLists.h"

#include "db/ResultBuffers.h"
#include "kcdbdatabase.h"

namespace korva::db {

Drawing* workingDrawing() {
    KcDbDatabase* database = kcdbHostApplicationServices()->workingDatabase();
    return database ? &database->drawing() : nullptr;
}

resbuf* toChain(const std::vector<Tag>& list, const Drawing* drawing) {
    ResbufChain chain;
    for (const Tag& tag : list) chain.appendTag(tag, drawing);
    return chain.release();
}

bool fromChain(const resbuf* list, const Drawing* drawing, std::vector<Tag>& out) {
    for (const resbuf* rb = list; rb; rb = rb->rbnext) {
        if (rb->restype == -3) {
            out.push_back(Tag::make(-3, TagKind::String));
            continue;
        }
        Tag tag;
        if (!tagFromResbuf(*rb, drawing, tag)) return false;
        out.push_back(std::move(tag));
    }
    return true;
}

const Tag* findItem(const std::vector<Tag>& list, int code) {
    for (const Tag& tag : list) {
        if (tag.code == code) return &tag;
    }
    return nullptr;
}

}  // namespace korva::db
