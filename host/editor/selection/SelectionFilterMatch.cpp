// Testing an entity against a parsed filter. An item matches when any value of
// its group in the entity's data list stands in the item's relation to the
// item's value; an entity without the group fails the item (except for "*").
#include <algorithm>
#include <cmath>
#include <cwctype>

#include "db/ObjectType.h"
#include "db/RecordTags.h"
#include "db/Utf8.h"
#include "editor/selection/EntityFacts.h"
#include "editor/selection/SelectionFilter.h"

namespace korva::editor {

namespace {

// Cached results of a pattern stop growing here (texts of a million entities).
constexpr size_t kMaxCachedTexts = 4096;

bool nearlyEqual(double a, double b) {
    return std::fabs(a - b) <= 1e-10 * std::max({1.0, std::fabs(a), std::fabs(b)});
}

bool compareNumbers(Relation relation, double value, double wanted) {
    switch (relation) {
        case Relation::Any: return true;
        case Relation::Equal: return nearlyEqual(value, wanted);
        case Relation::NotEqual: return !nearlyEqual(value, wanted);
        case Relation::Less: return value < wanted;
        case Relation::LessEqual: return value <= wanted || nearlyEqual(value, wanted);
        case Relation::Greater: return value > wanted;
        case Relation::GreaterEqual: return value >= wanted || nearlyEqual(value, wanted);
        case Relation::BitsAny:
        case Relation::BitsAll: {
            const auto bits = static_cast<int64_t>(value), mask = static_cast<int64_t>(wanted);
            return relation == Relation::BitsAny ? (bits & mask) != 0 : (bits & mask) == mask;
        }
    }
    return false;
}

int compareUpper(std::wstring_view a, std::wstring_view b) {
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        const auto x = std::towupper(static_cast<wint_t>(a[i])), y = std::towupper(static_cast<wint_t>(b[i]));
        if (x != y) return x < y ? -1 : 1;
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

}  // namespace

bool SelectionFilter::TextMatcher::matches(std::string_view utf8) {
    if (auto known = seen.find(utf8); known != seen.end()) return known->second;
    const bool result = pattern.matches(db::utf8ToWide(utf8));
    if (seen.size() < kMaxCachedTexts) seen.emplace(std::string(utf8), result);
    return result;
}

bool SelectionFilter::matches(const db::ObjectRecord& entity) const {
    if (nodes_.empty()) return true;
    EntityFacts facts(entity);
    return evaluate(root_, facts);
}

bool SelectionFilter::evaluate(size_t index, EntityFacts& facts) const {
    const Node& node = nodes_[index];
    switch (node.kind) {
        case Node::Kind::All:
            for (size_t child : node.children) {
                if (!evaluate(child, facts)) return false;
            }
            return true;
        case Node::Kind::Any:
            for (size_t child : node.children) {
                if (evaluate(child, facts)) return true;
            }
            return false;
        case Node::Kind::ExactlyOne: {
            int count = 0;
            for (size_t child : node.children) count += evaluate(child, facts) ? 1 : 0;
            return count == 1;
        }
        case Node::Kind::Not: return !evaluate(node.children.front(), facts);
        case Node::Kind::ExtendedData: {
            const auto applications = facts.extendedDataApplications();
            for (const WildcardPattern& pattern : node.applications) {
                bool found = false;
                for (std::string_view name : applications) {
                    if (pattern.matches(db::utf8ToWide(name))) {
                        found = true;
                        break;
                    }
                }
                if (!found) return false;
            }
            return true;
        }
        case Node::Kind::Item: return itemMatches(node, facts);
    }
    return false;
}

bool SelectionFilter::textMatches(const Node& node, std::string_view text) const {
    const Relation relation = node.relations[0];
    switch (relation) {
        case Relation::Any: return true;
        case Relation::Equal: return node.matcher->matches(text);
        case Relation::NotEqual: return !node.matcher->matches(text);
        default: {
            const int order = compareUpper(db::utf8ToWide(text), node.value.text);
            switch (relation) {
                case Relation::Less: return order < 0;
                case Relation::LessEqual: return order <= 0;
                case Relation::Greater: return order > 0;
                case Relation::GreaterEqual: return order >= 0;
                default: return false;
            }
        }
    }
}

bool SelectionFilter::tagMatches(const Node& node, const db::Tag& tag) const {
    const Value& wanted = node.value;
    switch (wanted.kind) {
        case Value::Kind::Text:
            if (tag.kind == db::TagKind::Handle) return textMatches(node, db::formatHandle(tag.handleValue()));
            return tag.kind == db::TagKind::String && textMatches(node, tag.text);
        case Value::Kind::Real:
        case Value::Kind::Integer: {
            const double target = wanted.kind == Value::Kind::Real ? wanted.real : static_cast<double>(wanted.integer);
            if (tag.kind == db::TagKind::Real) return compareNumbers(node.relations[0], tag.realValue(), target);
            if (tag.kind == db::TagKind::Integer) {
                return compareNumbers(node.relations[0], static_cast<double>(tag.integer), target);
            }
            return false;
        }
        case Value::Kind::Point: {
            if (!tag.isPoint()) return false;
            const KcGePoint3d p = tag.pointValue();
            const double have[3] = {p.x, p.y, p.z};
            const double want[3] = {wanted.point.x, wanted.point.y, wanted.point.z};
            if (!node.perCoordinate && (node.relations[0] == Relation::Equal || node.relations[0] == Relation::NotEqual)) {
                bool equal = true;
                for (int i = 0; i < 3; ++i) equal = equal && nearlyEqual(have[i], want[i]);
                return equal == (node.relations[0] == Relation::Equal);
            }
            for (size_t i = 0; i < 3; ++i) {
                if (!compareNumbers(node.relations[i], have[i], want[i])) return false;
            }
            return true;
        }
        case Value::Kind::Name: {
            if (tag.kind != db::TagKind::Handle) return false;
            const bool equal = wanted.handle != 0 && tag.handleValue() == wanted.handle;
            if (node.relations[0] == Relation::Any) return true;
            if (node.relations[0] == Relation::NotEqual) return !equal;
            return equal;
        }
    }
    return false;
}

bool SelectionFilter::itemMatches(const Node& node, EntityFacts& facts) const {
    if (node.relations[0] == Relation::Any && !node.perCoordinate) return true;
    if (node.value.kind == Value::Kind::Text) {
        // The fast paths: the type by its id, the layer from the common part,
        // application groups and stored texts straight from the tags.
        if (node.code == 0) {
            std::vector<int8_t>& known = *node.typeResults;
            const db::TypeId type = facts.entity().type;
            if (type >= known.size()) known.resize(type + 1u, -1);
            if (known[type] < 0) known[type] = textMatches(node, facts.typeName()) ? 1 : 0;
            return known[type] == 1;
        }
        if (node.code == 8) return textMatches(node, facts.common().layer);
        if (node.code == 102) {
            for (std::string_view group : facts.applicationGroups()) {
                if (textMatches(node, group)) return true;
            }
            return false;
        }
        if (auto texts = facts.storedTexts(node.code)) {
            for (std::string_view text : *texts) {
                if (textMatches(node, text)) return true;
            }
            return false;
        }
    } else if (node.code == 62 && node.value.kind == Value::Kind::Integer) {
        return compareNumbers(node.relations[0], facts.common().colour, static_cast<double>(node.value.integer));
    }
    for (const db::Tag& tag : facts.values(node.code)) {
        if (tagMatches(node, tag)) return true;
    }
    return false;
}

}  // namespace korva::editor
