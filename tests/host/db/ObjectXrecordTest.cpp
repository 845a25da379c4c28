// Xrecords through the SDK: free data as result-buffer chains, references as
// entity names of the same drawing, the cloning flag kept apart from the data,
// refused chains that change nothing, and data that survives saving.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "TestDrawing.h"
#include "db/Audit.h"
#include "db/EntityNames.h"
#include "db/RecordFields.h"
#include "db/ResultBuffers.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"

namespace korva {
namespace {

using test::WorkingDrawing;

constexpr const char* kLine =
    "  0\nLINE\n  5\nE1\n330\n1F\n100\nAcDbEntity\n  8\n0\n100\nAcDbLine\n 10\n0.0\n 20\n0.0\n 30\n0.0\n"
    " 11\n1.0\n 21\n0.0\n 31\n0.0\n";

// A dictionary "DATA" owned by the named-object dictionary, with an xrecord read
// from the file: cloning flag 1, then a text, a 280 of the data itself and a reference.
constexpr const char* kObjects =
    "  0\nDICTIONARY\n  5\nD0\n330\nC\n100\nAcDbDictionary\n281\n1\n  3\nSaved\n350\nD1\n"
    "  0\nXRECORD\n  5\nD1\n102\n{ACAD_REACTORS\n330\nD0\n102\n}\n330\nD0\n100\nAcDbXrecord\n280\n1\n"
    "  1\nfrom the file\n280\n7\n340\nE1\n";

std::string xrecordDrawingText() {
    std::string text = test::drawingText(kLine);
    const size_t objects = text.find("\nOBJECTS\n");
    text.insert(text.rfind("  0\nENDSEC", text.find("  0\nEOF", objects)), kObjects);
    return text;
}

struct Chain {
    resbuf* head = nullptr;
    ~Chain() { db::releaseResbufs(head); }
};

KcDbXrecord* openXrecord(WorkingDrawing& d, db::Handle handle, KcDb::OpenMode mode) {
    KcDbObjectId id;
    EXPECT_EQ(d.database().getKcDbObjectId(id, false, handle), Kcad::eOk);
    KcDbXrecord* xrecord = nullptr;
    EXPECT_EQ(kcdbOpenObject(xrecord, id, mode), Kcad::eOk);
    return xrecord;
}

// A chain built item by item; strings and names as the C-level API carries them.
class ChainBuilder {
public:
    ChainBuilder& text(short code, const wchar_t* value) {
        chain_.appendText(code, value);
        return *this;
    }
    ChainBuilder& real(short code, double value) {
        chain_.appendReal(code, value);
        return *this;
    }
    ChainBuilder& point(short code, const KcGePoint3d& value) {
        chain_.appendPoint(code, value);
        return *this;
    }
    ChainBuilder& shortValue(short code, int value) {
        chain_.appendShort(code, value);
        return *this;
    }
    ChainBuilder& name(short code, const db::ObjectRecord* record) {
        chain_.appendName(code, record);
        return *this;
    }
    resbuf* release() { return chain_.release(); }

private:
    db::ResbufChain chain_;
};

std::vector<short> codesOf(const resbuf* chain) {
    std::vector<short> codes;
    for (const resbuf* rb = chain; rb; rb = rb->rbnext) codes.push_back(rb->restype);
    return codes;
}

void expectCleanAudit(db::Drawing& drawing) {
    db::AuditReport report;
    db::auditDrawing(drawing, report);
    for (const auto& repair : report.repairs()) ADD_FAILURE() << repair.code << ": " << repair.message;
}

TEST(ObjectXrecord, ChainOfAStoredXrecordLeavesOutTheCloningFlag) {
    WorkingDrawing d(xrecordDrawingText());
    ASSERT_TRUE(d.loadAudit().empty());
    KcDbXrecord* xrecord = openXrecord(d, 0xD1, KcDb::kForRead);
    ASSERT_NE(xrecord, nullptr);
    Chain chain;
    ASSERT_EQ(xrecord->rbChain(&chain.head), Kcad::eOk);
    EXPECT_EQ(codesOf(chain.head), (std::vector<short>{1, 280, 340}));
    EXPECT_STREQ(chain.head->resval.rstring, L"from the file");
    EXPECT_EQ(chain.head->rbnext->resval.rint, 7);
    EXPECT_EQ(db::recordOf(chain.head->rbnext->rbnext->resval.rlname), d.drawing().findByHandle(0xE1));
    xrecord->close();
}

TEST(ObjectXrecord, DataWithReferencesRoundTripsThroughTheFile) {
    WorkingDrawing d(xrecordDrawingText());
    KcDbDictionary* root = nullptr;
    ASSERT_EQ(d.database().getNamedObjectsDictionary(root, KcDb::kForWrite), Kcad::eOk);
    auto* xrecord = new KcDbXrecord();
    Chain input;
    input.head = ChainBuilder()
                     .text(1, L"Caf\u00E9 \u2013 one")
                     .point(10, KcGePoint3d(1, 2, 3))
                     .real(40, 2.5)
                     .shortValue(70, -1)
                     .name(340, d.drawing().findByHandle(0xE1))
                     .name(360, d.drawing().findByHandle(0xD1))
                     .release();
    // Set before the xrecord joins the drawing: references resolve in the working drawing.
    ASSERT_EQ(xrecord->setFromRbChain(*input.head), Kcad::eOk);
    KcDbObjectId id;
    ASSERT_EQ(root->setAt(L"KORVA_DATA", xrecord, id), Kcad::eOk);
    root->close();

    Chain output;
    ASSERT_EQ(xrecord->rbChain(&output.head), Kcad::eOk);
    EXPECT_EQ(codesOf(output.head), (std::vector<short>{1, 10, 40, 70, 340, 360}));
    xrecord->close();
    const db::ObjectRecord* stored = d.drawing().findByHandle(id.handle());
    EXPECT_EQ(db::fieldHandle(*stored, "AcDbXrecord", 340), 0xE1u);
    EXPECT_EQ(db::fieldInteger(*stored, "AcDbXrecord", 280), 1);  // the cloning flag stays first
    expectCleanAudit(d.drawing());

    WorkingDrawing again(dxf::writeDxf(d.drawing()));
    EXPECT_TRUE(again.loadAudit().empty());
    KcDbXrecord* reread = openXrecord(again, id.handle(), KcDb::kForRead);
    ASSERT_NE(reread, nullptr);
    Chain rereadChain;
    ASSERT_EQ(reread->rbChain(&rereadChain.head), Kcad::eOk);
    const resbuf* item = rereadChain.head;
    ASSERT_EQ(codesOf(item), (std::vector<short>{1, 10, 40, 70, 340, 360}));
    EXPECT_STREQ(item->resval.rstring, L"Caf\u00E9 \u2013 one");
    item = item->rbnext;
    EXPECT_EQ(item->resval.rpoint[2], 3.0);
    item = item->rbnext;
    EXPECT_EQ(item->resval.rreal, 2.5);
    item = item->rbnext;
    EXPECT_EQ(item->resval.rint, -1);
    item = item->rbnext;
    EXPECT_EQ(db::recordOf(item->resval.rlname), again.drawing().findByHandle(0xE1));
    EXPECT_EQ(db::recordOf(item->rbnext->resval.rlname), again.drawing().findByHandle(0xD1));
    reread->close();
}

TEST(ObjectXrecord, RefusedChainsLeaveTheDataAsItWas) {
    WorkingDrawing d(xrecordDrawingText());
    WorkingDrawing other(xrecordDrawingText());
    KcDbXrecord* xrecord = openXrecord(d, 0xD1, KcDb::kForWrite);
    ASSERT_NE(xrecord, nullptr);
    struct Case {
        const char* why;
        resbuf* chain;
    };
    const Case cases[] = {
        {"a name of another drawing", ChainBuilder().text(1, L"ok").name(340, other.drawing().findByHandle(0xE1)).release()},
        {"a handle group", ChainBuilder().text(5, L"1F").release()},
        {"a subclass marker", ChainBuilder().text(100, L"AcDbXrecord").release()},
        {"extended data", ChainBuilder().text(1001, L"ACAD").release()},
        {"an application group", ChainBuilder().text(102, L"{ACAD_REACTORS").release()},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.why);
        Chain owned{c.chain};
        EXPECT_EQ(xrecord->setFromRbChain(*owned.head), Kcad::eInvalidInput);
        Chain after;
        ASSERT_EQ(xrecord->rbChain(&after.head), Kcad::eOk);
        EXPECT_EQ(codesOf(after.head), (std::vector<short>{1, 280, 340}));
    }
    xrecord->close();

    KcDbXrecord* readOnly = openXrecord(d, 0xD1, KcDb::kForRead);
    Chain chain{ChainBuilder().text(1, L"new").release()};
    EXPECT_EQ(readOnly->setFromRbChain(*chain.head), Kcad::eNotOpenForWrite);
    EXPECT_EQ(readOnly->rbChain(nullptr), Kcad::eNullPtr);
    readOnly->close();
}

}  // namespace
}  // namespace korva
