// Object-by-object comparison of two drawings for round-trip tests.
#include "DrawingCompare.h"

#include <sstream>

#include "db/RecordTags.h"
#include "db/TextCase.h"

namespace korva::test {

namespace {

void addEntity(std::vector<const db::ObjectRecord*>& out, const db::ObjectRecord& entity) {
    if (entity.erased) return;
    out.push_back(&entity);
    if (!entity.container) return;
    for (const db::ObjectRecord* sub : entity.container->members) out.push_back(sub);
    if (entity.container->end) out.push_back(entity.container->end);
}

std::string tagText(const db::Tag& t) {
    std::ostringstream s;
    s << t.code << "=";
    switch (t.kind) {
        case db::TagKind::String: s << '"' << t.text << '"'; break;
        case db::TagKind::Binary: s << "<" << t.text.size() << " bytes>"; break;
        case db::TagKind::Real: s << t.xyz[0]; break;
        case db::TagKind::Integer: s << t.integer; break;
        case db::TagKind::Handle: s << "#" << db::formatHandle(t.handleValue()); break;
        case db::TagKind::Point2: s << "(" << t.xyz[0] << "," << t.xyz[1] << ")"; break;
        case db::TagKind::Point3: s << "(" << t.xyz[0] << "," << t.xyz[1] << "," << t.xyz[2] << ")"; break;
    }
    return s.str();
}

// Who owns a record: its handle, or for the block records R12 files do not
// hold (and a reader creates anew) the block's name.
std::string ownerKey(const db::ObjectRecord& record) {
    const db::ObjectRecord* owner = record.owner;
    if (!owner) return "none";
    if (owner->type == db::Type::BlockRecord && owner->drawing->versionNumber() < 1012) {
        return "block " + db::foldName(db::recordName(*owner));
    }
    return "#" + db::formatHandle(owner->handle);
}

}  // namespace

std::vector<const db::ObjectRecord*> writtenRecords(const db::Drawing& d) {
    std::vector<const db::ObjectRecord*> out;
    const bool modern = d.versionNumber() >= 1012;
    for (const db::SymbolTable& table : d.tables) {
        if (!modern && db::namesEqual(table.name, "BLOCK_RECORD")) continue;
        if (table.head) out.push_back(table.head);
        for (const db::ObjectRecord* r : table.records) {
            if (!r->erased) out.push_back(r);
        }
    }
    for (const db::ObjectRecord* block : d.blockOrder) {
        if (block->erased || !block->container || !block->container->begin) continue;
        out.push_back(block->container->begin);
        if (block != d.modelSpace() && block != d.paperSpace()) {
            for (const db::ObjectRecord* e : block->container->members) addEntity(out, *e);
        }
        if (block->container->end) out.push_back(block->container->end);
    }
    for (const db::ObjectRecord* e : d.layoutEntities) {
        if (e->owner == d.modelSpace() || e->owner == d.paperSpace()) addEntity(out, *e);
    }
    if (modern) {
        for (const db::ObjectRecord* o : d.objects) {
            if (!o->erased) out.push_back(o);
        }
    }
    return out;
}

std::string dumpTags(const db::ObjectRecord& record) {
    std::string out(db::typeName(record.type));
    for (db::TagRef t : record.tags) out += " " + tagText(t.toTag());
    return out;
}

std::vector<std::string> compareDrawings(const db::Drawing& expected, const db::Drawing& actual) {
    std::vector<std::string> problems;
    for (const auto& variable : expected.header.variables()) {
        if (db::namesEqual(variable.name, "$HANDSEED")) continue;
        const auto* other = actual.header.find(variable.name);
        if (!other) problems.push_back("header variable " + variable.name + " is missing");
        else if (!(other->tags == variable.tags)) problems.push_back("header variable " + variable.name + " differs");
    }
    const auto a = writtenRecords(expected);
    const auto b = writtenRecords(actual);
    if (a.size() != b.size()) {
        problems.push_back("record count " + std::to_string(a.size()) + " became " + std::to_string(b.size()));
    }
    for (const db::ObjectRecord* r : a) {
        const db::ObjectRecord* other = r->handle ? actual.findByHandle(r->handle) : nullptr;
        const std::string who = std::string(db::typeName(r->type)) + " #" + db::formatHandle(r->handle);
        if (!other) {
            problems.push_back(who + " is missing");
            continue;
        }
        if (other->type != r->type) problems.push_back(who + " changed type");
        if (ownerKey(*r) != ownerKey(*other)) problems.push_back(who + " changed owner from " + ownerKey(*r) + " to " + ownerKey(*other));
        if (!(other->tags == r->tags)) problems.push_back(who + " tags differ:\n  " + dumpTags(*r) + "\n  " + dumpTags(*other));
        if (problems.size() > 20) break;
    }
    return problems;
}

}  // namespace korva::test
