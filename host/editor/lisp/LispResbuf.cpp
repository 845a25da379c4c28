// Conversion between LISP values and result-buffer chains.
#include "editor/lisp/LispResbuf.h"

#include <climits>
#include <cmath>
#include <cstdlib>
#include <cwchar>

#include "db/ResultBuffers.h"
#include "editor/lisp/LispData.h"

namespace korva::editor::lisp {

using db::ItemType;
using Type = LispValue::Type;

namespace {

// Data-type codes (RTREAL ... RTT) lie above every DXF group code.
bool isDataTypeCode(int restype) { return restype >= RTNONE && restype < RTNONE + 100; }

bool fail(std::wstring& error, std::wstring why) {
    error = std::move(why);
    return false;
}

void setName(resbuf* rb, const int64_t name[2]) {
    rb->resval.rlname[0] = name[0];
    rb->resval.rlname[1] = name[1];
}

// --- argument chains ---------------------------------------------------------

bool isRealList(const LispValue& value) {
    if (!isNumberList(value)) return false;
    for (const LispValue& item : value.items) {
        if (item.type != Type::Real) return false;
    }
    return true;
}

bool appendArgument(db::ResbufChain& chain, const LispValue& value, std::wstring& error) {
    switch (value.type) {
        case Type::Nil: chain.append(RTNIL); return true;
        case Type::True: chain.append(RTT); return true;
        case Type::Integer:
            if (value.integer >= SHRT_MIN && value.integer <= SHRT_MAX) {
                chain.appendShort(RTSHORT, static_cast<int>(value.integer));
            } else if (value.integer >= INT32_MIN && value.integer <= INT32_MAX) {
                if (resbuf* rb = chain.append(RTLONG)) rb->resval.rlong = static_cast<int32_t>(value.integer);
            } else {
                chain.appendReal(RTREAL, static_cast<double>(value.integer));
            }
            return true;
        case Type::Real: chain.appendReal(RTREAL, value.real); return true;
        case Type::String:
        case Type::Symbol: chain.appendText(RTSTR, value.text); return true;
        case Type::Point: chain.appendPoint(value.point2d ? RTPOINT : RT3DPOINT, value.point); return true;
        case Type::EntityName:
        case Type::SelectionSet:
            if (resbuf* rb = chain.append(value.type == Type::EntityName ? RTENAME : RTPICKS)) setName(rb, value.name);
            return true;
        case Type::List: {
            // A list of two or three reals travels as a point, as CAD LISPs pass them.
            bool twoD = false;
            if (isRealList(value)) {
                chain.appendPoint(value.items.size() == 2 ? RTPOINT : RT3DPOINT, *pointOf(value, &twoD));
                return true;
            }
            chain.append(RTLB);
            for (const LispValue& item : value.items) {
                if (!appendArgument(chain, item, error)) return false;
            }
            chain.append(RTLE);
            return true;
        }
        case Type::DottedPair:
            if (value.items.size() != 2) return fail(error, L"a dotted pair without two items");
            chain.append(RTLB);
            if (!appendArgument(chain, value.items[0], error)) return false;
            chain.append(RTDOTE);
            if (!appendArgument(chain, value.items[1], error)) return false;
            chain.append(RTLE);
            return true;
    }
    return fail(error, L"a value without a result-buffer form");
}

// --- DXF items -----------------------------------------------------------------

std::wstring hexOf(const resbuf& item) {
    static const wchar_t digits[] = L"0123456789ABCDEF";
    std::wstring hex;
    for (short i = 0; i < item.resval.rbinary.clen; ++i) {
        const auto byte = static_cast<unsigned char>(item.resval.rbinary.buf[i]);
        hex.push_back(digits[byte >> 4]);
        hex.push_back(digits[byte & 15]);
    }
    return hex;
}

LispValue pairOf(int code, LispValue value) {
    LispValue pair;
    pair.type = Type::DottedPair;
    pair.items = {LispValue::ofInteger(code), std::move(value)};
    return pair;
}

// One record with a DXF group code as its association item: (code . value), or
// (code x y z) for a point.
LispValue dxfItemOf(const resbuf& item) {
    const int code = item.restype;
    switch (db::itemTypeOf(code)) {
        case ItemType::Point:
            return LispValue::ofList({LispValue::ofInteger(code), LispValue::ofReal(item.resval.rpoint[0]),
                                      LispValue::ofReal(item.resval.rpoint[1]), LispValue::ofReal(item.resval.rpoint[2])});
        case ItemType::Real: return pairOf(code, LispValue::ofReal(item.resval.rreal));
        case ItemType::Short: return pairOf(code, LispValue::ofInteger(item.resval.rint));
        case ItemType::Long: return pairOf(code, LispValue::ofInteger(item.resval.rlong));
        case ItemType::Int64: return pairOf(code, LispValue::ofInteger(item.resval.mnInt64));
        case ItemType::Name: return pairOf(code, LispValue::ofName(Type::EntityName, item.resval.rlname));
        case ItemType::Binary: return pairOf(code, LispValue::ofString(hexOf(item)));
        case ItemType::Text:
        case ItemType::HandleText:
            return pairOf(code, LispValue::ofString(item.resval.rstring ? item.resval.rstring : L""));
        case ItemType::None: break;
    }
    return LispValue::ofList({LispValue::ofInteger(code)});
}

// The extended data after a -3 record: (-3 ("APP" items...) ...).
LispValue extendedDataOf(const resbuf*& cursor) {
    std::vector<LispValue> applications;
    for (; cursor; cursor = cursor->rbnext) {
        if (cursor->restype == 1001) {
            applications.push_back(LispValue::ofList({LispValue::ofString(cursor->resval.rstring ? cursor->resval.rstring : L"")}));
        } else if (!applications.empty()) {
            applications.back().items.push_back(dxfItemOf(*cursor));
        }
    }
    applications.insert(applications.begin(), LispValue::ofInteger(-3));
    return LispValue::ofList(std::move(applications));
}

bool integerIn(const LispValue& value, int64_t low, int64_t high, int64_t& out) {
    if (value.type == Type::Integer) out = value.integer;
    else if (value.type == Type::Real && std::floor(value.real) == value.real) out = static_cast<int64_t>(value.real);
    else return false;
    return out >= low && out <= high;
}

bool binaryFromHex(const std::wstring& hex, resbuf* rb) {
    if (hex.size() % 2 != 0 || hex.size() / 2 > SHRT_MAX) return false;
    auto* bytes = static_cast<char*>(std::malloc(hex.size() / 2 + 1));
    if (!bytes) return false;
    for (size_t i = 0; i < hex.size(); i += 2) {
        const std::wstring pair = hex.substr(i, 2);
        wchar_t* end = nullptr;
        const long byte = std::wcstol(pair.c_str(), &end, 16);
        if (end != pair.c_str() + 2) {
            std::free(bytes);
            return false;
        }
        bytes[i / 2] = static_cast<char>(byte);
    }
    rb->resval.rbinary.buf = bytes;
    rb->resval.rbinary.clen = static_cast<short>(hex.size() / 2);
    return true;
}

std::wstring badItem(const LispValue& item) { return L"bad DXF item: " + item.print(); }

// The value of one association item, converted as its group code demands.
bool appendDxfValue(db::ResbufChain& chain, int code, const LispValue& item, const LispValue& value, std::wstring& error) {
    int64_t integer = 0;
    switch (db::itemTypeOf(code)) {
        case ItemType::Text:
        case ItemType::HandleText:
            if (value.type != Type::String) return fail(error, badItem(item));
            chain.appendText(static_cast<short>(code), value.text);
            return true;
        case ItemType::Real:
            if (!value.isNumber()) return fail(error, badItem(item));
            chain.appendReal(static_cast<short>(code), value.number());
            return true;
        case ItemType::Point: {
            const auto point = pointOf(value);
            if (!point) return fail(error, badItem(item));
            chain.appendPoint(static_cast<short>(code), *point);
            return true;
        }
        case ItemType::Short:
            if (!integerIn(value, SHRT_MIN, SHRT_MAX, integer)) return fail(error, badItem(item));
            chain.appendShort(static_cast<short>(code), static_cast<int>(integer));
            return true;
        case ItemType::Long:
            if (!integerIn(value, INT32_MIN, INT32_MAX, integer)) return fail(error, badItem(item));
            if (resbuf* rb = chain.append(static_cast<short>(code))) rb->resval.rlong = static_cast<int32_t>(integer);
            return true;
        case ItemType::Int64:
            if (!integerIn(value, INT64_MIN, INT64_MAX, integer)) return fail(error, badItem(item));
            if (resbuf* rb = chain.append(static_cast<short>(code))) rb->resval.mnInt64 = integer;
            return true;
        case ItemType::Name:
            if (value.type != Type::EntityName) return fail(error, badItem(item));
            if (resbuf* rb = chain.append(static_cast<short>(code))) setName(rb, value.name);
            return true;
        case ItemType::Binary: {
            resbuf* rb = value.type == Type::String ? chain.append(static_cast<short>(code)) : nullptr;
            if (!rb || !binaryFromHex(value.text, rb)) return fail(error, badItem(item));
            return true;
        }
        case ItemType::None: break;
    }
    return fail(error, badItem(item));
}

// (-3 ("APP" (1000 . "x") ...) ...): the -3 record, then 1001 and the items of each application.
bool appendExtendedData(db::ResbufChain& chain, const LispValue& item, std::wstring& error) {
    chain.append(-3);
    for (size_t i = 1; i < item.items.size(); ++i) {
        const LispValue& application = item.items[i];
        if (application.type != Type::List || application.items[0].type != Type::String) return fail(error, badItem(item));
        chain.appendText(1001, application.items[0].text);
        for (size_t j = 1; j < application.items.size(); ++j) {
            const LispValue& data = application.items[j];
            const std::vector<LispValue> parts = data.type == Type::DottedPair || data.type == Type::List ? data.items
                                                                                                        : std::vector<LispValue>{};
            if (parts.empty() || parts[0].type != Type::Integer || parts[0].integer < 1000 || parts[0].integer > 1071)
                return fail(error, badItem(data));
            const LispValue value = data.type == Type::DottedPair ? parts[1] : LispValue::ofList({parts.begin() + 1, parts.end()});
            if (!appendDxfValue(chain, static_cast<int>(parts[0].integer), data, value, error)) return false;
        }
    }
    return true;
}

bool appendDxfItem(db::ResbufChain& chain, const LispValue& item, std::wstring& error) {
    const bool pair = item.type == Type::DottedPair && item.items.size() == 2;
    const bool list = item.type == Type::List && item.items.size() >= 2;
    if ((!pair && !list) || item.items[0].type != Type::Integer) return fail(error, badItem(item));
    const int64_t code = item.items[0].integer;
    if (code < -5 || code > 1071) return fail(error, L"bad DXF group code: " + std::to_wstring(code));
    if (code == -3 && list) return appendExtendedData(chain, item, error);
    // (code . value), or (code x y [z]) for a point.
    const LispValue value = pair ? item.items[1] : LispValue::ofList({item.items.begin() + 1, item.items.end()});
    if (list && db::itemTypeOf(static_cast<int>(code)) != ItemType::Point) return fail(error, badItem(item));
    return appendDxfValue(chain, static_cast<int>(code), item, value, error);
}

// The rest of an RTLB ... RTLE list, after its RTLB.
bool nestedListFrom(const resbuf*& cursor, LispValue& value, std::wstring& error) {
    std::vector<LispValue> items;
    bool dotted = false;
    while (cursor && cursor->restype != RTLE) {
        if (cursor->restype == RTDOTE) {
            if (items.size() != 1 || dotted) return fail(error, L"a misplaced dot in a result-buffer list");
            dotted = true;
            cursor = cursor->rbnext;
            continue;
        }
        LispValue item;
        if (!valueFromResbufs(cursor, item, error)) return false;
        items.push_back(std::move(item));
    }
    if (!cursor) return fail(error, L"a result-buffer list without its end (RTLE)");
    cursor = cursor->rbnext;
    if (dotted) {
        if (items.size() != 2) return fail(error, L"a dotted pair without its second item");
        value.type = Type::DottedPair;
        value.items = std::move(items);
    } else {
        value = LispValue::ofList(std::move(items));
    }
    return true;
}

}  // namespace

resbuf* argumentsToResbufs(const std::vector<LispValue>& values, std::wstring& error) {
    error.clear();
    db::ResbufChain chain;
    for (const LispValue& value : values) {
        if (!appendArgument(chain, value, error)) return nullptr;
    }
    return chain.release();
}

bool valueFromResbufs(const resbuf*& cursor, LispValue& value, std::wstring& error) {
    if (!cursor) return fail(error, L"a missing value in a result-buffer list");
    const resbuf& item = *cursor;
    if (!isDataTypeCode(item.restype)) {
        cursor = cursor->rbnext;
        value = dxfItemOf(item);
        return true;
    }
    cursor = cursor->rbnext;
    switch (item.restype) {
        case RTNONE:
        case RTVOID:
        case RTNIL: value = LispValue::nil(); return true;
        case RTT: value = LispValue::t(); return true;
        case RTSHORT: value = LispValue::ofInteger(item.resval.rint); return true;
        case RTLONG: value = LispValue::ofInteger(item.resval.rlong); return true;
        case RTREAL:
        case RTANG:
        case RTORINT: value = LispValue::ofReal(item.resval.rreal); return true;
        case RTSTR:
        case RTDXF0: value = LispValue::ofString(item.resval.rstring ? item.resval.rstring : L""); return true;
        case RTPOINT:
            value = LispValue::ofPoint({item.resval.rpoint[0], item.resval.rpoint[1], 0.0}, true);
            return true;
        case RT3DPOINT:
            value = LispValue::ofPoint({item.resval.rpoint[0], item.resval.rpoint[1], item.resval.rpoint[2]});
            return true;
        case RTENAME: value = LispValue::ofName(Type::EntityName, item.resval.rlname); return true;
        case RTPICKS: value = LispValue::ofName(Type::SelectionSet, item.resval.rlname); return true;
        case RTLB: return nestedListFrom(cursor, value, error);
        case RTLE: return fail(error, L"a list end (RTLE) without its beginning");
        case RTDOTE: return fail(error, L"a misplaced dot in a result-buffer list");
        default: break;
    }
    return fail(error, L"an unknown result type " + std::to_wstring(item.restype));
}

bool listFromResbufs(const resbuf* chain, LispValue& list, std::wstring& error) {
    std::vector<LispValue> items;
    for (const resbuf* cursor = chain; cursor;) {
        LispValue item;
        if (!valueFromResbufs(cursor, item, error)) return false;
        items.push_back(std::move(item));
    }
    list = LispValue::ofList(std::move(items));
    return true;
}

resbuf* dxfListToResbufs(const LispValue& list, std::wstring& error) {
    error.clear();
    if (list.isNil()) return nullptr;
    if (list.type != Type::List) {
        error = L"bad association list: " + list.print();
        return nullptr;
    }
    db::ResbufChain chain;
    for (const LispValue& item : list.items) {
        if (!appendDxfItem(chain, item, error)) return nullptr;
    }
    return chain.release();
}

LispValue dxfListFromResbufs(const resbuf* chain) {
    std::vector<LispValue> items;
    for (const resbuf* cursor = chain; cursor;) {
        if (cursor->restype == -3) {
            cursor = cursor->rbnext;
            items.push_back(extendedDataOf(cursor));
            continue;
        }
        LispValue item;
        std::wstring ignored;
        if (isDataTypeCode(cursor->restype)) {
            if (!valueFromResbufs(cursor, item, ignored)) break;
        } else {
            item = dxfItemOf(*cursor);
            cursor = cursor->rbnext;
        }
        items.push_back(std::move(item));
    }
    return LispValue::ofList(std::move(items));
}

}  // namespace korva::editor::lisp
