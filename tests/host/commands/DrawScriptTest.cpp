// A script written as for a CAD program's command line builds a drawing (lines,
// a circle, an arc, a polyline with an arc segment, a justified text, a block
// with attribute definitions and a reference answering them); the saved file
// is read back by the independent reader, which must see what was drawn.
#include <gtest/gtest.h>

#include "DrawTestSupport.h"

namespace korva {
namespace {

using test::ScriptRun;
using test::drawedit::askIndependentReader;
using test::drawedit::expectCleanAudit;

constexpr const char* kScript =
    "LINE 0,0 10,0 10,10 C\n"
    "CIRCLE 5,5 D 4\n"
    "ARC 0,0 E 2,0 A 90\n"
    "PLINE 0,0 10,0 A 10,10 L 0,10 C\n"
    "-TEXT J BR 20,0 2 0\n"
    "Bottom right\n"
    "-ATTDEF  TAG\n"
    "Tag\n"
    "none\n"
    "50,50 1 0\n"
    "CIRCLE 50,50 1\n"
    "-BLOCK B 50,50 W 45,45 60,60\n"
    "\n"
    "-INSERT B 30,30 2  0\n"
    "door 7\n";

TEST(DrawScript, TheIndependentReaderSeesTheDrawingTheScriptMade) {
    ScriptRun run;
    ASSERT_TRUE(run.run(kScript));
    expectCleanAudit(run);
    test::TempDir dir;
    const std::string answer = askIndependentReader(
        run, dir,
        "print(' '.join(e.dxftype() for e in msp))\n"
        "p = msp.query('LWPOLYLINE')[0]\n"
        "print(p.closed, [round(v[0], 9) for v in p.get_points('b')])\n"
        "t = msp.query('TEXT')[0]\n"
        "print(t.dxf.text, t.dxf.halign, t.dxf.valign, t.dxf.align_point[0])\n"
        "r = msp.query('INSERT')[0]\n"
        "print(r.dxf.name, r.dxf.xscale, [(a.dxf.tag, a.dxf.text) for a in r.attribs])\n"
        "print(sorted(e.dxftype() for e in doc.blocks.get('B')))");
    EXPECT_EQ(answer,
              "LINE LINE LINE CIRCLE ARC LWPOLYLINE TEXT INSERT\n"
              "True [0.0, 1.0, 0.0, 0.0]\n"
              "Bottom right 2 1 20.0\n"
              "B 2.0 [('TAG', 'door 7')]\n"
              "['ATTDEF', 'CIRCLE']\n");
}

}  // namespace
}  // namespace korva
