// LISP values and result-buffer chains: argument lists both ways, association
// lists of DXF items both ways, and the refusal of malformed input.
#include <gtest/gtest.h>

#include "TestDrawing.h"
#include "db/ResultBuffers.h"
#include "editor/lisp/LispData.h"
#include "editor/lisp/LispReader.h"
#include "editor/lisp/LispResbuf.h"
#include "kcdbfuncs.h"

namespace korva {
namespace {

using editor::LispValue;
using Type = LispValue::Type;
namespace lisp = editor::lisp;

struct Chain {
    resbuf* head = nullptr;
    ~Chain() { db::releaseResbufs(head); }
};

LispValue datum(const std::wstring& source) {
    std::vector<LispValue> forms;
    std::wstring error;
    EXPECT_TRUE(lisp::readForms(source, forms, error)) << error;
    return forms.empty() ? LispValue() : forms.front();
}

std::vector<short> typesOf(const resbuf* chain) {
    std::vector<short> types;
    for (; chain; chain = chain->rbnext) types.push_back(chain->restype);
    return types;
}

// Values survive the trip to an argument chain and back unchanged.
TEST(LispResbuf, ArgumentChainsRoundTrip) {
    const int64_t name[2] = {7, 0x2A};
    std::vector<LispValue> values = {
        datum(L"12"),          datum(L"-40000"),     datum(L"3000000000"),   datum(L"2.5"),
        datum(L"\"text\""),    datum(L"nil"),        datum(L"T"),            datum(L"(1.0 2.0 3.0)"),
        datum(L"(1 2)"),       datum(L"(0 . \"LINE\")"), datum(L"((8 . \"A\") (1 (2.5 \"x\")))"),
        LispValue::ofName(Type::EntityName, name), LispValue::ofName(Type::SelectionSet, name),
        LispValue::ofPoint({1, 2, 0}, true),
    };
    std::wstring error;
    Chain chain{lisp::argumentsToResbufs(values, error)};
    ASSERT_TRUE(error.empty()) << error;
    LispValue back;
    ASSERT_TRUE(lisp::listFromResbufs(chain.head, back, error)) << error;
    ASSERT_EQ(back.items.size(), values.size());
    for (size_t i = 0; i < values.size(); ++i) {
        EXPECT_TRUE(lisp::equalValues(back.items[i], values[i])) << values[i].print() << " came back as " << back.items[i].print();
        EXPECT_EQ(back.items[i].type == Type::DottedPair, values[i].type == Type::DottedPair) << values[i].print();
    }
}

// Integers take the narrowest record; lists of reals travel as points, other lists as RTLB ... RTLE.
TEST(LispResbuf, ArgumentRecordTypes) {
    const struct {
        const wchar_t* source;
        std::vector<short> types;
    } cases[] = {
        {L"12", {RTSHORT}},
        {L"40000", {RTLONG}},
        {L"3000000000", {RTREAL}},
        {L"(1.0 2.0)", {RTPOINT}},
        {L"(1.0 2.0 3.0)", {RT3DPOINT}},
        {L"(1 2)", {RTLB, RTSHORT, RTSHORT, RTLE}},
        {L"(1.0 2.0 3.0 4.0)", {RTLB, RTREAL, RTREAL, RTREAL, RTREAL, RTLE}},
        {L"(8 . \"A\")", {RTLB, RTSHORT, RTDOTE, RTSTR, RTLE}},
        {L"((1))", {RTLB, RTLB, RTSHORT, RTLE, RTLE}},
        {L"nil", {RTNIL}},
    };
    for (const auto& c : cases) {
        std::wstring error;
        Chain chain{lisp::argumentsToResbufs({datum(c.source)}, error)};
        EXPECT_EQ(typesOf(chain.head), c.types) << c.source;
    }
}

// A chain a module builds by hand reads as nested lists and dotted pairs.
TEST(LispResbuf, HandBuiltChainsRead) {
    Chain chain{kcutBuildList(RTLB, RTLB, RTSHORT, 0, RTDOTE, RTSTR, L"LINE", RTLE, RTLB, RTSHORT, 10, RTREAL, 1.5,
                              RTLE, RTLE, RTENAME, std::array<int64_t, 2>{0, 0}.data(), 0)};
    ASSERT_NE(chain.head, nullptr);
    LispValue list;
    std::wstring error;
    ASSERT_TRUE(lisp::listFromResbufs(chain.head, list, error)) << error;
    EXPECT_EQ(list.print(), L"(((0 . \"LINE\") (10 1.5)) <Entity name: 0>)");
}

// Chains whose list marks do not pair up are refused with the reason.
TEST(LispResbuf, MalformedChainsAreRefused) {
    const struct {
        std::vector<short> types;
        const wchar_t* error;
    } cases[] = {
        {{RTLE}, L"a list end (RTLE) without its beginning"},
        {{RTLB, RTSHORT}, L"a result-buffer list without its end (RTLE)"},
        {{RTLB, RTDOTE, RTSHORT, RTLE}, L"a misplaced dot in a result-buffer list"},
        {{RTLB, RTSHORT, RTDOTE, RTLE}, L"a dotted pair without its second item"},
        {{RTDOTE}, L"a misplaced dot in a result-buffer list"},
        {{5099}, L"an unknown result type 5099"},
    };
    for (const auto& c : cases) {
        Chain chain;
        resbuf** tail = &chain.head;
        for (short type : c.types) {
            *tail = db::newResbuf(type);
            tail = &(*tail)->rbnext;
        }
        LispValue list;
        std::wstring error;
        EXPECT_FALSE(lisp::listFromResbufs(chain.head, list, error));
        EXPECT_EQ(error, c.error);
    }
}

// A filter list becomes one record per item, typed by its group code.
TEST(LispResbuf, FilterListsBecomeDxfRecords) {
    std::wstring error;
    Chain chain{lisp::dxfListToResbufs(
        datum(L"((-4 . \"<OR\") (0 . \"LINE\") (8 . \"WALLS\") (-4 . \"OR>\") (10 1.0 2.0) (62 . 1) (40 . 2) (90 . 70000) (-3 (\"APP\")))"),
        error)};
    ASSERT_TRUE(error.empty()) << error;
    EXPECT_EQ(typesOf(chain.head), (std::vector<short>{-4, 0, 8, -4, 10, 62, 40, 90, -3, 1001}));
    const resbuf* rb = chain.head;
    EXPECT_STREQ(rb->resval.rstring, L"<OR");
    rb = rb->rbnext;
    EXPECT_STREQ(rb->resval.rstring, L"LINE");
    rb = rb->rbnext->rbnext->rbnext;
    EXPECT_EQ(rb->resval.rpoint[0], 1.0);
    EXPECT_EQ(rb->resval.rpoint[1], 2.0);
    EXPECT_EQ(rb->resval.rpoint[2], 0.0);
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rint, 1);
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rreal, 2.0);
    rb = rb->rbnext;
    EXPECT_EQ(rb->resval.rlong, 70000);
    EXPECT_STREQ(rb->rbnext->rbnext->resval.rstring, L"APP");
}

