// Reading a filter list into a tree of nodes: groups nest by their -4 items,
// a relational operator attaches to the item after it, and -3 takes the 1001
// items that follow it.
#include <cwctype>
#include <string>

#include "db/EntityNames.h"
#include "db/ResultBuffers.h"
#include "editor/selection/SelectionFilter.h"

namespace korva::editor {

namespace {

std::wstring upper(std::wstring_view text) {
    std::wstring out(text);
    for (wchar_t& c : out) c = static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c)));
    return out;
}

std::optional<Relation> relationOf(std::wstring_view op) {
    if (op == L"*") return Relation::Any;
    if (op == L"=") return Relation::Equal;
    if (op == L"!=" || op == L"/=" || op == L"<>") return Relation::NotEqual;
    if (op == L"<") return Relation::Less;
    if (op == L"<=") return Relation::LessEqual;
    if (op == L">") return Relation::Greater;
    if (op == L">=") return Relation::GreaterEqual;
    if (op == L"&") return Relation::BitsAny;
    if (op == L"&=") return Relation::BitsAll;
    return std::nullopt;
}

std::wstring_view textOf(const resbuf& item) { return item.resval.rstring ? item.resval.rstring : L""; }

}  // namespace

class FilterParser {
public:
    using Node = SelectionFilter::Node;

    FilterParser(SelectionFilter& filter, std::wstring& error) : filter_(filter), error_(error) {}

    bool parse(const resbuf* list) {
        for (const resbuf* rb = list; rb; rb = rb->rbnext) items_.push_back(rb);
        if (items_.empty()) return true;
        std::vector<size_t> children;
        if (!parseSequence(L"", children)) return false;
        filter_.root_ = add(Node::Kind::All, std::move(children));
        return true;
    }

private:
    size_t add(Node::Kind kind, std::vector<size_t> children) {
        Node node;
        node.kind = kind;
        node.children = std::move(children);
        filter_.nodes_.push_back(std::move(node));
        return filter_.nodes_.size() - 1;
    }

    bool fail(std::wstring reason) {
        error_ = std::move(reason);
        return false;
    }

    // Terms up to the closing operator (or the end of the list for the outermost sequence).
    bool parseSequence(const std::wstring& closing, std::vector<size_t>& out) {
        while (pos_ < items_.size()) {
            const resbuf& rb = *items_[pos_];
            if (rb.restype == -4) {
                const std::wstring op = upper(textOf(rb));
                if (op == L"AND>" || op == L"OR>" || op == L"XOR>" || op == L"NOT>") {
                    if (op != closing) return fail(L"unexpected \"" + op + L"\" in the filter");
                    ++pos_;
                    return true;
                }
            }
            size_t term = 0;
            if (!parseTerm(term)) return false;
            out.push_back(term);
        }
        if (!closing.empty()) return fail(L"the filter lacks \"" + closing + L"\"");
        return true;
    }

