// Layer test support: the plan drawing is DXF text added to the host's empty
// drawing, so that the real reader loads it like any file; states and layers
// are read from the drawing's records, variables through the SDK.
#include "LayerTestSupport.h"

#include <cstdio>
#include <cstdlib>
#include <map>
#include <ostream>

#include "TestDrawing.h"
#include "db/RecordFields.h"
#include "db/Utf8.h"
#include "kced.h"
#include "resources/ExtendResourceTable.h"

namespace korva::test::layers {

std::ostream& operator<<(std::ostream& out, const LayerState& state) {
    return out << (state.off ? "off " : "on ") << (state.frozen ? "frozen " : "thawed ")
               << (state.locked ? "locked" : "unlocked");
}

namespace {

// DXF pieces added to the empty drawing where a real file holds them; handles from 0x100 upwards.
class PlanText {
public:
    void layer(const std::string& name, LayerState state) {
        m_layers += record("LAYER", "2") + "100\nAcDbLayerTableRecord\n  2\n" + name + "\n 70\n" +
                    std::to_string((state.frozen ? 1 : 0) | (state.locked ? 4 : 0)) + "\n 62\n" +
                    (state.off ? "-7" : "7") + "\n  6\nContinuous\n";
    }
    // A block definition (flags 4: an xref of that path); its lines are (layer, y) from x 0 to 10.
    void block(const std::string& name, int flags, const std::string& path,
               std::initializer_list<std::pair<const char*, double>> lines, const std::string& insert = {}) {
        const std::string owner = next();
        m_blockRecords += "  0\nBLOCK_RECORD\n  5\n" + owner + "\n330\n1\n100\nAcDbSymbolTableRecord\n100\n"
                          "AcDbBlockTableRecord\n  2\n" + name + "\n 70\n0\n280\n1\n281\n0\n";
        m_blocks += entity("BLOCK", owner, "0") + "100\nAcDbBlockBegin\n  2\n" + name + "\n 70\n" +
                    std::to_string(flags) + "\n 10\n0\n 20\n0\n 30\n0\n  3\n" + name + "\n  1\n" + path + "\n";
        if (!insert.empty()) m_blocks += reference(owner, "REFS_IN", insert, 0);
        for (const auto& [layer, y] : lines) m_blocks += line(owner, layer, y);
        m_blocks += entity("ENDBLK", owner, "0") + "100\nAcDbBlockEnd\n";
    }
    std::string modelLine(const char* layer, double y) {
        m_entities += line("1F", layer, y);
        return m_last;
    }
    std::string modelReference(const char* layer, const char* block, double x) {
        m_entities += reference("1F", layer, block, x);
        return m_last;
    }
    std::string text() const {
        std::string text = test::drawingText(m_entities, m_layers);
        const size_t records = text.find("\n  2\nBLOCK_RECORD\n");
        text.insert(text.find("  0\nENDTAB", records), m_blockRecords);
        const size_t blocks = text.find("\n  2\nBLOCKS\n");
        text.insert(text.find("  0\nENDSEC", blocks), m_blocks);
        return text;
    }

private:
    std::string next() {
        char buffer[16];
        std::snprintf(buffer, sizeof buffer, "%X", m_handle++);
        return m_last = buffer;
    }
    std::string record(const char* type, const char* owner) {
        return std::string("  0\n") + type + "\n  5\n" + next() + "\n330\n" + owner + "\n100\nAcDbSymbolTableRecord\n";
    }
    std::string entity(const char* type, const std::string& owner, const std::string& layer) {
        return std::string("  0\n") + type + "\n  5\n" + next() + "\n330\n" + owner + "\n100\nAcDbEntity\n  8\n" +
               layer + "\n";
    }
    std::string line(const std::string& owner, const std::string& layer, double y) {
        const std::string at = std::to_string(y);
        return entity("LINE", owner, layer) + "100\nAcDbLine\n 10\n0\n 20\n" + at + "\n 30\n0\n 11\n10\n 21\n" + at +
               "\n 31\n0\n";
    }
    std::string reference(const std::string& owner, const std::string& layer, const std::string& block, double x) {
        return entity("INSERT", owner, layer) + "100\nAcDbBlockReference\n  2\n" + block + "\n 10\n" +
               std::to_string(x) + "\n 20\n0\n 30\n0\n";
    }

