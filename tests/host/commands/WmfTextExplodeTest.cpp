// The text-explode sequence end to end, as the module sends it through
// kcedCommand: world UCS, zoom to the texts, mirror them about a vertical line
// through the view centre, WMFOUT, erase, WMFIN at the view's upper-left
// corner at scale 2, mirror the reference back, explode it and erase it and
// its block, zoom and UCS back. The texts must come back as closed outlines
// inside their boxes, matching the fonts' own outlines, with the view and the
// UCS as before.
#include <gtest/gtest.h>

#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iostream>
#include <numbers>
#include <string>
#include <vector>

#include "DrawTestSupport.h"
#include "db/ObjectAccess.h"
#include "db/Utf8.h"
#include "db/TextMetrics.h"
#include "db/geometry/EntityTags.h"
#include "db/geometry/MTextLayout.h"
#include "db/geometry/TextGeometry.h"
#include "editor/Coordinates.h"
#include "editor/SystemVariables.h"
#include "fonts/TextOutlines.h"
#include "geom/Ocs.h"
#include "kced.h"
#include "kcut.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::TempDir;
using test::drawedit::blockEntities;
using test::drawedit::modelSpaceEntities;
using test::drawedit::Opened;

// ----- the sequence, with the SDK functions only -----

resbuf shortCode(short value) {
    resbuf r{};
    r.restype = RTSHORT;
    r.resval.rint = value;
    return r;
}

void transform(const double* point, short from, short to, bool vector, double* result) {
    const resbuf a = shortCode(from), b = shortCode(to);
    ASSERT_EQ(kcedTrans(point, &a, &b, vector ? 1 : 0, result), RTNORM);
}

double realVariable(const wchar_t* name) {
    resbuf value{};
    EXPECT_EQ(kcedGetVar(name, &value), RTNORM) << name;
    return value.resval.rreal;
}

void pointVariable(const wchar_t* name, double* point) {
    resbuf value{};
    ASSERT_EQ(kcedGetVar(name, &value), RTNORM);
    std::copy(value.resval.rpoint, value.resval.rpoint + 3, point);
}

void setShort(const wchar_t* name, short value) {
    const resbuf r = shortCode(value);
    ASSERT_EQ(kcedSetVar(name, &r), RTNORM) << name;
}

short shortVariable(const wchar_t* name) {
    resbuf value{};
    EXPECT_EQ(kcedGetVar(name, &value), RTNORM) << name;
    return value.resval.rint;
}

struct SequenceTrace {
    bool fileWritten = false;
    double quantum = 0.0;  // a logical unit of the metafile, in drawing units (the zoomed view's width / 65532)
};

