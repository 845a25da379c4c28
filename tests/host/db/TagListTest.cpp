// Packed tag lists keep every kind of value exactly, in order.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "db/TagList.h"

namespace korva::db {
namespace {

TEST(TagList, EveryKindOfValueSurvivesPackingInOrder) {
    const std::string longText(300, 'x');  // lengths above 127 need a two-byte length
    const std::vector<Tag> tags{
        Tag::string(1, "abc"),
        Tag::string(1, ""),
        Tag::string(3, longText),
        Tag::real(40, -0.125),
        Tag::real(40, std::numeric_limits<double>::denorm_min()),
        Tag::integerValue(90, -2147483648LL),
        Tag::integerValue(160, 9007199254740993LL),
        Tag::handle(5, 0xFFFFFFFFFFFFFFFFULL),
        Tag::point(10, {1.5, -2.5, 1e300}),
        Tag::point2d(10, 3.0, 4.0),
        Tag::binary(310, std::string("\0\xff\x01", 3)),
    };
    const TagList list = TagList::encode(tags);
    EXPECT_EQ(list.count(), tags.size());
    EXPECT_EQ(list.decode(), tags);

    size_t i = 0;
    for (TagRef ref : list) {
        EXPECT_EQ(ref.code(), tags[i].code) << i;
        EXPECT_EQ(ref.kind(), tags[i].kind) << i;
        ++i;
    }
    EXPECT_EQ(i, tags.size());
}

TEST(TagList, FindReturnsTheFirstTagOfACode) {
    const TagList list = TagList::encode(std::vector<Tag>{Tag::string(8, "A"), Tag::string(8, "B"), Tag::real(40, 2.0)});
    TagRef found;
    ASSERT_TRUE(list.find(8, found));
    EXPECT_EQ(found.text(), "A");
    ASSERT_TRUE(list.find(40, found));
    EXPECT_DOUBLE_EQ(found.real(), 2.0);
    EXPECT_FALSE(list.find(62, found));
}

TEST(TagList, PointsDifferFromTheirTwoDimensionalForm) {
    const TagList a = TagList::encode(std::vector<Tag>{Tag::point(10, {1, 2, 0})});
    const TagList b = TagList::encode(std::vector<Tag>{Tag::point2d(10, 1, 2)});
    EXPECT_FALSE(a == b);  // a 10/20 pair and a 10/20/30 triple are written differently
    EXPECT_EQ(a.at(0).point(), b.at(0).point());
}

TEST(TagList, CopiesAreIndependent) {
    TagList original = TagList::encode(std::vector<Tag>{Tag::string(1, "one")});
    TagList copy = original;
    original = TagList::encode(std::vector<Tag>{Tag::string(1, "two")});
    EXPECT_EQ(copy.at(0).text(), "one");
    EXPECT_EQ(original.at(0).text(), "two");
}

}  // namespace
}  // namespace korva::db
