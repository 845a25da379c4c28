// Typed setters change exactly their own groups: each case loads a real DXF
// snippet (modern with subclass markers, or R12 without), opens the entity for
// write, calls one setter and diffs the record's tags before and after. The
// same cases check that a read-open entity refuses the setter and that the
// edited drawing saves and reloads to the same tags.
#include <cmath>
#include <functional>

#include "../fonts/FontExpectations.h"
#include "EntityTestSupport.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "kcdbents.h"

namespace korva::test {
namespace {

constexpr double kPi = 3.14159265358979323846;

using Apply = std::function<Kcad::ErrorStatus(KcDbEntity*)>;
using Check = std::function<void(KcDbEntity*, const db::ObjectRecord&)>;

// A setter call on the entity viewed as class T.
template <class T, class F>
Apply as(F call) {
    return [call](KcDbEntity* entity) {
        T* typed = T::cast(entity);
        return typed ? call(*typed) : Kcad::eNotThatKindOfClass;
    };
}

template <class T, class F>
Check see(F check) {
    return [check](KcDbEntity* entity, const db::ObjectRecord& record) {
        T* typed = T::cast(entity);
        ASSERT_NE(typed, nullptr);
        check(*typed, record);
    };
}

double stored(const db::ObjectRecord& record, int code) {
    db::TagRef tag;
    return db::findField(record, {}, code, tag) ? tag.real() : std::nan("");
}

KcGePoint3d storedPoint(const db::ObjectRecord& record, int code) {
    db::TagRef tag;
    return db::findField(record, {}, code, tag) ? tag.point() : KcGePoint3d(-999, -999, -999);
}

// The centre of a text's box in the template's Standard style (an SHX font: the fallback font).
double boxCentre(const char* text, double height) {
    const db::TextBox box = FontExpectation(kFallbackFamily).box(text, height);
    return (box.left + box.right) / 2.0;
}

void expectPoint(const KcGePoint3d& actual, const KcGePoint3d& expected) {
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
    EXPECT_NEAR(actual.z, expected.z, 1e-9);
}

struct SetterCase {
    const char* name;
    std::string dxf;
    db::Handle handle;
    std::set<int> owned;
    Apply apply;
    Check check;
};

void PrintTo(const SetterCase& c, std::ostream* out) { *out << c.name; }

// --- snippets ------------------------------------------------------------------

std::string modern(const std::string& entities) {
    DxfParts parts{entities};
    return modernDxf(addBlock(parts, "BLK", "90", "91", "92"));
}

const std::string kR12Blocks = dxfTags({{0, "BLOCK"}, {8, "0"}, {2, "BLK"}, {70, "0"}, {10, "0.0"}, {20, "0.0"},
                                        {30, "0.0"}}) +
                               dxfTags({{0, "ENDBLK"}, {8, "0"}});

std::string line(std::string_view handle) {
    return modernHead("LINE", handle, "AcDbLine") +
           dxfTags({{10, "1.0"}, {20, "2.0"}, {30, "0.0"}, {11, "4.0"}, {21, "6.0"}, {31, "0.0"}});
}

std::string leftText(std::string_view handle) {
    return modernHead("TEXT", handle, "AcDbText") +
           dxfTags({{10, "2.0"}, {20, "3.0"}, {30, "0.0"}, {40, "1.0"}, {1, "AB"}, {100, "AcDbText"}});
}

std::string mtext(std::string_view handle, bool withRotation) {
    std::string text = modernHead("MTEXT", handle, "AcDbMText") +
                       dxfTags({{10, "1.0"}, {20, "1.0"}, {30, "0.0"}, {40, "2.5"}, {41, "0.0"}, {71, "1"},
                                {72, "5"}, {1, "short"}, {7, "Standard"}, {11, "1.0"}, {21, "0.0"}, {31, "0.0"},
                                {42, "12.0"}, {43, "2.5"}});
    if (withRotation) text += dxfTags({{50, "0.0"}});
    return text + dxfTags({{73, "1"}, {44, "1.0"}});
}

std::string insert(std::string_view handle) {
    return modernHead("INSERT", handle, "AcDbBlockReference") + dxfTags({{2, "BLK"}, {10, "1.0"}, {20, "1.0"}, {30, "0.0"}});
}

std::string lwpolyline(std::string_view handle) {
    return modernHead("LWPOLYLINE", handle, "AcDbPolyline") +
           dxfTags({{90, "3"}, {70, "0"}, {43, "0.0"}, {10, "0.0"}, {20, "0.0"}, {10, "1.0"}, {20, "0.0"}, {10, "1.0"},
                    {20, "1.0"}});
}

std::vector<SetterCase> setterCases() {
    std::vector<SetterCase> cases;
    cases.push_back({"LineStartPoint", modern(line("100")), 0x100, {10},
                     as<KcDbLine>([](KcDbLine& e) { return e.setStartPoint({7, 8, 9}); }),
                     see<KcDbLine>([](KcDbLine& e, const db::ObjectRecord&) { expectPoint(e.startPoint(), {7, 8, 9}); })});
    cases.push_back({"LineThicknessIsInserted", modern(line("100")), 0x100, {39},
                     as<KcDbLine>([](KcDbLine& e) { return e.setThickness(2.5); }),
                     see<KcDbLine>([](KcDbLine& e, const db::ObjectRecord&) { EXPECT_EQ(e.thickness(), 2.5); })});
    cases.push_back({"CircleRadius",
                     modern(modernHead("CIRCLE", "101", "AcDbCircle") +
                            dxfTags({{10, "5.0"}, {20, "5.0"}, {30, "0.0"}, {40, "2.0"}})),
                     0x101, {40}, as<KcDbCircle>([](KcDbCircle& e) { return e.setRadius(3.0); }),
                     see<KcDbCircle>([](KcDbCircle& e, const db::ObjectRecord&) { EXPECT_EQ(e.radius(), 3.0); })});
    cases.push_back({"ArcEndAngleIsStoredInDegrees",
                     modern(modernHead("ARC", "102", "AcDbCircle") +
                            dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"}, {100, "AcDbArc"}, {50, "0.0"},
                                     {51, "90.0"}})),
                     0x102, {51}, as<KcDbArc>([](KcDbArc& e) { return e.setEndAngle(kPi); }),
                     see<KcDbArc>([](KcDbArc& e, const db::ObjectRecord& r) {
                         EXPECT_NEAR(e.endAngle(), kPi, 1e-12);
                         EXPECT_NEAR(stored(r, 51), 180.0, 1e-9);
                     })});
    cases.push_back({"TextStringOfALeftText", modern(leftText("103")), 0x103, {1},
                     as<KcDbText>([](KcDbText& e) { return e.setTextString(L"W\u00f6rld"); }),
                     see<KcDbText>([](KcDbText& e, const db::ObjectRecord&) {
                         EXPECT_STREQ(e.textStringConst(), L"W\u00f6rld");
                     })});
    // Centred at (10, 0): the insertion point lies half the box of "ABCD" at height 4 to the left.
    cases.push_back({"CentredTextHeightMovesTheInsertionPoint",
                     modern(modernHead("TEXT", "104", "AcDbText") +
                            dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "2.0"}, {1, "ABCD"}, {72, "1"},
                                     {11, "10.0"}, {21, "0.0"}, {31, "0.0"}, {100, "AcDbText"}})),
                     0x104, {40, 10}, as<KcDbText>([](KcDbText& e) { return e.setHeight(4.0); }),
                     see<KcDbText>([](KcDbText& e, const db::ObjectRecord&) {
                         expectPoint(e.position(), {10.0 - boxCentre("ABCD", 4.0), 0, 0});
                         expectPoint(e.alignmentPoint(), {10, 0, 0});
                     })});
    // Centring "AB" at height 1 keeps the text: the alignment point goes to the centre of its box.
    cases.push_back({"LeftTextSwitchedToCentreKeepsItsPlace", modern(leftText("105")), 0x105, {72, 11},
                     as<KcDbText>([](KcDbText& e) { return e.setHorizontalMode(KcDb::kTextCenter); }),
                     see<KcDbText>([](KcDbText& e, const db::ObjectRecord&) {
                         expectPoint(e.position(), {2, 3, 0});
                         expectPoint(e.alignmentPoint(), {2.0 + boxCentre("AB", 1.0), 3, 0});
                     })});
    cases.push_back({"TextVerticalModeGoesAfterTheSecondMarker", modern(leftText("106")), 0x106, {73, 11},
                     as<KcDbText>([](KcDbText& e) { return e.setVerticalMode(KcDb::kTextTop); }),
                     see<KcDbText>([](KcDbText& e, const db::ObjectRecord& r) {
                         EXPECT_EQ(e.verticalMode(), KcDb::kTextTop);
                         expectPoint(e.alignmentPoint(), {2, 4, 0});
                         const std::vector<db::Tag> tags = r.tags.decode();
                         ASSERT_GE(tags.size(), 2u);
                         EXPECT_EQ(tags.back().code, 73);
                         EXPECT_EQ(tags[tags.size() - 2].text, "AcDbText");
                     })});
    cases.push_back({"TextMirrorFlag", modern(leftText("107")), 0x107, {71},
                     as<KcDbText>([](KcDbText& e) { return e.mirrorInX(true); }),
                     see<KcDbText>([](KcDbText& e, const db::ObjectRecord& r) {
                         EXPECT_TRUE(e.isMirroredInX());
                         EXPECT_FALSE(e.isMirroredInY());
                         EXPECT_EQ(stored(r, 71), 2.0);
                     })});
    cases.push_back({"AttributeDefinitionPrompt",
                     modern(modernHead("ATTDEF", "108", "AcDbText") +
                            dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"}, {1, "def"},
                                     {100, "AcDbAttributeDefinition"}, {280, "0"}, {3, "Enter"}, {2, "TAG1"},
                                     {70, "0"}, {280, "1"}})),
                     0x108, {3}, as<KcDbAttributeDefinition>([](KcDbAttributeDefinition& e) { return e.setPrompt(L"Which?"); }),
                     see<KcDbAttributeDefinition>([](KcDbAttributeDefinition& e, const db::ObjectRecord&) {
                         EXPECT_STREQ(e.promptConst(), L"Which?");
                         EXPECT_TRUE(e.lockPositionInBlock());
                     })});
    // "v" centred and middle at (5, 0): half its box to the left, half the height down.
    cases.push_back({"AttributeVerticalModeIsGroup74",
                     modern(modernHead("INSERT", "110", "AcDbBlockReference") +
                            dxfTags({{66, "1"}, {2, "BLK"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}}) +
                            dxfTags({{0, "ATTRIB"}, {5, "111"}, {330, "110"}, {100, "AcDbEntity"}, {8, "0"},
                                     {100, "AcDbText"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"}, {1, "v"},
                                     {72, "1"}, {11, "5.0"}, {21, "0.0"}, {31, "0.0"}, {100, "AcDbAttribute"},
                                     {280, "0"}, {2, "TAG"}, {70, "0"}}) +
                            dxfTags({{0, "SEQEND"}, {5, "112"}, {330, "110"}, {100, "AcDbEntity"}, {8, "0"}})),
                     0x111, {74, 10}, as<KcDbAttribute>([](KcDbAttribute& e) { return e.setVerticalMode(KcDb::kTextVertMid); }),
                     see<KcDbAttribute>([](KcDbAttribute& e, const db::ObjectRecord& r) {
                         EXPECT_EQ(stored(r, 74), 2.0);
                         expectPoint(e.position(), {5.0 - boxCentre("v", 1.0), -0.5, 0});
                     })});
    cases.push_back({"MTextContentsInChunksOf250", modern(mtext("113", false)), 0x113, {3, 1},
                     as<KcDbMText>([](KcDbMText& e) { return e.setContents(std::wstring(600, L'x').c_str()); }),
                     see<KcDbMText>([](KcDbMText& e, const db::ObjectRecord& r) {
                         EXPECT_EQ(std::wstring(e.contentsConst()), std::wstring(600, L'x'));
                         const auto chunks = db::fieldsOf(r, "AcDbMText", 3);
                         ASSERT_EQ(chunks.size(), 2u);
                         EXPECT_EQ(chunks[0].text().size(), 250u);
                         EXPECT_EQ(db::fieldText(r, "AcDbMText", 1).size(), 100u);
                     })});
    cases.push_back({"MTextRotationRewritesTheDirection", modern(mtext("114", true)), 0x114, {11, 50},
                     as<KcDbMText>([](KcDbMText& e) { return e.setRotation(kPi / 2); }),
                     see<KcDbMText>([](KcDbMText& e, const db::ObjectRecord& r) {
                         const KcGeVector3d d = e.direction();
                         expectPoint({d.x, d.y, d.z}, {0, 1, 0});
                         EXPECT_NEAR(stored(r, 50), kPi / 2, 1e-12);  // MTEXT 50 is radians in the file too
                     })});
    cases.push_back({"InsertRotationInDegrees", modern(insert("115")), 0x115, {50},
                     as<KcDbBlockReference>([](KcDbBlockReference& e) { return e.setRotation(kPi / 6); }),
                     see<KcDbBlockReference>([](KcDbBlockReference& e, const db::ObjectRecord& r) {
                         EXPECT_NEAR(e.rotation(), kPi / 6, 1e-12);
                         EXPECT_NEAR(stored(r, 50), 30.0, 1e-9);
                     })});
    cases.push_back({"InsertScaleLeavesAnAbsentOneAbsent", modern(insert("115")), 0x115, {41},
                     as<KcDbBlockReference>([](KcDbBlockReference& e) { return e.setScaleFactors({2, 1, 1}); }),
                     see<KcDbBlockReference>([](KcDbBlockReference& e, const db::ObjectRecord&) {
                         EXPECT_EQ(e.scaleFactors(), KcGeScale3d(2, 1, 1));
                     })});
    cases.push_back({"PolylineVertexAddedKeepsTheCount", modern(lwpolyline("116")), 0x116, {90, 10, 42},
                     as<KcDbPolyline>([](KcDbPolyline& e) { return e.addVertexAt(1, {0.5, -0.5}, 0.25); }),
                     see<KcDbPolyline>([](KcDbPolyline& e, const db::ObjectRecord& r) {
                         EXPECT_EQ(e.numVerts(), 4u);
                         EXPECT_EQ(stored(r, 90), 4.0);
                         KcGePoint2d p;
                         ASSERT_EQ(e.getPointAt(1, p), Kcad::eOk);
                         EXPECT_EQ(p, KcGePoint2d(0.5, -0.5));
                         double bulge = 0;
                         ASSERT_EQ(e.getBulgeAt(1, bulge), Kcad::eOk);
                         EXPECT_EQ(bulge, 0.25);
                         ASSERT_EQ(e.getBulgeAt(2, bulge), Kcad::eOk);
                         EXPECT_EQ(bulge, 0.0);
                     })});
    cases.push_back({"PolylineVertexRemovedKeepsTheCount", modern(lwpolyline("116")), 0x116, {90, 10},
                     as<KcDbPolyline>([](KcDbPolyline& e) { return e.removeVertexAt(0); }),
                     see<KcDbPolyline>([](KcDbPolyline& e, const db::ObjectRecord& r) {
                         EXPECT_EQ(e.numVerts(), 2u);
                         EXPECT_EQ(stored(r, 90), 2.0);
                         KcGePoint2d p;
                         ASSERT_EQ(e.getPointAt(0, p), Kcad::eOk);
                         EXPECT_EQ(p, KcGePoint2d(1, 0));
                     })});
    cases.push_back({"PolylineClosed", modern(lwpolyline("116")), 0x116, {70},
                     as<KcDbPolyline>([](KcDbPolyline& e) { return e.setClosed(true); }),
                     see<KcDbPolyline>([](KcDbPolyline& e, const db::ObjectRecord&) { EXPECT_TRUE(e.isClosed()); })});
    cases.push_back({"SolidCorner",
                     modern(modernHead("SOLID", "117", "AcDbTrace") +
                            dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {11, "1.0"}, {21, "0.0"}, {31, "0.0"},
                                     {12, "0.0"}, {22, "1.0"}, {32, "0.0"}, {13, "1.0"}, {23, "1.0"}, {33, "0.0"}})),
                     0x117, {13}, as<KcDbSolid>([](KcDbSolid& e) { return e.setPointAt(3, {9, 9, 0}); }),
                     see<KcDbSolid>([](KcDbSolid& e, const db::ObjectRecord&) {
                         KcGePoint3d p;
                         ASSERT_EQ(e.getPointAt(3, p), Kcad::eOk);
                         expectPoint(p, {9, 9, 0});
                     })});
    cases.push_back({"FaceEdgeInvisible",
                     modern(modernHead("3DFACE", "118", "AcDbFace") +
                            dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {11, "1.0"}, {21, "0.0"}, {31, "0.0"},
                                     {12, "1.0"}, {22, "1.0"}, {32, "1.0"}, {13, "0.0"}, {23, "1.0"}, {33, "1.0"}})),
                     0x118, {70}, as<KcDbFace>([](KcDbFace& e) { return e.makeEdgeInvisibleAt(2); }),
                     see<KcDbFace>([](KcDbFace& e, const db::ObjectRecord& r) {
                         bool visible = true;
                         ASSERT_EQ(e.isEdgeVisibleAt(2, visible), Kcad::eOk);
                         EXPECT_FALSE(visible);
                         EXPECT_EQ(stored(r, 70), 4.0);
                     })});
    cases.push_back({"EllipseSetRewritesItsGeometry",
                     modern(modernHead("ELLIPSE", "119", "AcDbEllipse") +
                            dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {11, "2.0"}, {21, "0.0"}, {31, "0.0"},
                                     {210, "0.0"}, {220, "0.0"}, {230, "1.0"}, {40, "0.5"}, {41, "0.0"},
                                     {42, "6.283185307179586"}})),
                     0x119, {10, 11, 210, 40, 41, 42},
                     as<KcDbEllipse>([](KcDbEllipse& e) { return e.set({1, 1, 0}, {0, 0, 1}, {0, 3, 0}, 0.25, 0.1, 3.0); }),
                     see<KcDbEllipse>([](KcDbEllipse& e, const db::ObjectRecord&) {
                         const KcGeVector3d minor = e.minorAxis();
                         expectPoint({minor.x, minor.y, minor.z}, {-0.75, 0, 0});
                         EXPECT_EQ(e.startAngle(), 0.1);
                     })});
    cases.push_back({"RayDirectionIsStoredAsAUnitVector",
                     modern(modernHead("RAY", "11A", "AcDbRay") +
                            dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {11, "1.0"}, {21, "0.0"}, {31, "0.0"}})),
                     0x11A, {11}, as<KcDbRay>([](KcDbRay& e) { return e.setUnitDir({0, 3, 4}); }),
                     see<KcDbRay>([](KcDbRay& e, const db::ObjectRecord&) {
                         const KcGeVector3d d = e.unitDir();
                         expectPoint({d.x, d.y, d.z}, {0, 0.6, 0.8});
                     })});
    cases.push_back({"WipeoutDisplayFlag",
                     modern(modernHead("WIPEOUT", "11B", "AcDbWipeout") +
                            dxfTags({{90, "0"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {11, "10.0"}, {21, "0.0"},
                                     {31, "0.0"}, {12, "0.0"}, {22, "10.0"}, {32, "0.0"}, {13, "1.0"}, {23, "1.0"},
                                     {340, "0"}, {70, "7"}, {280, "1"}, {281, "50"}, {282, "50"}, {283, "0"},
                                     {71, "1"}, {91, "2"}, {14, "-0.5"}, {24, "-0.5"}, {14, "0.5"}, {24, "0.5"}})),
                     0x11B, {70}, as<KcDbWipeout>([](KcDbWipeout& e) { return e.setDisplayOpt(KcDbRasterImage::kTransparent, true); }),
                     see<KcDbWipeout>([](KcDbWipeout& e, const db::ObjectRecord& r) {
                         EXPECT_TRUE(e.isSetDisplayOpt(KcDbRasterImage::kTransparent));
                         EXPECT_EQ(stored(r, 70), 15.0);
                     })});
    cases.push_back({"ToleranceTextColourOverride",
                     modern(modernHead("TOLERANCE", "11D", "AcDbFcf") +
                            dxfTags({{3, "Standard"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {1, "{\\Fgdt;j}%%v"},
                                     {11, "1.0"}, {21, "0.0"}, {31, "0.0"}})),
                     0x11D, {1001, 1000, 1002, 1070}, as<KcDbFcf>([](KcDbFcf& e) {
                         KcCmColor green;
                         green.setColorIndex(3);
                         return e.setDimclrt(green);
                     }),
                     see<KcDbFcf>([](KcDbFcf& e, const db::ObjectRecord& r) {
                         const std::vector<db::Tag> xdata = db::extendedData(r.tags);
                         ASSERT_EQ(xdata.size(), 6u);  // 1001 ACAD, 1000 DSTYLE, {, 1070 178, 1070 3, }
                         EXPECT_EQ(xdata[3].integer, 178);
                         EXPECT_EQ(xdata[4].integer, 3);
                         EXPECT_EQ(e.dimtxt(), 2.5);  // the template's Standard style
                     })});
    cases.push_back({"LeaderColourOverrideJoinsTheExistingOnes",
                     modern(modernHead("LEADER", "11E", "AcDbLeader") +
                            dxfTags({{3, "Standard"}, {71, "1"}, {72, "0"}, {73, "3"}, {74, "1"}, {75, "0"},
                                     {40, "0.0"}, {41, "0.0"}, {76, "2"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"},
                                     {10, "5.0"}, {20, "5.0"}, {30, "0.0"}, {1001, "ACAD"}, {1000, "DSTYLE"},
                                     {1002, "{"}, {1070, "41"}, {1040, "5.0"}, {1002, "}"}})),
                     0x11E, {1070}, as<KcDbLeader>([](KcDbLeader& e) {
                         KcCmColor red;
                         red.setColorIndex(1);
                         return e.setDimclrd(red);
                     }),
                     see<KcDbLeader>([](KcDbLeader& e, const db::ObjectRecord&) {
                         EXPECT_EQ(e.dimasz(), 5.0);
                         EXPECT_EQ(e.numVertices(), 2);
                     })});
    // R12: no subclass markers, no owner groups.
    cases.push_back({"R12LineEndPoint",
                     r12Dxf(dxfTags({{0, "LINE"}, {5, "20"}, {8, "0"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"},
                                     {11, "1.0"}, {21, "1.0"}, {31, "0.0"}})),
                     0x20, {11}, as<KcDbLine>([](KcDbLine& e) { return e.setEndPoint({5, 5, 5}); }),
                     see<KcDbLine>([](KcDbLine& e, const db::ObjectRecord&) { expectPoint(e.endPoint(), {5, 5, 5}); })});
    cases.push_back({"R12TextRotationIsInserted",
                     r12Dxf(dxfTags({{0, "TEXT"}, {5, "21"}, {8, "0"}, {10, "1.0"}, {20, "1.0"}, {30, "0.0"},
                                     {40, "1.0"}, {1, "R12"}})),
                     0x21, {50}, as<KcDbText>([](KcDbText& e) { return e.setRotation(kPi / 2); }),
                     see<KcDbText>([](KcDbText& e, const db::ObjectRecord& r) {
                         EXPECT_NEAR(e.rotation(), kPi / 2, 1e-12);
                         EXPECT_NEAR(stored(r, 50), 90.0, 1e-9);
                     })});
    cases.push_back({"R12CircleNormalKeepsTheCentre",
                     r12Dxf(dxfTags({{0, "CIRCLE"}, {5, "22"}, {8, "0"}, {10, "1.0"}, {20, "2.0"}, {30, "0.0"},
                                     {40, "1.0"}})),
                     0x22, {10, 210}, as<KcDbCircle>([](KcDbCircle& e) { return e.setNormal({0, 0, -1}); }),
                     see<KcDbCircle>([](KcDbCircle& e, const db::ObjectRecord& r) {
                         expectPoint(e.center(), {1, 2, 0});
                         expectPoint(storedPoint(r, 10), {-1, 2, 0});  // the OCS of -z mirrors x
                     })});
    cases.push_back({"R12InsertPosition",
                     r12Dxf(dxfTags({{0, "INSERT"}, {5, "23"}, {8, "0"}, {2, "BLK"}, {10, "0.0"}, {20, "0.0"},
                                     {30, "0.0"}}),
                            kR12Blocks),
                     0x23, {10}, as<KcDbBlockReference>([](KcDbBlockReference& e) { return e.setPosition({3, 4, 0}); }),
                     see<KcDbBlockReference>([](KcDbBlockReference& e, const db::ObjectRecord&) {
                         expectPoint(e.position(), {3, 4, 0});
                     })});
    cases.push_back({"R12AttributeTag",
                     r12Dxf(dxfTags({{0, "INSERT"}, {5, "24"}, {8, "0"}, {66, "1"}, {2, "BLK"}, {10, "0.0"},
                                     {20, "0.0"}, {30, "0.0"}}) +
                                dxfTags({{0, "ATTRIB"}, {5, "25"}, {8, "0"}, {10, "0.0"}, {20, "0.0"}, {30, "0.0"},
                                         {40, "1.0"}, {1, "value"}, {2, "TAG"}, {70, "0"}}) +
                                dxfTags({{0, "SEQEND"}, {5, "26"}, {8, "0"}}),
                            kR12Blocks),
                     0x25, {2}, as<KcDbAttribute>([](KcDbAttribute& e) { return e.setTag(L"NEWTAG"); }),
                     see<KcDbAttribute>([](KcDbAttribute& e, const db::ObjectRecord&) {
                         EXPECT_STREQ(e.tagConst(), L"NEWTAG");
                     })});
    return cases;
}

class EntitySetterTags : public ::testing::TestWithParam<SetterCase> {};

// The setter changes its own groups and nothing else; the getter reads the new value.
TEST_P(EntitySetterTags, ChangesOnlyItsOwnGroups) {
    const SetterCase& c = GetParam();
    auto database = loadDatabase(c.dxf);
    ASSERT_TRUE(database);
    db::ObjectRecord& record = recordOf(*database, c.handle);
    const std::vector<db::Tag> before = record.tags.decode();
    {
        Opened<KcDbEntity> entity(*database, c.handle, KcDb::kForWrite);
        ASSERT_TRUE(entity) << entity.status();
        ASSERT_EQ(c.apply(entity.get()), Kcad::eOk);
        c.check(entity.get(), record);
    }
    const std::vector<db::Tag> after = record.tags.decode();
    EXPECT_NE(before, after) << "nothing changed";
    for (const std::string& problem : diffTags(before, after, c.owned)) ADD_FAILURE() << problem << "\n" << dumpTags(record);
}

// A read-open entity refuses the setter and keeps its tags.
TEST_P(EntitySetterTags, ReadOpenEntityRefusesTheSetter) {
    const SetterCase& c = GetParam();
    auto database = loadDatabase(c.dxf);
    ASSERT_TRUE(database);
    db::ObjectRecord& record = recordOf(*database, c.handle);
    const std::vector<db::Tag> before = record.tags.decode();
    Opened<KcDbEntity> entity(*database, c.handle, KcDb::kForRead);
    ASSERT_TRUE(entity);
    EXPECT_EQ(c.apply(entity.get()), Kcad::eNotOpenForWrite);
    EXPECT_EQ(record.tags.decode(), before);
}

// The edited drawing saved as DXF and read back holds the same tags.
TEST_P(EntitySetterTags, EditSurvivesSaveAndReload) {
    const SetterCase& c = GetParam();
    auto database = loadDatabase(c.dxf);
    ASSERT_TRUE(database);
    {
        Opened<KcDbEntity> entity(*database, c.handle, KcDb::kForWrite);
        ASSERT_TRUE(entity);
        ASSERT_EQ(c.apply(entity.get()), Kcad::eOk);
    }
    const db::ObjectRecord& edited = recordOf(*database, c.handle);
    std::unique_ptr<db::Drawing> reloaded = saveAndReload(database->drawing());
    ASSERT_TRUE(reloaded);
    const db::ObjectRecord* again = reloaded->findByHandle(c.handle);
    ASSERT_NE(again, nullptr);
    EXPECT_EQ(again->tags.decode(), edited.tags.decode()) << dumpTags(edited) << "\n" << dumpTags(*again);
}

INSTANTIATE_TEST_SUITE_P(Entities, EntitySetterTags, ::testing::ValuesIn(setterCases()),
                         [](const ::testing::TestParamInfo<SetterCase>& param) { return std::string(param.param.name); });

struct BadInputCase {
    const char* name;
    std::string dxf;
    db::Handle handle;
    Apply apply;
};

void PrintTo(const BadInputCase& c, std::ostream* out) { *out << c.name; }

std::vector<BadInputCase> badInputCases() {
    const double nan = std::nan("");
    const std::string circle = modern(modernHead("CIRCLE", "101", "AcDbCircle") +
                                      dxfTags({{10, "5.0"}, {20, "5.0"}, {30, "0.0"}, {40, "2.0"}}));
    const std::string solid = modern(modernHead("SOLID", "117", "AcDbTrace") +
                                     dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {11, "1.0"}, {21, "0.0"},
                                              {31, "0.0"}, {12, "0.0"}, {22, "1.0"}, {32, "0.0"}}));
    const std::string ellipse = modern(modernHead("ELLIPSE", "119", "AcDbEllipse") +
                                       dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {11, "2.0"}, {21, "0.0"},
                                                {31, "0.0"}, {40, "0.5"}}));
    const std::string attdef = modern(modernHead("ATTDEF", "108", "AcDbText") +
                                      dxfTags({{10, "0.0"}, {20, "0.0"}, {30, "0.0"}, {40, "1.0"}, {1, "def"},
                                               {100, "AcDbAttributeDefinition"}, {3, "Enter"}, {2, "TAG1"},
                                               {70, "0"}}));
    return {
        {"CircleRadiusZero", circle, 0x101, as<KcDbCircle>([](KcDbCircle& e) { return e.setRadius(0.0); })},
        {"CircleZeroNormal", circle, 0x101, as<KcDbCircle>([](KcDbCircle& e) { return e.setNormal({0, 0, 0}); })},
        {"LineNotANumber", modern(line("100")), 0x100,
         as<KcDbLine>([nan](KcDbLine& e) { return e.setStartPoint({nan, 0, 0}); })},
        {"TextHeightNegative", modern(leftText("103")), 0x103, as<KcDbText>([](KcDbText& e) { return e.setHeight(-1.0); })},
        {"TextHorizontalModeOutOfRange", modern(leftText("103")), 0x103,
         as<KcDbText>([](KcDbText& e) { return e.setHorizontalMode(static_cast<KcDb::TextHorzMode>(7)); })},
        {"TextObliqueBeyond85Degrees", modern(leftText("103")), 0x103,
         as<KcDbText>([](KcDbText& e) { return e.setOblique(1.5); })},
        {"TextStyleThatIsALayer", modern(leftText("103")), 0x103,
         as<KcDbText>([](KcDbText& e) { return e.setTextStyle(e.layerId()); })},
        {"AttributeTagWithASpace", attdef, 0x108,
         as<KcDbAttributeDefinition>([](KcDbAttributeDefinition& e) { return e.setTag(L"A B"); })},
        {"PolylineBulgeIndexPastTheEnd", modern(lwpolyline("116")), 0x116,
         as<KcDbPolyline>([](KcDbPolyline& e) { return e.setBulgeAt(3, 1.0); })},
        {"PolylineInsertPastTheEnd", modern(lwpolyline("116")), 0x116,
         as<KcDbPolyline>([](KcDbPolyline& e) { return e.addVertexAt(4, {0, 0}); })},
        {"PolylineNegativeConstantWidth", modern(lwpolyline("116")), 0x116,
         as<KcDbPolyline>([](KcDbPolyline& e) { return e.setConstantWidth(-1.0); })},
        {"SolidCornerIndex4", solid, 0x117, as<KcDbSolid>([](KcDbSolid& e) { return e.setPointAt(4, {0, 0, 0}); })},
        {"EllipseRatioAboveOne", ellipse, 0x119,
         as<KcDbEllipse>([](KcDbEllipse& e) { return e.set({0, 0, 0}, {0, 0, 1}, {1, 0, 0}, 2.0); })},
        {"EllipseAxisAlongTheNormal", ellipse, 0x119,
         as<KcDbEllipse>([](KcDbEllipse& e) { return e.set({0, 0, 0}, {0, 0, 1}, {0, 0, 1}, 0.5); })},
        {"MTextAttachmentZero", modern(mtext("113", false)), 0x113,
         as<KcDbMText>([](KcDbMText& e) { return e.setAttachment(static_cast<KcDbMText::AttachmentPoint>(0)); })},
        {"MTextDirectionAlongTheNormal", modern(mtext("113", false)), 0x113,
         as<KcDbMText>([](KcDbMText& e) { return e.setDirection({0, 0, 2}); })},
        {"InsertScaleZero", modern(insert("115")), 0x115,
         as<KcDbBlockReference>([](KcDbBlockReference& e) { return e.setScaleFactors({0, 1, 1}); })},
        {"InsertOfModelSpace", modern(insert("115")), 0x115, as<KcDbBlockReference>([](KcDbBlockReference& e) {
             return e.setBlockTableRecord(e.database()->modelSpaceId());
         })},
    };
}

class EntityBadInput : public ::testing::TestWithParam<BadInputCase> {};

// Bad input gets eInvalidInput and changes nothing.
TEST_P(EntityBadInput, IsRefusedAndChangesNothing) {
    const BadInputCase& c = GetParam();
    auto database = loadDatabase(c.dxf);
    ASSERT_TRUE(database);
    db::ObjectRecord& record = recordOf(*database, c.handle);
    const std::vector<db::Tag> before = record.tags.decode();
    Opened<KcDbEntity> entity(*database, c.handle, KcDb::kForWrite);
    ASSERT_TRUE(entity);
    EXPECT_EQ(c.apply(entity.get()), Kcad::eInvalidInput);
    EXPECT_EQ(record.tags.decode(), before);
}

INSTANTIATE_TEST_SUITE_P(Entities, EntityBadInput, ::testing::ValuesIn(badInputCases()),
                         [](const ::testing::TestParamInfo<BadInputCase>& param) { return std::string(param.param.name); });

}  // namespace
}  // namespace korva::test
