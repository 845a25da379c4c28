// Damaged and foreign input: every case either reads (with the damage repaired
// and reported) or fails with a message naming where and why. Never a crash or a hang.
#include <gtest/gtest.h>

#include "TestFiles.h"
#include "dxf/DxfReader.h"
#include "dxf/DxfWriter.h"

namespace korva {
namespace {

struct Damage {
    const char* name;
    std::string bytes;
    bool readable;
    const char* expected;  // part of the error, or an audit code when readable
};

std::string corpusPrefix(const char* file, size_t bytes) {
    return test::readFileBytes(test::corpusFile(file)).substr(0, bytes);
}

// A corpus file cut right after the n-th line that holds this group code, so that its value is missing.
std::string cutAfterCode(const char* file, const char* codeLine, int n) {
    const std::string text = test::readFileBytes(test::corpusFile(file));
    size_t at = 0;
    for (int i = 0; i < n; ++i) at = text.find(codeLine, at) + 1;
    return text.substr(0, text.find('\n', at) + 1);
}

TEST(DamagedFiles, EachIsRepairedOrRefusedWithItsReason) {
    const Damage cases[] = {
        {"empty", "", false, "empty"},
        {"not DXF", "hello world\n", false, "line 1"},
        {"a code without value", "  0\nSECTION\n  2\n", false, "without its value"},
        {"a broken group code", "  0\nSECTION\n  2\nENTITIES\nxx\nLINE\n", false, "line 5"},
        {"blocks without ENDSEC", "0\nSECTION\n2\nBLOCKS\n0\nBLOCK\n2\nB\n0\nENDBLK\n0\nEOF\n", true,
         "unterminated-section"},
        {"nothing but an unfinished section", "0\nSECTION\n2\nBLOCKS\n0\nEOF\n", false, "no DXF sections"},
        {"blocks running into a section", "0\nSECTION\n2\nBLOCKS\n0\nSECTION\n2\nENTITIES\n0\nPOINT\n10\n1\n20\n2\n0\nENDSEC\n0\nEOF\n", true,
         "unterminated-section"},
        {"no EOF", "0\nSECTION\n2\nENTITIES\n0\nLINE\n8\n0\n10\n1\n20\n2\n11\n3\n21\n4\n0\nENDSEC\n", true, "missing-eof"},
        {"an ASCII file cut after a group code", cutAfterCode("ezdxf__3dface.dxf", "\n 10\n", 40), false,
         "without its value"},
        {"an ASCII file cut between two tags", cutAfterCode("ezdxf__3dface.dxf", "\n 10\n", 40) + "0.0\n", true,
         "missing-eof"},
        {"a truncated binary file", corpusPrefix("ezdxf__bin_dxf_r14.dxf", 3000), false, "byte offset"},
        {"data after EOF", test::readFileBytes(test::corpusFile("ezdxf__R12_with_trash_beyond_EOF.dxf")), true,
         "trailing-data"},
    };
    for (const Damage& c : cases) {
        const auto result = dxf::readDxf(c.bytes);
        EXPECT_EQ(result.ok(), c.readable) << c.name << ": " << result.error;
        if (!c.readable) {
            EXPECT_NE(result.error.find(c.expected), std::string::npos) << c.name << ": " << result.error;
            continue;
        }
        EXPECT_GT(result.audit.count(c.expected), 0u) << c.name;
        // A repaired drawing saves and reads back.
        EXPECT_TRUE(dxf::readDxf(dxf::writeDxf(*result.drawing)).ok()) << c.name;
    }
}

TEST(DamagedFiles, RepairsOfCorpusFilesAreReportedOnce) {
    struct Expectation {
        const char* file;
        const char* code;
    } expectations[] = {
        {"ezdxf__duplicate_handles.dxf", "duplicate-handle"},
        {"ezdxf__empty_handles.dxf", "missing-handle"},
        {"ezdxf__layout_broken_links.dxf", "broken-layout-link"},
        {"ezdxf__r2000_blocks_with_no_names.dxf", "block-name"},
        {"ezdxf__recover01.dxf", "header-outside-section"},
    };
    for (const Expectation& e : expectations) {
        const auto first = dxf::readDxfFile(test::corpusFile(e.file).string());
        ASSERT_TRUE(first.ok()) << e.file << ": " << first.error;
        EXPECT_GT(first.audit.count(e.code), 0u) << e.file;
        const auto second = dxf::readDxf(dxf::writeDxf(*first.drawing));
        ASSERT_TRUE(second.ok()) << e.file;
        EXPECT_EQ(second.audit.count(e.code), 0u) << e.file << " was saved with its damage";
    }
}

}  // namespace
}  // namespace korva