// Steps 4 to 13 of the text-explode sequence on a set of texts.
void explodeTexts(const kcad_name texts, const std::wstring& path, SequenceTrace& trace) {
    const short filedia = shortVariable(L"FILEDIA"), cmdecho = shortVariable(L"CMDECHO"),
                mirrtext = shortVariable(L"MIRRTEXT");
    setShort(L"FILEDIA", 0);
    setShort(L"CMDECHO", 0);
    setShort(L"MIRRTEXT", 1);
    ASSERT_EQ(kcedCommand(RTSTR, L"_.ucs", RTSTR, L"_w", RTNONE), RTNORM);
    ASSERT_EQ(kcedCommand(RTSTR, L"_.zoom", RTSTR, L"_o", RTPICKS, texts, RTSTR, L"", RTNONE), RTNORM);

    const double h = realVariable(L"VIEWSIZE");
    double screen[3] = {}, center[3] = {}, display[3] = {};
    pointVariable(L"SCREENSIZE", screen);
    pointVariable(L"VIEWCTR", center);
    const double width = h * screen[0] / screen[1];
    trace.quantum = std::max(width, h) / 65532.0;
    transform(center, 1, 2, false, display);
    const double cornerDisplay[3] = {display[0] - width / 2, display[1] + h / 2, 0};
    const double belowDisplay[3] = {display[0], display[1] - h * 1000000, 0};
    double corner[3] = {}, p1[3] = {}, p2[3] = {};
    transform(cornerDisplay, 2, 1, false, corner);
    std::copy(center, center + 3, p1);
    transform(belowDisplay, 2, 1, false, p2);

    ASSERT_EQ(kcedCommand(RTSTR, L"_.mirror", RTPICKS, texts, RTSTR, L"", RTPOINT, p1, RTPOINT, p2, RTSTR, L"_Y", RTNONE),
              RTNORM);
    ASSERT_EQ(kcedCommand(RTSTR, L"_.wmfout", RTSTR, path.c_str(), RTPICKS, texts, RTSTR, L"", RTNONE), RTNORM);
    trace.fileWritten = std::filesystem::exists(std::filesystem::path(path));
    ASSERT_EQ(kcedCommand(RTSTR, L"_.erase", RTPICKS, texts, RTSTR, L"", RTNONE), RTNORM);

    double xdir[3] = {}, userXdir[3] = {};
    pointVariable(L"UCSXDIR", xdir);
    transform(xdir, 0, 1, true, userXdir);
    const double origin[3] = {0, 0, 0};
    const double a = kcutAngle(origin, userXdir);
    const double rotation = (6.2831853071796 - a) / 3.1415926535898 * 180;
    ASSERT_EQ(kcedCommand(RTSTR, L"_.wmfin", RTSTR, path.c_str(), RTPOINT, corner, RTSTR, L"2.0", RTSTR, L"2.0", RTREAL,
                          rotation, RTNONE),
              RTNORM);

    kcad_name last = {0, 0};
    ASSERT_EQ(kcdbEntLast(last), RTNORM);
    ASSERT_EQ(kcedCommand(RTSTR, L"_.mirror", RTENAME, last, RTSTR, L"", RTPOINT, p1, RTPOINT, p2, RTSTR, L"_Y", RTNONE),
              RTNORM);
    KcDbObjectId referenceId;
    ASSERT_EQ(kcdbGetObjectId(referenceId, last), Kcad::eOk);
    KcDbBlockReference* reference = nullptr;
    ASSERT_EQ(kcdbOpenObject(reference, referenceId, KcDb::kForWrite), Kcad::eOk) << "the last entity is the reference";
    EXPECT_EQ(reference->explodeToOwnerSpace(), Kcad::eOk);
    const KcDbObjectId blockId = reference->blockTableRecord();
    reference->erase();
    reference->close();
    KcDbBlockTableRecord* block = nullptr;
    ASSERT_EQ(kcdbOpenObject(block, blockId, KcDb::kForWrite), Kcad::eOk);
    EXPECT_TRUE(block->isAnonymous());
    block->erase();
    block->close();

    ASSERT_EQ(kcedCommand(RTSTR, L"_.zoom", RTSTR, L"_P", RTNONE), RTNORM);
    ASSERT_EQ(kcedCommand(RTSTR, L"_.ucs", RTSTR, L"_P", RTNONE), RTNORM);
    setShort(L"FILEDIA", filedia);
    setShort(L"CMDECHO", cmdecho);
    setShort(L"MIRRTEXT", mirrtext);
    std::filesystem::remove(std::filesystem::path(path));
}

KcDbObjectId appendToModelSpace(ScriptRun& run, KcDbEntity* entity) {
    KcDbBlockTableRecord* space = nullptr;
    KcDbObjectId id;
    if (kcdbOpenObject(space, run.document().database().modelSpaceId(), KcDb::kForWrite) != Kcad::eOk) return id;
    if (space->appendKcDbEntity(id, entity) == Kcad::eOk) entity->close();
    else delete entity;
    space->close();
    return id;
}

// ----- what the texts should become -----

using Segment = std::pair<KcGePoint3d, KcGePoint3d>;

// A text as the database measures and the fonts draw it: its frame (own
// coordinates to world), its box in that frame, and its outline in world
// coordinates.
struct ExpectedText {
    KcGeMatrix3d frame;
    double left = 0, right = 0, bottom = 0, top = 0;
    double height = 0;
    std::vector<Segment> outline;
    size_t contours = 0;
    double inkLeft = 1e300, inkRight = -1e300, inkBottom = 1e300, inkTop = -1e300;  // the outline's extents in the frame
};

