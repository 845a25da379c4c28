// Helpers of the drawing and editing command tests: the entities a script
// left in model space, objects opened for the length of a check, point
// comparisons, the audit after a script, and questions to the independent
// DXF reader about a saved file.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "ScriptRun.h"
#include "TestFiles.h"
#include "db/Audit.h"
#include "dxf/DxfWriter.h"
#include "kcdbdatabase.h"
#include "kcdbfuncs.h"

namespace korva::test::drawedit {

// The live entities of a block record (model space by default), in order.
inline std::vector<KcDbObjectId> blockEntities(KcDbObjectId block) {
    std::vector<KcDbObjectId> ids;
    KcDbBlockTableRecord* record = nullptr;
    if (kcdbOpenObject(record, block, KcDb::kForRead) != Kcad::eOk) return ids;
    KcDbBlockTableRecordIterator* iterator = nullptr;
    record->newIterator(iterator);
    for (; iterator && !iterator->done(); iterator->step()) {
        KcDbObjectId id;
        if (iterator->getEntityId(id) == Kcad::eOk) ids.push_back(id);
    }
    delete iterator;
    record->close();
    return ids;
}

inline std::vector<KcDbObjectId> modelSpaceEntities(ScriptRun& run) {
    return blockEntities(run.document().database().modelSpaceId());
}

inline KcDbObjectId blockNamed(ScriptRun& run, const wchar_t* name) {
    KcDbBlockTable* table = nullptr;
    KcDbObjectId id;
    if (run.document().database().getBlockTable(table, KcDb::kForRead) != Kcad::eOk) return id;
    table->getAt(name, id);
    table->close();
    return id;
}

// An object open for read (or write) while the check runs; empty when the id
// does not name an object of that class.
template <class T>
class Opened {
public:
    explicit Opened(KcDbObjectId id, KcDb::OpenMode mode = KcDb::kForRead) { kcdbOpenObject(object_, id, mode); }
    ~Opened() {
        if (object_) object_->close();
    }
    Opened(const Opened&) = delete;
    Opened& operator=(const Opened&) = delete;
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }

private:
    T* object_ = nullptr;
};

inline void expectPointNear(const KcGePoint3d& actual, const KcGePoint3d& expected, const char* what,
                            double tolerance = 1e-9) {
    EXPECT_NEAR(actual.x, expected.x, tolerance) << what;
    EXPECT_NEAR(actual.y, expected.y, tolerance) << what;
    EXPECT_NEAR(actual.z, expected.z, tolerance) << what;
}

// An angle compared on the circle: 0 and 2 pi are the same.
inline void expectAngleNear(double actual, double expected, const char* what, double tolerance = 1e-9) {
    const double turn = 2.0 * 3.14159265358979323846;
    double difference = std::fmod(actual - expected, turn);
    if (difference > turn / 2.0) difference -= turn;
    if (difference < -turn / 2.0) difference += turn;
    EXPECT_NEAR(difference, 0.0, tolerance) << what << ": " << actual << " against " << expected;
}

// The audit finds nothing to repair after a command.
inline void expectCleanAudit(ScriptRun& run) {
    db::AuditReport report;
    db::auditDrawing(run.drawing(), report);
    EXPECT_TRUE(report.empty()) << (report.empty() ? std::string() : report.repairs().front().message);
}

inline std::wstring handleText(KcDbObjectId id) {
    wchar_t buffer[32] = {};
    id.handle().getIntoAsciiBuffer(buffer, 32);
    return buffer;
}

// Saves the drawing and runs a Python body with `doc` (the file opened by
// ezdxf, the independent reader) and `msp` bound; returns what it prints.
inline std::string askIndependentReader(ScriptRun& run, const TempDir& dir, const std::string& body) {
    const std::filesystem::path saved = dir.file("saved.dxf");
    const std::string error = dxf::saveDxfFile(run.drawing(), saved.string());
    EXPECT_TRUE(error.empty()) << error;
    const std::filesystem::path script = dir.file("query.py");
    writeFileBytes(script, "import sys, ezdxf\ndoc = ezdxf.readfile(sys.argv[1])\nmsp = doc.modelspace()\n" + body + "\n");
    const std::string command = std::string(KORVA_PYTHON3) + " " + script.string() + " " + saved.string() + " 2>&1";
    std::string output;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return "cannot start the reader";
    std::array<char, 4096> line{};
    while (std::fgets(line.data(), static_cast<int>(line.size()), pipe)) output += line.data();
    ::pclose(pipe);
    return output;
}

}  // namespace korva::test::drawedit
