// Reading entity data lists back for the checks.
#include "EntityLists.h"

#include <cmath>
#include <limits>

#include "db/ResultBuffers.h"
#include "db/Utf8.h"

namespace korva::test::blocks {

EntityList EntityList::ofHandle(const std::string& handle) {
    kcad_name name = {0, 0};
    if (kcdbHandEnt(db::utf8ToWide(handle).c_str(), name) != RTNORM) return EntityList(nullptr);
    return EntityList(kcdbEntGet(name));
}

const resbuf* EntityList::item(int code) const {
    for (const resbuf* rb = m_list.get(); rb; rb = rb->rbnext) {
        if (rb->restype == code) return rb;
    }
    return nullptr;
}

std::wstring EntityList::text(int code) const {
    const resbuf* rb = item(code);
    const auto kind = db::itemTypeOf(code);
    if (!rb || (kind != db::ItemType::Text && kind != db::ItemType::HandleText) || !rb->resval.rstring) return {};
    return rb->resval.rstring;
}

std::optional<long> EntityList::integer(int code) const {
    const resbuf* rb = item(code);
    if (!rb) return std::nullopt;
    switch (db::itemTypeOf(code)) {
        case db::ItemType::Short: return rb->resval.rint;
        case db::ItemType::Long: return rb->resval.rlong;
        case db::ItemType::Int64: return static_cast<long>(rb->resval.mnInt64);
        default: return std::nullopt;
    }
}

double EntityList::real(int code) const {
    const resbuf* rb = item(code);
    if (!rb || db::itemTypeOf(code) != db::ItemType::Real) return std::numeric_limits<double>::quiet_NaN();
    return rb->resval.rreal;
}

std::optional<std::vector<double>> EntityList::point(int code) const {
    const resbuf* rb = item(code);
    if (!rb || db::itemTypeOf(code) != db::ItemType::Point) return std::nullopt;
    return std::vector<double>{rb->resval.rpoint[0], rb->resval.rpoint[1], rb->resval.rpoint[2]};
}

std::vector<EntityList> topLevelEntities() {
    std::vector<EntityList> lists;
    kcad_name current = {0, 0};
    kcad_name next = {0, 0};
    while (kcdbEntNext(current, next) == RTNORM) {
        EntityList list(kcdbEntGet(next));
        const std::wstring type = list.type();
        if (list && type != L"ATTRIB" && type != L"SEQEND" && type != L"VERTEX") lists.push_back(std::move(list));
        current[0] = next[0];
        current[1] = next[1];
    }
    return lists;
}

std::vector<EntityList> topLevelEntities(const std::wstring& type) {
    std::vector<EntityList> all = topLevelEntities();
    std::vector<EntityList> chosen;
    for (EntityList& list : all) {
        if (list.type() == type) chosen.push_back(std::move(list));
    }
    return chosen;
}

std::string lastHandle() {
    kcad_name last = {0, 0};
    if (kcdbEntLast(last) != RTNORM) return {};
    EntityList list(kcdbEntGet(last));
    return db::wideToUtf8(list.text(5));
}

}  // namespace korva::test::blocks