void addOutline(const QPainterPath& path, double height, ExpectedText& expected) {
    // Several times finer than a logical unit of the metafile, so that the reference
    // adds next to nothing to the deviations measured against it.
    for (const fonts::Contour& contour : fonts::flattenPath(path, height / 40000.0)) {
        ++expected.contours;
        for (size_t i = 0; i < contour.size(); ++i) {
            const auto& a = contour[i];
            expected.inkLeft = std::min(expected.inkLeft, a[0]);
            expected.inkRight = std::max(expected.inkRight, a[0]);
            expected.inkBottom = std::min(expected.inkBottom, a[1]);
            expected.inkTop = std::max(expected.inkTop, a[1]);
            const auto& b = contour[(i + 1) % contour.size()];
            expected.outline.emplace_back(expected.frame * KcGePoint3d(a[0], a[1], 0), expected.frame * KcGePoint3d(b[0], b[1], 0));
        }
    }
}

std::string storedText(const db::ObjectRecord& record) {
    const db::geometry::EntityTags tags(record);
    const db::Tag* text = tags.first(1);
    return text ? text->text : std::string();
}

ExpectedText expectTextLine(KcDbObjectId id) {
    Opened<KcDbText> text(id);
    const db::ObjectRecord& record = *db::ObjectAccess::record(id);
    ExpectedText expected;
    const KcGeVector3d normal = text->normal();
    const geom::OcsAxes axes = geom::ocsAxes(normal);
    const double rotation = text->rotation();
    const KcGeVector3d along = axes.x * std::cos(rotation) + axes.y * std::sin(rotation);
    const KcGeVector3d up = normal.normal().crossProduct(along);
    const double mx = text->isMirroredInX() ? -1 : 1, my = text->isMirroredInY() ? -1 : 1;
    expected.frame.setCoordSystem(text->position(), along * mx, up * my, normal.normal());
    const db::TextBox box = db::measureText(storedText(record), db::textStyleOf(record));
    expected.left = box.left;
    expected.right = box.right;
    expected.bottom = box.bottom;
    expected.top = box.top;
    expected.height = text->height();
    addOutline(fonts::textPath(storedText(record), db::textStyleOf(record)), expected.height, expected);
    return expected;
}

// An MTEXT's box: its lines' measured boxes, each at its place in the frame.
ExpectedText expectMText(KcDbObjectId id) {
    const db::ObjectRecord& record = *db::ObjectAccess::record(id);
    const db::geometry::MTextFrame frame = db::geometry::mtextFrame(record);
    ExpectedText expected;
    expected.frame.setCoordSystem(frame.location, frame.direction, frame.up, frame.normal);
    expected.left = expected.bottom = 1e300;
    expected.right = expected.top = -1e300;
    db::TextStyleMetrics style = db::textStyleOf(record);
    for (const auto& line : db::geometry::layoutMText(record).lines) {
        for (const auto& run : line.runs) {
            style.height = run.height;
            const db::TextBox box = db::measureText(run.text, style);
            expected.left = std::min(expected.left, line.x + run.x + box.left);
            expected.right = std::max(expected.right, line.x + run.x + box.right);
            expected.bottom = std::min(expected.bottom, line.y + box.bottom);
            expected.top = std::max(expected.top, line.y + box.top);
        }
    }
    Opened<KcDbMText> mtext(id);
    expected.height = mtext->textHeight();
    addOutline(fonts::mtextPath(record), expected.height, expected);
    return expected;
}

double distanceToSegment(const KcGePoint3d& p, const Segment& s) {
    const KcGeVector3d ab = s.second - s.first;
    const double length2 = ab.dotProduct(ab);
    const double t = length2 > 0 ? std::clamp((p - s.first).dotProduct(ab) / length2, 0.0, 1.0) : 0.0;
    return p.distanceTo(s.first + ab * t);
}

struct Outcome {
    std::vector<std::vector<KcGePoint3d>> polylines;  // the new closed polylines, world vertices
    size_t others = 0;                                // new entities of any other kind
};

