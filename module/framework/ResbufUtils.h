// Building, walking, copying and editing result-buffer chains (entity data
// lists, filters, system-variable values). Records are allocated by the host
// (kcutNewRb) and strings with malloc, so a chain built here is released with
// kcutRelRb like any chain the host returns.
#pragma once

#include "kcadstd.h"
#include "kcge.h"

// What a record's value member holds, by its type code (a DXF group code or a 5000-range data type).
enum class ResbufValueKind { None, Short, Real, Point, String, Name, Long, Int64, Binary };
ResbufValueKind resbufValueKind(int typeCode);

// One new record of the given type code, its value set by the kind word (compared
// without regard to case): "rint" (value -> short), "rreal" (-> double),
// "rpoint" (-> double[3]), "rstring" (-> wchar_t string, copied), "rlong"
// (-> int32_t), "rlname" (-> int64_t[2]). Any other kind, or a null value,
// leaves the value unset. Null when the host gives no record.
resbuf* alloc_rb(int typeCode, const wchar_t* kind, const void* value);

// Append a record or a whole chain at the end of head (a null head becomes node); the head.
resbuf* appendRb(resbuf*& head, resbuf* node);
resbuf* append_rblist(resbuf*& head, resbuf* node);

// A copy of one record (its next pointer null), the value copied by the data type
// of its code; null for a type that cannot be copied.
resbuf* duplicateResbufNode(const resbuf* node);

// The first record of the chain with that code, or null.
resbuf* findResbufNode(resbuf* head, int code);
const resbuf* findResbufNode(const resbuf* head, int code);
// Unlinks and frees the first record with that code: RTNORM, or RTERROR when there is none.
int deleteResbufNode(resbuf*& head, int code);

// New single records whose value member follows the code's data type.
resbuf* MakeBuffer(int code, int value);       // short, long or 64-bit codes
resbuf* MakeBuffer(int code, double value);    // real codes
resbuf* MakeBuffer(int code, const wchar_t* value);  // string codes (copied)
resbuf* MakeBuffer(int code, const KcGePoint3d& value);  // point codes
resbuf* MakeBuffer(int code, const kcad_name value);      // name codes

// Readers of the first record with the code: RTNORM with the value, or RTERROR
// (no such record, or its value is of another kind).
int GetBufInt(const resbuf* head, int code, int& value);
int GetBufReal(const resbuf* head, int code, double& value);
int GetBufString(const resbuf* head, int code, const wchar_t*& value);  // borrowed from the chain
int GetBufName(const resbuf* head, int code, kcad_name name);
int GetBufPoint(const resbuf* head, int code, KcGePoint3d& value);

// Name records of a chain (a nested pick's container list, innermost first):
// the first name, and the first name whose block reference uses an external
// reference block. RTNORM when such a reference was found; the first name is
// set whenever the chain holds one.
int GetBufFirstAndRefNames(const resbuf* head, kcad_name first, kcad_name reference);
// The last two names of the chain: last (the outermost) and the one before it
// ({0, 0} when the chain holds a single name). RTNORM, or RTERROR without names.
int GetBufLast2Names(const resbuf* head, kcad_name last, kcad_name beforeLast);

// Overwrite the value of the first record with the code: RTNORM, or RTERROR when
// there is none or its value is of another kind.
int SetBufInt(resbuf* head, int code, int value);
int SetBufReal(resbuf* head, int code, double value);
int SetBufString(resbuf* head, int code, const wchar_t* value);
int SetBufPoint(resbuf* head, int code, const KcGePoint3d& value);

// Value of the first record with the code, or the fallback when there is none.
KcGePoint3d getrb_point(const resbuf* head, int code, const KcGePoint3d& fallback = KcGePoint3d());
double getrb_real(const resbuf* head, int code, double fallback = 0.0);
const wchar_t* getrb_string(const resbuf* head, int code, const wchar_t* fallback = L"");

// Overwrite the first record with the code, or append a new one when there is none;
// RTNORM, or RTERROR when the record cannot be made.
int setrb_int(resbuf*& head, int code, int value);
int setrb_string(resbuf*& head, int code, const wchar_t* value);

// Releases a chain when the scope ends (a null chain is fine).
class ResbufChain {
public:
    explicit ResbufChain(resbuf* chain = nullptr) : m_chain(chain) {}
    ~ResbufChain();
    ResbufChain(const ResbufChain&) = delete;
    ResbufChain& operator=(const ResbufChain&) = delete;
    resbuf* get() const { return m_chain; }
    resbuf*& ref() { return m_chain; }
    resbuf* release() { resbuf* chain = m_chain; m_chain = nullptr; return chain; }
    void reset(resbuf* chain = nullptr);
    explicit operator bool() const { return m_chain != nullptr; }

private:
    resbuf* m_chain;
};
