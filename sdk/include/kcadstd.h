// Basic types of the host API: names, points, result buffers, result codes and
// database status values. Every other SDK header builds on this one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cwchar>

// Entity and selection-set names: two 64-bit words. A null name is {0, 0}.
typedef int64_t kcad_name[2];
typedef double kcad_point[3];
typedef double kcad_matrix[4][4];

// Host result codes of the C-level functions.
constexpr int RTNORM = 5100;
constexpr int RTNONE = 5000;
constexpr int RTERROR = -5001;
constexpr int RTCAN = -5002;
constexpr int RTREJ = -5003;
constexpr int RTFAIL = -5004;
constexpr int RTKWORD = -5005;

// Data-type codes of result buffers that are not DXF group codes.
constexpr short RTREAL = 5001;
constexpr short RTPOINT = 5002;
constexpr short RTSHORT = 5003;
constexpr short RTANG = 5004;
constexpr short RTSTR = 5005;
constexpr short RTENAME = 5006;
constexpr short RTPICKS = 5007;
constexpr short RTORINT = 5008;
constexpr short RT3DPOINT = 5009;
constexpr short RTLONG = 5010;
constexpr short RTVOID = 5014;
constexpr short RTLB = 5016;
constexpr short RTLE = 5017;
constexpr short RTDOTE = 5018;
constexpr short RTNIL = 5019;
constexpr short RTDXF0 = 5020;
constexpr short RTT = 5021;

union kcad_u_val {
    double rreal;
    double rpoint[3];
    short rint;
    wchar_t* rstring;
    int64_t rlname[2];
    int32_t rlong;
    int64_t mnInt64;
    struct kcad_binary {
        short clen;
        char* buf;
    } rbinary;
};

// One record of a result-buffer chain. Strings and binary chunks are owned by the
// record and allocated with malloc; kcutRelRb frees a whole chain.
struct resbuf {
    resbuf* rbnext;
    short restype;
    kcad_u_val resval;
};

namespace Kcad {

using Int8 = int8_t;
using Int16 = int16_t;
using Int32 = int32_t;
using Int64 = int64_t;
using UInt8 = uint8_t;
using UInt16 = uint16_t;
using UInt32 = uint32_t;
using UInt64 = uint64_t;

// Status of database calls. 0, 3, 20, 33, 124 and 506 are fixed by the module;
// the others are the host's own numbers.
enum ErrorStatus {
    eOk = 0,
    eNotImplementedYet = 1,
    eNotApplicable = 2,
    eInvalidInput = 3,
    eOutOfMemory = 6,
    eNullObjectId = 16,
    eNullEntityPointer = 20,
    eKeyNotFound = 22,
    eDuplicateKey = 23,
    eInvalidIndex = 24,
    eInvalidExtents = 30,
    eInvalidKey = 33,
    eNotThatKindOfClass = 46,
    eDuplicateRecordName = 50,
    eNotInDatabase = 51,
    eAlreadyInDb = 52,
    eNotOpenForWrite = 53,
    eNotOpenForRead = 54,
    eWasErased = 80,
    eWasOpenForWrite = 81,
    eWasOpenForRead = 82,
    eOnLockedLayer = 90,
    eCannotEraseLayer = 91,
    eUnknownHandle = 92,
    eCannotScaleNonUniformly = 93,
    eRegappIdNotFound = 94,
    eWasNotErased = 95,
    eIllegalReplacement = 96,
    eFileNotFound = 100,
    eCantOpenFile = 101,
    eBadDxfFile = 102,
    eFileWriteError = 103,
    eNoDatabase = 124,
    eNullPtr = 506,
};

enum Visibility { kVisible = 0, kInvisible = 1 };

}  // namespace Kcad