Outcome newEntities(ScriptRun& run, const std::vector<KcDbObjectId>& before) {
    Outcome outcome;
    for (KcDbObjectId id : modelSpaceEntities(run)) {
        if (std::find(before.begin(), before.end(), id) != before.end()) continue;
        Opened<KcDbPolyline> polyline(id);
        if (!polyline || !polyline->isClosed()) {
            ++outcome.others;
            continue;
        }
        std::vector<KcGePoint3d> vertices;
        for (Kcad::UInt32 i = 0; i < polyline->numVerts(); ++i) {
            KcGePoint3d p;
            polyline->getPointAt(i, p);
            vertices.push_back(p);
        }
        outcome.polylines.push_back(std::move(vertices));
    }
    return outcome;
}

struct Scenario {
    const char* name;
    editor::UcsFrame ucs;
    std::string script;  // makes the TEXT in that UCS
    double mtextDirection;  // radians in the UCS
    const char* mtextContents;
};

// The texts' frames are checked vertex by vertex: each new polyline belongs to
// the text whose box holds its first vertex.
TEST(WmfTextExplode, TextsComeBackAsClosedOutlinesInsideTheirBoxes) {
    const double s = std::sqrt(0.5);
    const Scenario scenarios[] = {
        {"world", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}}, "-TEXT\n2,3\n2.5\n0\nHello, World\n", 0.0, "Lines\\Pof text"},
        {"turned UCS, rotated texts", {{100, 50, 0}, {s, s, 0}, {-s, s, 0}}, "-TEXT\n2,3\n2\n30\nAxis 42 %%d\n", 0.35,
         "Rotated\\Pparagraph"},
        {"justified and backward", {{-20, 5, 0}, {0, 1, 0}, {-1, 0, 0}}, "-TEXT\nJ\nC\n10,1\n3\n-15\ngyp\n", 1.2, "A\\PBb"},
    };
    for (const Scenario& scenario : scenarios) {
        SCOPED_TRACE(scenario.name);
        ScriptRun run;
        editor::setCurrentUcs(run.document(), scenario.ucs);
        ASSERT_TRUE(run.run(scenario.script));
        if (std::string(scenario.name) == "justified and backward") {
            Opened<KcDbText> text(modelSpaceEntities(run).at(0), KcDb::kForWrite);
            text->mirrorInX(true);
        }
        {
            auto* mtext = new KcDbMText();
            mtext->setContents(db::utf8ToWide(scenario.mtextContents).c_str());
            mtext->setTextHeight(1.5);
            const KcGeMatrix3d ucs = editor::ucsToWorld(&run.document());
            mtext->setLocation(ucs * KcGePoint3d(3, -2, 0));
            mtext->setNormal(ucs * KcGeVector3d::kZAxis);
            mtext->setDirection(ucs * KcGeVector3d(std::cos(scenario.mtextDirection), std::sin(scenario.mtextDirection), 0));
            ASSERT_FALSE(appendToModelSpace(run, mtext).isNull());
        }
        const std::vector<KcDbObjectId> texts = modelSpaceEntities(run);
        ASSERT_EQ(texts.size(), 2u);
        const std::vector<ExpectedText> expected{expectTextLine(texts[0]), expectMText(texts[1])};
        kcad_name set = {0, 0};
        for (KcDbObjectId id : texts) {
            kcad_name name;
            ASSERT_EQ(kcdbGetKdsName(name, id), Kcad::eOk);
            ASSERT_EQ(kcedSSAdd(name, set[0] == 0 && set[1] == 0 ? nullptr : set, set), RTNORM);
        }
        const double viewHeight = realVariable(L"VIEWSIZE");
        double viewCenter[3], ucsOrigin[3], ucsX[3], ucsY[3];
        pointVariable(L"VIEWCTR", viewCenter);
        pointVariable(L"UCSORG", ucsOrigin);
        pointVariable(L"UCSXDIR", ucsX);
        pointVariable(L"UCSYDIR", ucsY);

        TempDir dir;
        const std::wstring path = db::utf8ToWide(dir.file("txtexp.wmf").string());
        SequenceTrace trace;
        explodeTexts(set, path, trace);
        kcedSSFree(set);

        EXPECT_TRUE(trace.fileWritten) << "WMFOUT wrote the file";
        EXPECT_FALSE(std::filesystem::exists(dir.file("txtexp.wmf"))) << "the sequence removed it";
        EXPECT_DOUBLE_EQ(realVariable(L"VIEWSIZE"), viewHeight) << "the view is back";
        double after[3];
        pointVariable(L"VIEWCTR", after);
        for (int i = 0; i < 3; ++i) EXPECT_DOUBLE_EQ(after[i], viewCenter[i]);
        pointVariable(L"UCSORG", after);
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(after[i], ucsOrigin[i], 1e-12) << "the UCS is back";
        pointVariable(L"UCSXDIR", after);
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(after[i], ucsX[i], 1e-12);
        pointVariable(L"UCSYDIR", after);
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(after[i], ucsY[i], 1e-12);
        for (KcDbObjectId id : texts) EXPECT_TRUE(id.isErased()) << "the texts are gone";

        const Outcome outcome = newEntities(run, texts);
        EXPECT_EQ(outcome.others, 0u) << "nothing but closed polylines";
        EXPECT_EQ(outcome.polylines.size(), expected[0].contours + expected[1].contours) << "one per outline contour";
        // Rounding to logical units, flattening within a quarter unit, and the outline's own flattening.
        const double tolerance = 1.5 * trace.quantum;
        struct Seen {
            double left = 1e300, right = -1e300, bottom = 1e300, top = -1e300;
            double deviation = 0.0;
            size_t polylines = 0;
        } seen[2];
        for (const auto& polyline : outcome.polylines) {
            int owner = -1;
            for (int t = 0; t < 2 && owner < 0; ++t) {
                const KcGePoint3d local = expected[t].frame.inverse() * polyline.front();
                if (local.x >= expected[t].left - tolerance && local.x <= expected[t].right + tolerance &&
                    local.y >= expected[t].bottom - tolerance && local.y <= expected[t].top + tolerance) {
                    owner = t;
                }
            }
            ASSERT_GE(owner, 0) << "a polyline outside both texts";
            const ExpectedText& text = expected[owner];
            Seen& mine = seen[owner];
            ++mine.polylines;
            for (const KcGePoint3d& p : polyline) {
                const KcGePoint3d local = text.frame.inverse() * p;
                EXPECT_NEAR(local.z, 0.0, 1e-9);
                EXPECT_GE(local.x, text.left - tolerance);
                EXPECT_LE(local.x, text.right + tolerance);
                EXPECT_GE(local.y, text.bottom - tolerance);
                EXPECT_LE(local.y, text.top + tolerance);
                mine.left = std::min(mine.left, local.x);
                mine.right = std::max(mine.right, local.x);
                mine.bottom = std::min(mine.bottom, local.y);
                mine.top = std::max(mine.top, local.y);
                double nearest = 1e300;
                for (const Segment& segment : text.outline) nearest = std::min(nearest, distanceToSegment(p, segment));
                mine.deviation = std::max(mine.deviation, nearest);
            }
        }
        for (int t = 0; t < 2; ++t) {
            const ExpectedText& text = expected[t];
            EXPECT_EQ(seen[t].polylines, text.contours) << "text " << t;
            // The outlines reach as far as the fonts' own outline, and fill the
            // database's box but for side bearings and the space above small letters.
            EXPECT_NEAR(seen[t].left, text.inkLeft, tolerance) << "text " << t;
            EXPECT_NEAR(seen[t].right, text.inkRight, tolerance) << "text " << t;
            EXPECT_NEAR(seen[t].bottom, text.inkBottom, tolerance) << "text " << t;
            EXPECT_NEAR(seen[t].top, text.inkTop, tolerance) << "text " << t;
            EXPECT_NEAR(seen[t].left, text.left, 0.35 * text.height) << "text " << t;
            EXPECT_NEAR(seen[t].right, text.right, 0.35 * text.height) << "text " << t;
            EXPECT_NEAR(seen[t].bottom, text.bottom, 0.35 * text.height) << "text " << t;
            EXPECT_NEAR(seen[t].top, text.top, 0.35 * text.height) << "text " << t;
            EXPECT_LE(seen[t].deviation, tolerance) << "text " << t;
            std::cout << "[ precision ] " << scenario.name << ", text " << t << ": max deviation "
                      << seen[t].deviation / text.height << " of the height (a logical unit is "
                      << trace.quantum / text.height << ")\n";
        }
    }
}

}  // namespace
}  // namespace korva
