// The registry of DXF type names. Unknown names are appended as they are met, so
// that a drawing with custom objects keeps their names exactly.
#include "db/ObjectType.h"

#include <deque>
#include <string>
#include <unordered_map>
#include <vector>

namespace korva::db {

namespace {

constexpr std::string_view kFixedNames[] = {
    "",
    "TABLE", "BLOCK", "ENDBLK", "SEQEND",
    "LAYER", "LTYPE", "STYLE", "DIMSTYLE", "BLOCK_RECORD", "APPID", "UCS", "VPORT", "VIEW",
    "LINE", "POINT", "CIRCLE", "ARC", "TEXT", "MTEXT", "ATTDEF", "ATTRIB", "INSERT", "SOLID", "TRACE",
    "3DFACE", "POLYLINE", "VERTEX", "LWPOLYLINE", "ELLIPSE", "SPLINE", "RAY", "XLINE", "SHAPE",
    "DIMENSION", "ARC_DIMENSION", "LARGE_RADIAL_DIMENSION", "LEADER", "MULTILEADER", "REGION", "BODY",
    "3DSOLID", "SURFACE", "MLINE", "HATCH", "IMAGE", "WIPEOUT", "OLE2FRAME", "OLEFRAME", "TOLERANCE",
    "VIEWPORT", "ACAD_TABLE", "MESH", "HELIX", "LIGHT", "UNDERLAY",
    "DICTIONARY", "ACDBDICTIONARYWDFLT", "XRECORD", "GROUP", "LAYOUT", "SCALE", "DICTIONARYVAR",
    "SORTENTSTABLE", "ACDBPLACEHOLDER", "IMAGEDEF", "IMAGEDEF_REACTOR", "RASTERVARIABLES", "FIELD",
    "IDBUFFER", "LAYER_FILTER", "LAYER_INDEX", "SPATIAL_FILTER", "SPATIAL_INDEX", "PLOTSETTINGS",
    "MLINESTYLE", "MLEADERSTYLE", "TABLESTYLE", "VISUALSTYLE", "MATERIAL", "WIPEOUTVARIABLES",
    "DIMASSOC", "EXACXREFPANELOBJECT",
};
static_assert(std::size(kFixedNames) == Type::FirstDynamic);

struct Registry {
    std::deque<std::string> dynamicNames;  // deque: views into it stay valid
    std::vector<std::string_view> names;
    std::unordered_map<std::string_view, TypeId> ids;

    Registry() {
        for (std::string_view name : kFixedNames) {
            ids.emplace(name, static_cast<TypeId>(names.size()));
            names.push_back(name);
        }
    }
};

Registry& registry() {
    static Registry instance;
    return instance;
}

}  // namespace

TypeId typeIdOf(std::string_view dxfName) {
    Registry& r = registry();
    if (auto it = r.ids.find(dxfName); it != r.ids.end()) return it->second;
    if (r.names.size() >= 0xFFFF) return Type::Unknown;
    r.dynamicNames.emplace_back(dxfName);
    std::string_view stored = r.dynamicNames.back();
    const auto id = static_cast<TypeId>(r.names.size());
    r.names.push_back(stored);
    r.ids.emplace(stored, id);
    return id;
}

std::string_view typeName(TypeId id) {
    const Registry& r = registry();
    return id < r.names.size() ? r.names[id] : std::string_view{};
}

bool isEntityType(TypeId id) { return id >= Type::Line && id <= Type::Underlay; }

bool isSymbolTableRecordType(TypeId id) { return id >= Type::Layer && id <= Type::View; }

}  // namespace korva::db
