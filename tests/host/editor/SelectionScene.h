// The drawing most selection tests share, with entities of known place, type,
// layer, colour, application groups and extended data:
//
//   A1 LINE      WALLS     (0,0)-(4,0), colour 1
//   A2 CIRCLE    WALLS     centre (10,0), radius 1
//   A3 ARC       DOORS-1   centre (20,0), radius 2, 0 to 90 degrees, colour 3, data of KVTEST
//   A4 TEXT      DOORS-1   "Door" at (0,10), height 1
//   A5 LWPOLYLINE LOCKED   (30,0) bulge 1 to (34,0): the half circle below the x axis
//   A6 LINE      OFFLAYER  (0,20)-(4,20)
//   A7 LINE      FROZEN    (10,20)-(14,20)
//   A8 INSERT    WALLS     BOX at (40,0), with the attribute A81 "7" at (40,3), height 0.5
//   A9 CIRCLE    WALLS     centre (50,0), radius 1, a reactor group, data of KVTEST and KVOTHER
//   AA POINT     WALLS     (60,0)
//   AB LINE      WALLS     (70,0)-(74,0), invisible
//   AC INSERT    WALLS     NEST at (0,40); NEST holds BOX at (10,0) scaled by 2
//
// BOX (base point (0,0)) holds the lines (0,0)-(2,0) and (2,0)-(2,2) and a circle
// of radius 0.5 at (1,1), all on layer 0.
#pragma once

#include "SelectionTestSupport.h"

namespace korva::test {

inline constexpr std::string_view kSceneLayers = R"(
0 LAYER
5 900
330 2
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 WALLS
70 0
62 7
6 Continuous
0 LAYER
5 901
330 2
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 DOORS-1
70 0
62 3
6 Continuous
0 LAYER
5 902
330 2
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 OFFLAYER
70 0
62 -7
6 Continuous
0 LAYER
5 903
330 2
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 FROZEN
70 1
62 7
6 Continuous
0 LAYER
5 904
330 2
100 AcDbSymbolTableRecord
100 AcDbLayerTableRecord
2 LOCKED
70 4
62 7
6 Continuous
)";

inline constexpr std::string_view kSceneApplications = R"(
0 APPID
5 910
330 9
100 AcDbSymbolTableRecord
100 AcDbRegAppTableRecord
2 KVTEST
70 0
0 APPID
5 911
330 9
100 AcDbSymbolTableRecord
100 AcDbRegAppTableRecord
2 KVOTHER
70 0
)";

inline constexpr std::string_view kSceneBlockRecords = R"(
0 BLOCK_RECORD
5 920
330 1
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 BOX
70 0
0 BLOCK_RECORD
5 930
330 1
100 AcDbSymbolTableRecord
100 AcDbBlockTableRecord
2 NEST
70 0
)";

inline constexpr std::string_view kSceneBlocks = R"(
0 BLOCK
5 921
330 920
100 AcDbEntity
8 0
100 AcDbBlockBegin
2 BOX
70 0
10 0
20 0
30 0
3 BOX
0 LINE
5 922
330 920
100 AcDbEntity
8 0
100 AcDbLine
10 0
20 0
30 0
11 2
21 0
31 0
0 LINE
5 923
330 920
100 AcDbEntity
8 0
100 AcDbLine
10 2
20 0
30 0
11 2
21 2
31 0
0 CIRCLE
5 924
330 920
100 AcDbEntity
8 0
100 AcDbCircle
10 1
20 1
30 0
40 0.5
0 ENDBLK
5 925
330 920
100 AcDbEntity
8 0
100 AcDbBlockEnd
0 BLOCK
5 931
330 930
100 AcDbEntity
8 0
100 AcDbBlockBegin
2 NEST
70 0
10 0
20 0
30 0
3 NEST
0 INSERT
5 932
330 930
100 AcDbEntity
8 0
100 AcDbBlockReference
2 BOX
10 10
20 0
30 0
41 2
42 2
43 2
0 ENDBLK
5 933
330 930
100 AcDbEntity
8 0
100 AcDbBlockEnd
)";

inline constexpr std::string_view kSceneEntities = R"(
0 LINE
5 A1
100 AcDbEntity
8 WALLS
62 1
100 AcDbLine
10 0
20 0
30 0
11 4
21 0
31 0
0 CIRCLE
5 A2
100 AcDbEntity
8 WALLS
100 AcDbCircle
10 10
20 0
30 0
40 1
0 ARC
5 A3
100 AcDbEntity
8 DOORS-1
62 3
100 AcDbCircle
10 20
20 0
30 0
40 2
100 AcDbArc
50 0
51 90
1001 KVTEST
1000 door swing
0 TEXT
5 A4
100 AcDbEntity
8 DOORS-1
100 AcDbText
10 0
20 10
30 0
40 1
1 Door
100 AcDbText
0 LWPOLYLINE
5 A5
100 AcDbEntity
8 LOCKED
100 AcDbPolyline
90 2
70 0
10 30
20 0
42 1
10 34
20 0
0 LINE
5 A6
100 AcDbEntity
8 OFFLAYER
100 AcDbLine
10 0
20 20
30 0
11 4
21 20
31 0
0 LINE
5 A7
100 AcDbEntity
8 FROZEN
100 AcDbLine
10 10
20 20
30 0
11 14
21 20
31 0
0 INSERT
5 A8
100 AcDbEntity
8 WALLS
100 AcDbBlockReference
66 1
2 BOX
10 40
20 0
30 0
0 ATTRIB
5 A81
330 A8
100 AcDbEntity
8 WALLS
100 AcDbText
10 40
20 3
30 0
40 0.5
1 7
100 AcDbAttribute
2 NO
70 0
0 SEQEND
5 A82
330 A8
100 AcDbEntity
8 WALLS
0 CIRCLE
5 A9
102 {ACAD_REACTORS
330 C
102 }
100 AcDbEntity
8 WALLS
100 AcDbCircle
10 50
20 0
30 0
40 1
1001 KVTEST
1070 1
1001 KVOTHER
1070 2
0 POINT
5 AA
100 AcDbEntity
8 WALLS
100 AcDbPoint
10 60
20 0
30 0
0 LINE
5 AB
100 AcDbEntity
8 WALLS
60 1
100 AcDbLine
10 70
20 0
30 0
11 74
21 0
31 0
0 INSERT
5 AC
100 AcDbEntity
8 WALLS
100 AcDbBlockReference
2 NEST
10 0
20 40
30 0
)";

inline std::string sceneText() {
    return sceneDrawing({kSceneEntities, kSceneLayers, kSceneApplications, kSceneBlockRecords, kSceneBlocks});
}

// A script run on the scene with a 9-unit high view, so that the pick box
// (PICKBOX 3 of 768 pixels) is 9 * 3 / 768 units.
inline ScriptRun sceneRun() {
    ScriptRun run = ScriptRun::fromDxfText(sceneText());
    run.document().view(false).height = 9.0;
    return run;
}

}  // namespace korva::test
