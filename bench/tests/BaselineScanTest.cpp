// The baseline scan must split and convert everything a reader would, or the
// load and save ratios reported against it are flattering.
#include <gtest/gtest.h>

#include <string>

#include "BaselineScan.h"
#include "TestFiles.h"
#include "dxf/AsciiTokenizer.h"
#include "dxf/BinaryFormat.h"

namespace korva::bench {
namespace {

// Group codes at the edges of each numeric range are classified as DXF defines them.
TEST(BaselineScan, ClassifiesGroupCodesAtRangeEdges) {
    struct Case {
        int code;
        bool real;
        bool integer;
    };
    const Case cases[] = {
        {0, false, false},     {9, false, false},     {10, true, false},     {59, true, false},
        {60, false, true},     {99, false, true},     {100, false, false},   {105, false, false},
        {110, true, false},    {149, true, false},    {160, false, true},    {179, false, true},
        {210, true, false},    {239, true, false},    {270, false, true},    {299, false, true},
        {330, false, false},   {370, false, true},    {389, false, true},    {400, false, true},
        {410, false, false},   {420, false, true},    {430, false, false},   {440, false, true},
        {459, false, true},    {460, true, false},    {469, true, false},    {470, false, false},
        {999, false, false},   {1000, false, false},  {1005, false, false},  {1010, true, false},
        {1059, true, false},   {1060, false, true},   {1071, false, true},   {1072, false, false},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(isRealGroupCode(c.code), c.real) << "group code " << c.code;
        EXPECT_EQ(isIntegerGroupCode(c.code), c.integer) << "group code " << c.code;
    }
}

// Padded group codes, CR LF line ends and padded numbers are all converted.
TEST(BaselineScan, ConvertsEveryNumericValueOfASnippet) {
    const ScanTotals totals = scanDxfPairs("  0\r\nLINE\r\n  8\r\nWALLS\r\n 10\r\n 1.5\r\n 20\r\n-2.25e1\r\n"
                                           " 62\r\n     7\r\n1071\r\n100000\r\n  5\r\n1F\r\n");
    EXPECT_TRUE(totals.complete);
    EXPECT_EQ(totals.pairs, 7u);
    EXPECT_EQ(totals.realValues, 2u);
    EXPECT_DOUBLE_EQ(totals.realSum, 1.5 - 22.5);
    EXPECT_EQ(totals.integerValues, 2u);
    EXPECT_EQ(totals.integerSum, 100007);
    EXPECT_EQ(totals.malformedValues, 0u);
}

// A value that is not a number, and a group code line that is not one, are noticed.
TEST(BaselineScan, ReportsWhatItCannotConvert) {
    const ScanTotals badValue = scanDxfPairs("10\nabc\n70\n1x\n40\n2.5\n");
    EXPECT_EQ(badValue.malformedValues, 2u);
    EXPECT_EQ(badValue.realValues, 1u);
    EXPECT_TRUE(badValue.complete);

    const ScanTotals badCode = scanDxfPairs("0\nSECTION\nTWO\nHEADER\n0\nEOF\n");
    EXPECT_FALSE(badCode.complete);
    EXPECT_EQ(badCode.pairs, 1u);
}

// On every ASCII corpus file the scan sees as many pairs as the reader's tokenizer.
TEST(BaselineScan, SplitsCorpusFilesLikeTheReader) {
    for (const auto& path : test::corpusFiles()) {
        const std::string bytes = readWholeFile(path.string());
        if (dxf::isBinaryDxf(bytes)) continue;
        dxf::AsciiTokenizer tokenizer(bytes);
        dxf::RawTag tag;
        std::string error;
        size_t tokenizerPairs = 0;
        while (tokenizer.next(tag, error) == dxf::AsciiTokenizer::Status::Ok) ++tokenizerPairs;
        EXPECT_EQ(scanDxfPairs(bytes).pairs, tokenizerPairs) << path.filename();
    }
}

}  // namespace
}  // namespace korva::bench