    bool parseTerm(size_t& out) {
        const resbuf& rb = *items_[pos_];
        if (rb.restype == -3) {
            ++pos_;
            Node node;
            node.kind = Node::Kind::ExtendedData;
            while (pos_ < items_.size() && items_[pos_]->restype == 1001) {
                node.applications.emplace_back(textOf(*items_[pos_]), true);
                ++pos_;
            }
            if (node.applications.empty()) return fail(L"-3 without application names in the filter");
            filter_.nodes_.push_back(std::move(node));
            out = filter_.nodes_.size() - 1;
            return true;
        }
        if (rb.restype != -4) return parseItem(Node{}, out);
        const std::wstring op = upper(textOf(rb));
        ++pos_;
        static const struct {
            const wchar_t* open;
            const wchar_t* close;
            Node::Kind kind;
        } groups[] = {{L"<AND", L"AND>", Node::Kind::All},
                      {L"<OR", L"OR>", Node::Kind::Any},
                      {L"<XOR", L"XOR>", Node::Kind::ExactlyOne},
                      {L"<NOT", L"NOT>", Node::Kind::Not}};
        for (const auto& group : groups) {
            if (op != group.open) continue;
            std::vector<size_t> children;
            if (!parseSequence(group.close, children)) return false;
            if (group.kind == Node::Kind::Not && children.size() != 1) return fail(L"\"<NOT\" takes one item");
            if (group.kind == Node::Kind::ExactlyOne && children.size() != 2) return fail(L"\"<XOR\" takes two items");
            if (children.empty()) return fail(L"an empty \"" + op + L"\" group in the filter");
            out = add(group.kind, std::move(children));
            return true;
        }
        // A relational operator for the next item: one, or one per coordinate.
        Node item;
        const size_t comma = op.find(L',');
        if (comma == std::wstring::npos) {
            const auto relation = relationOf(op);
            if (!relation) return fail(L"unknown filter operator \"" + op + L"\"");
            item.relations = {*relation, *relation, *relation};
        } else {
            std::wstring_view rest = op;
            for (int i = 0; i < 3; ++i) {
                const size_t at = rest.find(L',');
                const auto relation = relationOf(rest.substr(0, at));
                if (!relation || (i < 2 && at == std::wstring_view::npos) || (i == 2 && at != std::wstring_view::npos)) {
                    return fail(L"unknown filter operator \"" + op + L"\"");
                }
                item.relations[static_cast<size_t>(i)] = *relation;
                if (at != std::wstring_view::npos) rest.remove_prefix(at + 1);
            }
            item.perCoordinate = true;
        }
        if (pos_ >= items_.size() || items_[pos_]->restype == -4 || items_[pos_]->restype == -3) {
            return fail(L"the operator \"" + op + L"\" is not followed by an item");
        }
        return parseItem(std::move(item), out);
    }

    bool parseItem(Node node, size_t& out) {
        const resbuf& rb = *items_[pos_++];
        node.kind = Node::Kind::Item;
        node.code = rb.restype;
        SelectionFilter::Value& value = node.value;
        using Kind = SelectionFilter::Value::Kind;
        switch (db::itemTypeOf(rb.restype)) {
            case db::ItemType::Text:
            case db::ItemType::HandleText:
                value.kind = Kind::Text;
                value.text = textOf(rb);
                node.matcher = std::make_shared<SelectionFilter::TextMatcher>();
                node.matcher->pattern = WildcardPattern(value.text, true);
                if (node.code == 0) node.typeResults = std::make_shared<std::vector<int8_t>>();
                break;
            case db::ItemType::Real: value.kind = Kind::Real; value.real = rb.resval.rreal; break;
            case db::ItemType::Short: value.kind = Kind::Integer; value.integer = rb.resval.rint; break;
            case db::ItemType::Long: value.kind = Kind::Integer; value.integer = rb.resval.rlong; break;
            case db::ItemType::Int64: value.kind = Kind::Integer; value.integer = rb.resval.mnInt64; break;
            case db::ItemType::Point:
                value.kind = Kind::Point;
                value.point = {rb.resval.rpoint[0], rb.resval.rpoint[1], rb.resval.rpoint[2]};
                break;
            case db::ItemType::Name: {
                value.kind = Kind::Name;
                const db::ObjectRecord* record = db::recordOf(rb.resval.rlname);
                value.handle = record ? record->handle : 0;
                break;
            }
            default: return fail(L"the filter cannot test group " + std::to_wstring(rb.restype));
        }
        if (value.kind == Kind::Point || !node.perCoordinate) {
            filter_.nodes_.push_back(std::move(node));
            out = filter_.nodes_.size() - 1;
            return true;
        }
        return fail(L"per-coordinate operators need a point item");
    }

    SelectionFilter& filter_;
    std::wstring& error_;
    std::vector<const resbuf*> items_;
    size_t pos_ = 0;
};

std::optional<SelectionFilter> SelectionFilter::parse(const resbuf* list, std::wstring& error) {
    SelectionFilter filter;
    FilterParser parser(filter, error);
    if (!parser.parse(list)) return std::nullopt;
    return filter;
}

}  // namespace korva::editor
