// What a test reads back after a command: the entity data lists (kcdbEntGet)
// of the drawing's top-level entities, with small accessors by group code.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "kcdbfuncs.h"

namespace korva::test::blocks {

class EntityList {
public:
    explicit EntityList(resbuf* list) : m_list(list, &kcutRelRb) {}
    // The list of the entity with that handle; empty when it is erased or unknown.
    static EntityList ofHandle(const std::string& handle);

    explicit operator bool() const { return m_list != nullptr; }
    bool has(int code) const { return item(code) != nullptr; }
    std::wstring type() const { return text(0); }
    std::wstring text(int code) const;
    std::optional<long> integer(int code) const;
    double real(int code) const;  // NaN when absent
    std::optional<std::vector<double>> point(int code) const;

private:
    const resbuf* item(int code) const;
    std::unique_ptr<resbuf, int (*)(resbuf*)> m_list;
};

// Every top-level entity of model space and the layouts (attributes and
// vertices left out), in the host's walking order.
std::vector<EntityList> topLevelEntities();
// Those of one type ("TEXT", "LINE", ...).
std::vector<EntityList> topLevelEntities(const std::wstring& type);

// The handle of the last entity made (kcdbEntLast), as DXF writes it.
std::string lastHandle();

}  // namespace korva::test::blocks