// Items whose value does not fit their group code are refused, naming the item.
TEST(LispResbuf, BadDxfItemsAreRefused) {
    const struct {
        const wchar_t* source;
        const wchar_t* error;
    } cases[] = {
        {L"((62 . \"red\"))", L"bad DXF item: (62 . \"red\")"},
        {L"((0 \"LINE\"))", L"bad DXF item: (0 \"LINE\")"},
        {L"((62 . 40000))", L"bad DXF item: (62 . 40000)"},
        {L"((62 . 1.5))", L"bad DXF item: (62 . 1.5)"},
        {L"((10 1.0))", L"bad DXF item: (10 1.0)"},
        {L"((-1 . \"2A\"))", L"bad DXF item: (-1 . \"2A\")"},
        {L"((\"8\" . \"A\"))", L"bad DXF item: (\"8\" . \"A\")"},
        {L"((5000 . 1))", L"bad DXF group code: 5000"},
        {L"(8 . \"A\")", L"bad association list: (8 . \"A\")"},
        {L"((-3 (\"APP\" (8 . \"A\"))))", L"bad DXF item: (8 . \"A\")"},
    };
    for (const auto& c : cases) {
        std::wstring error;
        Chain chain{lisp::dxfListToResbufs(datum(c.source), error)};
        EXPECT_EQ(chain.head, nullptr) << c.source;
        EXPECT_EQ(error, c.error) << c.source;
    }
}

constexpr const char* kLineWithData =
    "  0\nLINE\n  5\nE1\n330\n1F\n100\nAcDbEntity\n  8\n0\n 62\n3\n100\nAcDbLine\n 10\n1.0\n 20\n2.0\n 30\n0.0\n"
    " 11\n4.0\n 21\n6.0\n 31\n0.0\n1001\nACAD\n1000\nnote\n1040\n1.5\n1070\n7\n";

// An entity's data list converts to an association list and back record for record.
TEST(LispResbuf, EntityListsRoundTrip) {
    test::WorkingDrawing drawing = test::WorkingDrawing::withEntities(kLineWithData);
    kcad_name line;
    drawing.name(L"E1", line);
    Chain applications{kcutBuildList(RTSTR, L"ACAD", 0)};
    Chain original{kcdbEntGetX(line, applications.head)};
    ASSERT_NE(original.head, nullptr);

    const LispValue list = lisp::dxfListFromResbufs(original.head);
    const LispValue* start = nullptr;
    for (const LispValue& item : list.items) {
        if (item.items[0].integer == 10) start = &item;
    }
    ASSERT_NE(start, nullptr);
    EXPECT_EQ(start->print(), L"(10 1.0 2.0 0.0)");
    EXPECT_EQ(list.items.front().items[1].type, Type::EntityName);
    EXPECT_EQ(list.items.back().print(), L"(-3 (\"ACAD\" (1000 . \"note\") (1040 . 1.5) (1070 . 7)))");

    std::wstring error;
    Chain back{lisp::dxfListToResbufs(list, error)};
    ASSERT_TRUE(error.empty()) << error;
    EXPECT_EQ(typesOf(back.head), typesOf(original.head));
    for (const resbuf *a = original.head, *b = back.head; a && b; a = a->rbnext, b = b->rbnext) {
        switch (db::itemTypeOf(a->restype)) {
            case db::ItemType::Text:
            case db::ItemType::HandleText: EXPECT_STREQ(a->resval.rstring, b->resval.rstring) << a->restype; break;
            case db::ItemType::Real: EXPECT_EQ(a->resval.rreal, b->resval.rreal) << a->restype; break;
            case db::ItemType::Short: EXPECT_EQ(a->resval.rint, b->resval.rint) << a->restype; break;
            case db::ItemType::Name: EXPECT_EQ(a->resval.rlname[1], b->resval.rlname[1]) << a->restype; break;
            case db::ItemType::Point:
                for (int i = 0; i < 3; ++i) EXPECT_EQ(a->resval.rpoint[i], b->resval.rpoint[i]) << a->restype;
                break;
            default: break;
        }
    }
    EXPECT_EQ(kcdbEntMod(back.head), RTNORM) << "the converted list is a valid entity list";
}

}  // namespace
}  // namespace korva
