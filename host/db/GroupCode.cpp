// Group code ranges from the DXF reference.
#include "db/GroupCode.h"

namespace korva::db {

bool isPointCode(int code) {
    return (code >= 10 && code <= 18) || (code >= 110 && code <= 112) || code == 210 ||
           (code >= 1010 && code <= 1013);
}

bool isHandleCode(int code) {
    return code == 5 || code == 105 || isReferenceCode(code);
}

bool isReferenceCode(int code) {
    return (code >= 320 && code <= 369) || (code >= 390 && code <= 399) || code == 480 || code == 481 ||
           code == 1005;
}

bool isBooleanCode(int code) { return code >= 290 && code <= 299; }

namespace {

TagKind kindOfCodeUncached(int code) {
    if (isHandleCode(code)) return TagKind::Handle;
    if (code >= 0 && code <= 9) return TagKind::String;
    if (code >= 10 && code <= 59) return TagKind::Real;  // coordinates, reals and angles
    if (code >= 60 && code <= 79) return TagKind::Integer;
    if (code >= 90 && code <= 99) return TagKind::Integer;
    if (code >= 110 && code <= 149) return TagKind::Real;
    if (code >= 160 && code <= 179) return TagKind::Integer;
    if (code >= 210 && code <= 239) return TagKind::Real;
    if (code >= 270 && code <= 299) return TagKind::Integer;
    if (code >= 310 && code <= 319) return TagKind::Binary;
    if (code >= 370 && code <= 389) return TagKind::Integer;
    if (code >= 400 && code <= 409) return TagKind::Integer;
    if (code >= 420 && code <= 429) return TagKind::Integer;
    if (code >= 440 && code <= 459) return TagKind::Integer;
    if (code >= 460 && code <= 469) return TagKind::Real;
    if (code == 1004) return TagKind::Binary;
    if (code >= 1010 && code <= 1059) return TagKind::Real;
    if (code >= 1060 && code <= 1071) return TagKind::Integer;
    // Strings, and every code the reference leaves undefined: kept as text.
    return TagKind::String;
}

// Codes up to 1100 by table: the reader asks for every tag of a file.
struct KindTable {
    TagKind kinds[1100];
    KindTable() {
        for (int code = 0; code < 1100; ++code) kinds[code] = kindOfCodeUncached(code);
    }
};

}  // namespace

TagKind kindOfCode(int code) {
    static const KindTable table;
    if (code >= 0 && code < 1100) return table.kinds[code];
    return kindOfCodeUncached(code);
}

int binaryIntegerWidth(int code) {
    if (code >= 90 && code <= 99) return 4;
    if (code >= 160 && code <= 169) return 8;
    if (code >= 290 && code <= 299) return 1;
    if (code >= 420 && code <= 429) return 4;
    if (code >= 440 && code <= 459) return 4;
    if (code == 1071) return 4;
    return 2;  // 60-79, 170-179, 270-289, 370-389, 400-409, 1060-1070
}

}  // namespace korva::db
