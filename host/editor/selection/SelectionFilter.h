// Selection filters: the filter lists of kcedSSGet. A list is a chain of DXF
// group items that must all match (an implicit AND), with groups in -4 items
// ("<AND" ... "AND>", "<OR" ... "OR>", "<XOR" two items "XOR>", "<NOT" one item
// "NOT>", written in any case), relational operators given as (-4 . "op") before
// an item ("*", "=", "!=", "/=", "<>", "<", "<=", ">", ">=", "&", "&=", and
// "op,op,op" for the coordinates of points), extended-data tests (-3 then 1001
// application patterns, all of which must be present) and string items that are
// wild-card patterns compared without regard to case.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "db/ObjectRecord.h"
#include "editor/selection/LayerStates.h"
#include "editor/selection/Wildcard.h"
#include "kcadstd.h"
#include "kcge.h"

namespace korva::editor {

class EntityFacts;

enum class Relation { Any, Equal, NotEqual, Less, LessEqual, Greater, GreaterEqual, BitsAny, BitsAll };

class SelectionFilter {
public:
    // The empty filter, which every entity passes.
    SelectionFilter() = default;
    // Nothing (with the reason) for a list that is not a valid filter.
    static std::optional<SelectionFilter> parse(const resbuf* list, std::wstring& error);

    bool empty() const { return nodes_.empty(); }
    bool matches(const db::ObjectRecord& entity) const;

private:
    friend class FilterParser;

    struct Value {
        enum class Kind { Text, Real, Integer, Point, Name } kind = Kind::Text;
        std::wstring text;
        double real = 0.0;
        int64_t integer = 0;
        KcGePoint3d point;
        uint64_t handle = 0;  // Name: the handle of the named object (0: none)
    };

    // A string pattern with the results for the texts it has seen: filters test
    // the same few layer and type names over and over.
    struct TextMatcher {
        WildcardPattern pattern;
        std::unordered_map<std::string, bool, TextHash, std::equal_to<>> seen;
        bool matches(std::string_view utf8);
    };

    struct Node {
        enum class Kind { All, Any, ExactlyOne, Not, Item, ExtendedData } kind = Kind::All;
        std::vector<size_t> children;
        // Item
        int code = 0;
        std::array<Relation, 3> relations{Relation::Equal, Relation::Equal, Relation::Equal};
        bool perCoordinate = false;
        Value value;
        std::shared_ptr<TextMatcher> matcher;
        std::shared_ptr<std::vector<int8_t>> typeResults;  // group 0: -1 unknown, 0 no, 1 yes by type id
        // ExtendedData
        std::vector<WildcardPattern> applications;
    };

    bool evaluate(size_t node, EntityFacts& facts) const;
    bool itemMatches(const Node& node, EntityFacts& facts) const;
    bool textMatches(const Node& node, std::string_view text) const;
    bool tagMatches(const Node& node, const db::Tag& tag) const;

    std::vector<Node> nodes_;
    size_t root_ = 0;
};

}  // namespace korva::editor