    unsigned m_handle = 0x100;
    std::string m_last;
    std::string m_layers, m_blockRecords, m_blocks, m_entities;
};

}  // namespace

std::string planDrawing(PlanHandles* handles, std::initializer_list<std::pair<const char*, LayerState>> overrides) {
    std::map<std::string, LayerState> states;
    for (const char* name : {"WORK", "WALLS", "DOORS", "FURN", "REFS_OUT", "REFS_IN", "XREFS", "PIPES", "XR|PIPES",
                             "XR|WIRES", "05DETAIL", "XR|05DETAIL", "A.1", "A-1", "BA", "A", "Wall Detail"}) {
        states[name] = kOn;
    }
    states["LOCKED"] = kLocked;
    for (const auto& [name, state] : overrides) states[name] = state;

    PlanText plan;
    for (const auto& [name, state] : states) plan.layer(name, state);
    plan.block("INNER", 0, "", {{"FURN", 0}, {"0", 5}});
    plan.block("OUTER", 0, "", {{"WALLS", 10}}, "INNER");
    plan.block("XR", 4, "xr.dxf", {{"PIPES", 0}, {"0", 5}, {"05DETAIL", 10}, {"XR|WIRES", 15}});
    PlanHandles made;
    made.walls = plan.modelLine("WALLS", 0);
    made.doors = plan.modelLine("DOORS", 20);
    made.dotted = plan.modelLine("A.1", 40);
    made.tailBa = plan.modelLine("BA", 60);
    made.tailA = plan.modelLine("A", 80);
    made.locked = plan.modelLine("LOCKED", 100);
    made.spaced = plan.modelLine("Wall Detail", 120);
    made.work = plan.modelLine("WORK", 140);
    made.outer = plan.modelReference("REFS_OUT", "OUTER", 100);
    made.xref = plan.modelReference("XREFS", "XR", 200);
    if (handles) *handles = made;
    return plan.text();
}

LayerState stateOf(ScriptRun& run, const std::string& layer) {
    const db::ObjectRecord* record = run.drawing().tableRecord("LAYER", layer);
    if (!record) {
        ADD_FAILURE() << "no layer " << layer;
        return {};
    }
    const int64_t flags = db::fieldInteger(*record, {}, 70, 0);
    return {db::fieldInteger(*record, {}, 62, 7) < 0, (flags & 1) != 0, (flags & 4) != 0};
}

std::string layerOf(ScriptRun& run, const std::string& handle) {
    const db::ObjectRecord* entity = run.drawing().findByHandle(std::stoull(handle, nullptr, 16));
    if (!entity) {
        ADD_FAILURE() << "no entity " << handle;
        return {};
    }
    return std::string(db::fieldText(*entity, {}, 8, "0"));
}

std::string variable(const wchar_t* name) {
    resbuf value{};
    if (kcedGetVar(name, &value) != RTNORM) {
        ADD_FAILURE() << "no variable " << db::wideToUtf8(name);
        return {};
    }
    switch (value.restype) {
        case RTSTR: {
            std::string text = db::wideToUtf8(value.resval.rstring ? value.resval.rstring : L"");
            free(value.resval.rstring);
            return text;
        }
        case RTSHORT: return std::to_string(value.resval.rint);
        case RTLONG: return std::to_string(value.resval.rlong);
        default: return "?";
    }
}

std::wstring message(unsigned id, std::initializer_list<std::wstring> arguments) {
    std::wstring text = extendText(id);
    auto argument = arguments.begin();
    for (size_t at = text.find(L'%'); at != std::wstring::npos && argument != arguments.end();
         at = text.find(L'%', at)) {
        if (at + 1 < text.size() && (text[at + 1] == L's' || text[at + 1] == L'd')) {
            text.replace(at, 2, *argument);
            at += argument->size();
            ++argument;
        } else {
            at += 2;
        }
    }
    return text;
}

size_t occurrences(const std::wstring& text, const std::wstring& part) {
    size_t count = 0;
    for (size_t at = text.find(part); !part.empty() && at != std::wstring::npos; at = text.find(part, at + part.size()))
        ++count;
    return count;
}

}  // namespace korva::test::layers
