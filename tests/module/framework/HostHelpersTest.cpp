// The framework's system-variable guards and result-buffer helpers against the
// real host: guards set and restore on every way out, the inert holder, string
// and integer setters; chains built, searched, copied and edited by group code,
// and released by the host like any chain it returns.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "ScriptRun.h"
#include "framework/ResbufUtils.h"
#include "framework/SysVarGuards.h"
#include "kcdbfuncs.h"
#include "kced.h"

namespace {

int intVar(const wchar_t* name) {
    resbuf value{};
    EXPECT_EQ(kcedGetVar(name, &value), RTNORM) << "variable readable";
    return value.restype == RTLONG ? value.resval.rlong : value.resval.rint;
}

void setIntVar(const wchar_t* name, short value) {
    resbuf record{};
    record.restype = RTSHORT;
    record.resval.rint = value;
    ASSERT_EQ(kcedSetVar(name, &record), RTNORM);
}

class HostHelpers : public ::testing::Test {
protected:
    korva::test::ScriptRun run_;
};

TEST_F(HostHelpers, PickFirstGuardClearsAndRestoresEvenWhenTheScopeThrows) {
    setIntVar(L"PICKFIRST", 1);
    try {
        AutoSysVar_PICKFIRST guard;
        EXPECT_EQ(intVar(L"PICKFIRST"), 0);
        throw std::runtime_error("leaving early");
    } catch (const std::runtime_error&) {
    }
    EXPECT_EQ(intVar(L"PICKFIRST"), 1);
}

TEST_F(HostHelpers, CmdEchoGuardKeepsTheOldValueInTheCallersInteger) {
    setIntVar(L"CMDECHO", 1);
    int saved = -7;
    {
        PrepareCmdEcho guard(saved);
        EXPECT_EQ(saved, 1);
        EXPECT_EQ(intVar(L"CMDECHO"), 0);
        saved = 0;  // the caller's integer is what goes back
    }
    EXPECT_EQ(intVar(L"CMDECHO"), 0);
    setIntVar(L"CMDECHO", 1);
}

TEST_F(HostHelpers, GuardsRestoreInReverseOrderOfCreation) {
    setIntVar(L"EXPERT", 0);
    {
        IntVarHolder outer(L"EXPERT");
        ASSERT_EQ(outer.SetValue(3), RTNORM);
        IntVarHolder inner(L"EXPERT");  // keeps 3
        ASSERT_EQ(inner.SetValue(5), RTNORM);
        EXPECT_EQ(intVar(L"EXPERT"), 5);
    }
    EXPECT_EQ(intVar(L"EXPERT"), 0) << "inner restores 3, then outer restores 0";
}

TEST_F(HostHelpers, AnInertHolderChangesNothing) {
    setIntVar(L"BLIPMODE", 1);
    {
        IntVarHolder holder(L"");
        EXPECT_EQ(holder.SetValue(0), RTERROR);
        IntVarHolder nullName(nullptr);
        EXPECT_EQ(nullName.SetValue(0), RTERROR);
    }
    EXPECT_EQ(intVar(L"BLIPMODE"), 1);
    IntVarHolder unknown(L"NO_SUCH_VARIABLE");
    EXPECT_EQ(unknown.SetValue(1), RTERROR);
}

TEST_F(HostHelpers, AHolderReportsTheHostsRefusal) {
    IntVarHolder holder(L"EXPERT");
    EXPECT_EQ(holder.SetValue(99), RTERROR) << "EXPERT takes 0..5";
    EXPECT_EQ(holder.SetValue(2), RTNORM);
}

TEST_F(HostHelpers, StringAndIntegerSettersReadTheRecordFirst) {
    resbuf* layer = kcutBuildList(RTDXF0, L"LAYER", 2, L"Walls", 70, 0, 62, 1, 6, L"Continuous", 0);
    const int made = kcdbEntMake(layer);
    kcutRelRb(layer);
    ASSERT_EQ(made, RTNORM);
    EXPECT_EQ(set_acad_str_var(L"CLAYER", L"Walls"), 1);
    wchar_t buffer[16] = {};
    EXPECT_EQ(get_acad_str_var(L"CLAYER", buffer, 16), 1);
    EXPECT_STREQ(buffer, L"Walls");
    wchar_t small[4] = {};
    EXPECT_EQ(get_acad_str_var(L"CLAYER", small, 4), 1);
    EXPECT_STREQ(small, L"Wal") << "bounded by the buffer";
    EXPECT_EQ(set_acad_str_var(L"CLAYER", L"NoSuchLayer"), 0);
    EXPECT_EQ(set_acad_str_var(L"", L"x"), 0);
    EXPECT_EQ(set_acad_str_var(L"CLAYER", nullptr), 0);
    EXPECT_EQ(get_acad_str_var(L"CMDECHO", buffer, 16), 0) << "not a string variable";
    EXPECT_EQ(set_acad_int_var(L"ORTHOMODE", 1), 1);
    EXPECT_EQ(intVar(L"ORTHOMODE"), 1);
    EXPECT_EQ(set_acad_int_var(L"NO_SUCH_VARIABLE", 1), 0);
}

TEST_F(HostHelpers, KindWordsFillTheMatchingValueMember) {
    const short s = 42;
    const double r = 2.5;
    const double p[3] = {1.0, 2.0, 3.0};
    const int32_t l = 70000;
    const int64_t n[2] = {11, 12};
    resbuf* chain = nullptr;
    appendRb(chain, alloc_rb(70, L"RINT", &s));
    appendRb(chain, alloc_rb(40, L"rreal", &r));
    appendRb(chain, alloc_rb(10, L"rPoint", p));
    appendRb(chain, alloc_rb(1, L"rstring", L"text"));
    appendRb(chain, alloc_rb(90, L"rlong", &l));
    appendRb(chain, alloc_rb(-1, L"rlname", n));
    appendRb(chain, alloc_rb(62, L"other", &s));
    ResbufChain owner(chain);
    int i = 0;
    double d = 0;
    const wchar_t* text = nullptr;
    KcGePoint3d point;
    kcad_name name = {0, 0};
    EXPECT_EQ(GetBufInt(chain, 70, i), RTNORM);
    EXPECT_EQ(i, 42);
    EXPECT_EQ(GetBufReal(chain, 40, d), RTNORM);
    EXPECT_EQ(d, 2.5);
    EXPECT_EQ(GetBufPoint(chain, 10, point), RTNORM);
    EXPECT_EQ(point, KcGePoint3d(1.0, 2.0, 3.0));
    EXPECT_EQ(GetBufString(chain, 1, text), RTNORM);
    EXPECT_STREQ(text, L"text");
    EXPECT_EQ(GetBufInt(chain, 90, i), RTNORM);
    EXPECT_EQ(i, 70000);
    EXPECT_EQ(GetBufName(chain, -1, name), RTNORM);
    EXPECT_EQ(name[1], 12);
    EXPECT_EQ(GetBufInt(chain, 62, i), RTNORM);
    EXPECT_EQ(i, 0) << "an unknown kind leaves the value unset";
    EXPECT_EQ(GetBufReal(chain, 70, d), RTERROR) << "a short is not a real";
    EXPECT_EQ(GetBufInt(chain, 8, i), RTERROR) << "no such group";
}

TEST_F(HostHelpers, AppendingToAnEmptyChainMakesTheNodeItsHead) {
    resbuf* chain = nullptr;
    resbuf* first = kcutBuildList(8, L"0", 62, 1, 0);  // a chain of two
    EXPECT_EQ(append_rblist(chain, first), first);
    appendRb(chain, kcutBuildList(40, 1.5, 0));
    ResbufChain owner(chain);
    int count = 0;
    for (const resbuf* rb = chain; rb; rb = rb->rbnext) ++count;
    EXPECT_EQ(count, 3);
    EXPECT_EQ(getrb_real(chain, 40), 1.5);
    EXPECT_EQ(getrb_real(chain, 41, -1.0), -1.0);
    EXPECT_STREQ(getrb_string(chain, 8), L"0");
}

TEST_F(HostHelpers, DuplicatesCopyByTheDataTypeOfTheCode) {
    const char bytes[3] = {1, 0, 2};
    resbuf* binary = kcutNewRb(1004);
    binary->resval.rbinary.clen = 3;
    binary->resval.rbinary.buf = static_cast<char*>(std::malloc(3));
    std::memcpy(binary->resval.rbinary.buf, bytes, 3);
    const double point[3] = {1.0, 2.0, 3.0};
    ResbufChain source(kcutBuildList(1, L"abc", 10, point, 62, 5, 0));
    appendRb(source.ref(), binary);
    appendRb(source.ref(), kcutNewRb(-3));
    for (const resbuf* rb = source.get(); rb; rb = rb->rbnext) {
        ResbufChain copy(duplicateResbufNode(rb));
        ASSERT_TRUE(copy) << rb->restype;
        EXPECT_EQ(copy.get()->restype, rb->restype);
        EXPECT_EQ(copy.get()->rbnext, nullptr);
    }
    ResbufChain text(duplicateResbufNode(source.get()));
    EXPECT_NE(text.get()->resval.rstring, source.get()->resval.rstring) << "a fresh copy of the string";
    EXPECT_STREQ(text.get()->resval.rstring, L"abc");
    ResbufChain chunk(duplicateResbufNode(binary));
    ASSERT_EQ(chunk.get()->resval.rbinary.clen, 3);
    EXPECT_NE(chunk.get()->resval.rbinary.buf, binary->resval.rbinary.buf);
    EXPECT_EQ(std::memcmp(chunk.get()->resval.rbinary.buf, bytes, 3), 0);
    resbuf listBegin{};
    listBegin.restype = RTLB;
    EXPECT_EQ(duplicateResbufNode(&listBegin), nullptr) << "no data type, no copy";
    EXPECT_EQ(duplicateResbufNode(nullptr), nullptr);
}

TEST_F(HostHelpers, RecordsAreOverwrittenDeletedOrAddedByGroupCode) {
    const double origin[3] = {0.0, 0.0, 0.0};
    resbuf* chain = kcutBuildList(RTDXF0, L"TEXT", 8, L"0", 40, 2.5, 10, origin, 0);
    ASSERT_NE(chain, nullptr);
    EXPECT_EQ(SetBufString(chain, 8, L"Walls"), RTNORM);
    EXPECT_EQ(SetBufReal(chain, 40, 5.0), RTNORM);
    EXPECT_EQ(SetBufPoint(chain, 10, KcGePoint3d(1, 2, 3)), RTNORM);
    EXPECT_EQ(SetBufInt(chain, 62, 3), RTERROR) << "absent: SetBuf only overwrites";
    EXPECT_EQ(setrb_int(chain, 62, 3), RTNORM) << "absent: setrb adds";
    EXPECT_EQ(setrb_string(chain, 8, L"Doors"), RTNORM);
    EXPECT_EQ(SetBufReal(chain, 8, 1.0), RTERROR) << "a string record takes no real";
    EXPECT_STREQ(getrb_string(chain, 8), L"Doors");
    EXPECT_EQ(getrb_real(chain, 40), 5.0);
    EXPECT_EQ(getrb_point(chain, 10), KcGePoint3d(1, 2, 3));
    int colour = 0;
    EXPECT_EQ(GetBufInt(chain, 62, colour), RTNORM);
    EXPECT_EQ(colour, 3);
    EXPECT_EQ(deleteResbufNode(chain, 0), RTNORM) << "the head itself";
    EXPECT_EQ(chain->restype, 8);
    EXPECT_EQ(deleteResbufNode(chain, 40), RTNORM);
    EXPECT_EQ(deleteResbufNode(chain, 40), RTERROR);
    ResbufChain owner(chain);
    ResbufChain made(MakeBuffer(62, 7));
    ASSERT_TRUE(made);
    EXPECT_EQ(made.get()->resval.rint, 7);
    EXPECT_EQ(MakeBuffer(62, 1.5), nullptr) << "a real does not fit a short group";
    ResbufChain longValue(MakeBuffer(90, 100000));
    EXPECT_EQ(longValue.get()->resval.rlong, 100000);
}

TEST_F(HostHelpers, TheLastTwoNamesOfAContainerList) {
    const kcad_name a = {1, 1}, b = {2, 2}, c = {3, 3};
    ResbufChain list(kcutBuildList(RTENAME, a, RTENAME, b, RTENAME, c, 0));
    kcad_name last = {0, 0}, before = {0, 0};
    EXPECT_EQ(GetBufLast2Names(list.get(), last, before), RTNORM);
    EXPECT_EQ(last[0], 3);
    EXPECT_EQ(before[0], 2);
    ResbufChain single(kcutBuildList(RTENAME, a, 0));
    EXPECT_EQ(GetBufLast2Names(single.get(), last, before), RTNORM);
    EXPECT_EQ(last[0], 1);
    EXPECT_EQ(before[0], 0);
    EXPECT_EQ(GetBufLast2Names(nullptr, last, before), RTERROR);
}

}  // namespace
