// Helpers of the TCASE tests: drawings written as "code value" lines (with
// optional layers, block records and blocks) read by the real reader into a
// script run with the module loaded, the text of an entity by its handle, the
// remembered mode in the profile, and the module's English resource strings.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "ModuleSession.h"
#include "ScriptRun.h"
#include "TestDrawing.h"
#include "TestFiles.h"
#include "db/DrawingIo.h"
#include "db/Utf8.h"
#include "editor/Document.h"
#include "kcdbdatabase.h"
#include "kcdbents.h"
#include "kcdbfuncs.h"
#include "kcmfc.h"
#include "kcwindows.h"
#include "runtime/resources/StringTable.h"

namespace korva::test::tcase {

inline constexpr const wchar_t* kSection = L"TcaseDialog";
inline constexpr const wchar_t* kEntry = L"LastChoiced";
inline constexpr const wchar_t* kSectionKey = L"Software\\Korva\\R1\\TcaseDialog";
inline constexpr const char* kDialogTitle = "TCASE-change text case";

struct Scene {
    std::string_view entities;
    std::string_view layers;        // LAYER records
    std::string_view blockRecords;  // BLOCK_RECORD records
    std::string_view blocks;        // BLOCK ... ENDBLK definitions
};

// The empty drawing with these records, blocks and entities, all written as "code value" lines.
inline std::string sceneText(const Scene& scene) {
    std::string text(db::emptyDrawingTemplate());
    auto appendToTable = [&](std::string_view table, std::string_view records) {
        if (records.empty()) return;
        const size_t at = text.find(std::string("TABLE\n  2\n") + std::string(table) + "\n");
        text.insert(text.find("  0\nENDTAB", at), dxfLines(records));
    };
    appendToTable("LAYER", scene.layers);
    appendToTable("BLOCK_RECORD", scene.blockRecords);
    if (!scene.blocks.empty()) {
        const size_t section = text.find("  2\nBLOCKS\n");
        text.insert(text.find("  0\nENDSEC", section), dxfLines(scene.blocks));
    }
    const std::string marker = "  2\nENTITIES\n";
    text.insert(text.find(marker) + marker.size(), dxfLines(scene.entities));
    return text;
}

inline ScriptRun sceneRun(const Scene& scene) { return withExtendModule(ScriptRun::fromDxfText(sceneText(scene))); }

// "code value" lines of one entity with a text: TEXT, MTEXT or ATTDEF on layer 0.
inline std::string textEntity(const std::string& type, const std::string& handle, const std::string& text,
                              const std::string& layer = "0") {
    std::string lines = "0 " + type + "\n5 " + handle + "\n100 AcDbEntity\n8 " + layer + "\n";
    if (type == "MTEXT") return lines + "100 AcDbMText\n10 0\n20 0\n30 0\n40 1\n41 50\n71 1\n1 " + text + "\n";
    lines += "100 AcDbText\n10 0\n20 0\n30 0\n40 1\n1 " + text + "\n";
    if (type == "ATTDEF") return lines + "100 AcDbAttributeDefinition\n3 Enter a value\n2 VALUE_TAG\n70 0\n";
    return lines + "100 AcDbText\n";
}

// The object of a handle (hexadecimal) in the run's drawing.
inline KcDbObjectId idOf(ScriptRun& run, const std::string& handle) {
    KcDbObjectId id;
    run.document().database().getKcDbObjectId(id, false, KcDbHandle(std::stoull(handle, nullptr, 16)));
    return id;
}

// The contents of an MTEXT or the string of a TEXT, ATTDEF or ATTRIB; "<none>" when there is no such object.
inline std::wstring textOf(KcDbObjectId id) {
    KcDbObject* object = nullptr;
    if (kcdbOpenObject(object, id, KcDb::kForRead) != Kcad::eOk) return L"<none>";
    std::wstring text = L"<not a text>";
    if (const KcDbMText* mtext = KcDbMText::cast(object)) text = mtext->contentsConst();
    else if (const KcDbText* single = KcDbText::cast(object)) text = single->textStringConst();
    object->close();
    return text;
}

inline std::wstring textOf(ScriptRun& run, const std::string& handle) { return textOf(idOf(run, handle)); }

// The remembered mode: written, read (with a default for "none"), and removed.
// The profile belongs to the started host (starting it opens a fresh one), so
// each of these starts the host first.
inline void storeMode(int mode) {
    startHostOnce();
    ASSERT_TRUE(kcedGetKcadWinApp()->WriteProfileInt(kSection, kEntry, mode));
}
inline int storedMode(int whenMissing = -1) {
    startHostOnce();
    return static_cast<int>(kcedGetKcadWinApp()->GetProfileInt(kSection, kEntry, whenMissing));
}
inline void forgetMode() {
    startHostOnce();
    HKEY key = nullptr;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, kSectionKey, 0, KEY_SET_VALUE, &key) != ERROR_SUCCESS) return;
    RegDeleteValueW(key, kEntry);
    RegCloseKey(key);
}

// The English text of a string id of the module's resource library, as the module shows it.
inline std::wstring resourceText(uint32_t id) {
    const std::string bytes = readFileBytes(std::filesystem::path(KORVA_BINARY_DIR) / "lib/korva/KvExtendRes.dll");
    std::vector<runtime::StringTableProblem> problems;
    const runtime::StringTable table = runtime::StringTable::parse(bytes, problems);
    const auto text = table.find(id);
    EXPECT_TRUE(text.has_value()) << "no string " << id << " in the resource library";
    return text ? std::wstring(*text) : std::wstring();
}

// TCASE on the entities of these handles, then the dialog actions (one per line).
inline std::string tcaseScript(const std::vector<std::string>& handles, const std::string& actions) {
    std::string script = "TCASE\n";
    for (const std::string& handle : handles) script += "(handent \"" + handle + "\")\n";
    return script + "\n" + actions;
}

}  // namespace korva::test::tcase
