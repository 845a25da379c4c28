// Shared pieces of the framework tests: the command table as the module must
// register it (written out here, independently of the module's own table),
// the texts of the resource library read straight from its file, the module's
// commands as the host's command stack holds them, and messages sent to the
// loaded module.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "ModuleSession.h"
#include "db/Utf8.h"
#include "editor/CommandStack.h"
#include "kcedcommands.h"

namespace korva::test {

constexpr const wchar_t* kKvGroup = L"KV_EXTEND_COMMANDS";
constexpr const wchar_t* kKvService = L"KvExtendService";

struct ExpectedCommand {
    const wchar_t* globalName;
    int32_t flags;
    unsigned int localNameId;  // 0: registered with the global name as its local name
};

constexpr int32_t kModal = 0;
constexpr int32_t kPickFirst = 0x2;
constexpr int32_t kPickFirstRedraw = 0x6;
constexpr int32_t kLayoutOnly = 0x200002a;

// The 88 rows in registration order, then the commands registered after them.
inline const std::vector<ExpectedCommand>& expectedCommands() {
    static const std::vector<ExpectedCommand> commands = {
        {L"DIMEX", kModal, 6000},
        {L"DIMIM", kModal, 6001},
        {L"DIMREASSOC", kModal, 6004},
        {L"EXTRIM", kModal, 6005},
        {L"MPEDIT", kModal, 6006},
        {L"SYSVDLG", kModal, 6007},
        {L"BREAKLINE", kModal, 6008},
        {L"EXOFFSET", kModal, 6009},
        {L"COPYM", kPickFirstRedraw, 6010},
        {L"EXPLAN", kModal, 6011},
        {L"TXT2MTXT", kModal, 6032},
        {L"TJUST", kPickFirst, 6033},
        {L"TORIENT", kModal, 6034},
        {L"TCIRCLE", kModal, 6035},
        {L"TCOUNT", kModal, 6036},
        {L"TCASE", kModal, 6037},
        {L"CHGTHEI", kModal, 6038},
        {L"CURSTYLE", kModal, 6039},
        {L"TXTULINE", kModal, 6040},
        {L"DELULINE", kModal, 6041},
        {L"TEXTMASK", kModal, 6042},
        {L"TEXTUNMASK", kModal, 6043},
        {L"MTEXP", kModal, 6045},
        {L"TXTALIGN", kModal, 6046},
        {L"NCOPY", kModal, 6177},
        {L"BURST", kPickFirstRedraw, 6047},
        {L"BSCALE", kPickFirstRedraw, 6050},
        {L"BLOCK?", kModal, 6051},
        {L"BCOUNT", kModal, 6052},
        {L"CHGBWID", kPickFirstRedraw, 6053},
        {L"CHGBANG", kPickFirstRedraw, 6054},
        {L"CHGBHEI", kPickFirstRedraw, 6055},
        {L"CHGBLAY", kPickFirstRedraw, 6056},
        {L"CHGBCOL", kPickFirstRedraw, 6057},
        {L"EXF", kModal, 6058},
        {L"EXP1", kPickFirstRedraw, 6059},
        {L"EXW", kModal, 6060},
        {L"EXC", kModal, 6061},
        {L"EXWP", kModal, 6062},
        {L"EXCP", kModal, 6063},
        {L"GETSEL", kModal, 6064},
        {L"ARCSUM", kModal, 6069},
        {L"DELDIM", kModal, 6070},
        {L"AREASUM", kModal, 6075},
        {L"DELHATCH", kPickFirst, 6076},
        {L"LINESUM", kModal, 6077},
        {L"ZVALTO0", kModal, 6078},
        {L"BLOCKSUM", kModal, 6079},
        {L"AI_DIM_TEXTHOME", kPickFirstRedraw, 6080},
        {L"AI_DIM_TEXTCENTER", kPickFirstRedraw, 6081},
        {L"AI_DIM_TEXTABOVE", kPickFirstRedraw, 6082},
        {L"DESELECT", kModal, 6083},
        {L"CHGLTSCA", kModal, 6085},
        {L"3DARRAY", kPickFirstRedraw, 6088},
        {L"AI_TORUS", kModal, 6098},
        {L"AI_CONE", kModal, 6094},
        {L"AI_WEDGE", kModal, 6092},
        {L"AI_SPHERE", kModal, 6095},
        {L"AI_PYRAMID", kModal, 6093},
        {L"AI_DOME", kModal, 6096},
        {L"AI_DISH", kModal, 6097},
        {L"AI_BOX", kModal, 6091},
        {L"3D", kModal, 6090},
        {L"AI_CYLINDER", kModal, 6100},
        {L"DELDUPL", kPickFirst, 6111},
        {L"ARCCMP", kModal, 6112},
        {L"ANGDIV", kModal, 6113},
        {L"JOINL", kModal, 6114},
        {L"CHSPACE", kLayoutOnly, 6103},
        {L"ISOLATEOBJECTS", kPickFirstRedraw, 6104},
        {L"HIDEOBJECTS", kPickFirstRedraw, 6105},
        {L"UNISOLATEOBJECTS", kPickFirstRedraw, 6106},
        {L"GROUPUNNAME", kPickFirstRedraw, 6086},
        {L"UNGROUP", kPickFirstRedraw, 6087},
        {L"LAYCUR1", kModal, 6014},
        {L"LAYDEL", kModal, 6015},
        {L"LAYTHW", kModal, 6016},
        {L"LAYISO", kPickFirstRedraw, 6017},
        {L"LAYLCK", kModal, 6019},
        {L"LAYULK", kModal, 6020},
        {L"LAYMCH", kModal, 6021},
        {L"LAYON", kModal, 6022},
        {L"LAYOFF", kModal, 6023},
        {L"LAYCUR", kPickFirstRedraw, 6024},
        {L"-LAYDEL", kModal, 6028},
        {L"-LAYMCH", kModal, 6029},
        {L"SCALELISTEDIT", kModal, 6321},
        {L"-SCALELISTEDIT", kModal, 6700},
        // Registered after the table, with the global name as the local name.
        {L"TXTEXP", kModal, 0},
        {L"TEXTFIT", kModal, 0},
        {L"MATHEI", kModal, 0},
        {L"LAYUNISO", kModal, 0},
        {L"GATTE", kModal, 0},
        {L"FCMP", kModal, 0},
        {L"FCMP_CL", kModal, 0},
        {L"TXT2MTXTOPTIONS", kModal, 0},
    };
    return commands;
}

// The texts of the English resource library beside the module, by id (escapes undone).
inline const std::map<unsigned int, std::wstring>& resourceTexts() {
    static const std::map<unsigned int, std::wstring> texts = [] {
        std::map<unsigned int, std::wstring> out;
        std::ifstream in(extendModulePath().parent_path() / "KvExtendRes.dll");
        for (std::string line; std::getline(in, line);) {
            const size_t tab = line.find('\t');
            if (tab == std::string::npos || tab == 0) continue;
            std::string text;
            for (size_t i = tab + 1; i < line.size(); ++i) {
                if (line[i] == '\\' && i + 1 < line.size()) {
                    const char next = line[++i];
                    text += next == 'n' ? '\n' : next == 't' ? '\t' : next;
                } else {
                    text += line[i];
                }
            }
            out[static_cast<unsigned int>(std::stoul(line.substr(0, tab)))] = db::utf8ToWide(text);
        }
        return out;
    }();
    return texts;
}

inline std::wstring resourceText(unsigned int id) {
    auto it = resourceTexts().find(id);
    return it == resourceTexts().end() ? std::wstring() : it->second;
}

// The local name a command must carry: its resource text, or its global name.
inline std::wstring expectedLocalName(const ExpectedCommand& command) {
    const std::wstring text = command.localNameId ? resourceText(command.localNameId) : std::wstring();
    return text.empty() ? std::wstring(command.globalName) : text;
}

// The module's commands in the host's command stack, in registration order.
inline std::vector<const editor::CommandDefinition*> registeredKvCommands() {
    std::vector<const editor::CommandDefinition*> out;
    for (const editor::CommandDefinition& command : editor::CommandStack::instance().commands()) {
        if (command.group == kKvGroup) out.push_back(&command);
    }
    return out;
}

// Sends a message to the loaded module as the host does (the module is the message target).
inline KcRx::AppRetCode sendToModule(KcRx::AppMsgCode message, void* packet = nullptr) {
    runtime::LoadedModule* module = extendModule();
    if (!module) return KcRx::kRetError;
    return runtime::ModuleLoader::instance().send(*module, message, packet);
}

// Unloads the module's registrations and initialises it again with the real
// registry, as a fresh load leaves it.
inline void reinitialiseModule() {
    runtime::LoadedModule* module = extendModule();
    if (!module) return;
    sendToModule(KcRx::kUnloadAppMsg);
    EXPECT_EQ(sendToModule(KcRx::kInitAppMsg, module->packet()), KcRx::kRetOK) << "the module initialises again";
}

}  // namespace korva::test
