// Layer routines: entity lists through kcdbEntGet/kcdbEntMod, layer states
// through the host's command-line layer command, each argument a string and the
// list ended by "" (which ends -LAYER). Names given to name-list options are
// escaped so that they name exactly their layer.
#include "layers/LayerRoutines.h"

#include <cwchar>
#include <string>

#include "framework/ResbufUtils.h"
#include "framework/SysVarGuards.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "layers/LayerHostState.h"
#include "layers/LayerNames.h"
#include "layers/LayerResourceIds.h"
#include "layers/LayerTexts.h"

using namespace KvLayers;

namespace {

constexpr int kLayerGroup = 8;
constexpr size_t kAnswerSize = 512;

bool isName(const resbuf* record) {
    return record && (record->restype == RTENAME || record->restype == -1 || record->restype == -2);
}

void copyName(const resbuf* record, kcad_name name) {
    name[0] = record->resval.rlname[0];
    name[1] = record->resval.rlname[1];
}

// The question before the current layer goes off: yes on Enter or an answer starting with "y".
int askTurnCurrentLayerOff(const wchar_t* layer) {
    const CString keywords = layerKeywords(LayerResourceIds::kYesNoKeywords, L"Yes No");
    CString prompt;
    prompt.Format(layerText(LayerResourceIds::kCurrentLayerOffQuestion), layer);
    kcedInitGet(0, keywords);
    wchar_t answer[kAnswerSize] = {};
    const int status = kcedGetKword(prompt, answer, kAnswerSize);
    if (status == RTCAN) return RTCAN;
    if (status == RTNONE || (status == RTNORM && (answer[0] == L'\0' || answer[0] == L'y' || answer[0] == L'Y')))
        return RTNORM;
    return RTERROR;
}

}  // namespace

int GetObjLayer(const kcad_name entity, wchar_t* layer, size_t size) {
    if (!entity || !layer || size == 0) return 0;
    layer[0] = L'\0';
    ResbufChain list(kcdbEntGet(entity));
    const wchar_t* name = nullptr;
    if (!list || GetBufString(list.get(), kLayerGroup, name) != RTNORM || !name) return 0;
    std::wcsncpy(layer, name, size - 1);
    layer[size - 1] = L'\0';
    return 1;
}

int mod_ent_layer(const kcad_name entity, const wchar_t* layer) {
    if (!entity || !layer) return RTERROR;
    ResbufChain list(kcdbEntGet(entity));
    if (!list) return RTERROR;
    const int status = SetBufString(list.get(), kLayerGroup, layer);
    if (status != RTNORM) return status;
    return kcdbEntMod(list.get());
}

int dsc_set_clayer(const wchar_t* layer) {
    if (!layer || !*layer) return RTERROR;
    set_acad_int_var(L"CMDECHO", 0);
    const std::wstring pattern = layerNamePattern(layer);
    int status = kcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_T", RTSTR, pattern.c_str(), RTSTR, L"_M", RTSTR, layer,
                             RTSTR, L"_S", RTSTR, layer, RTSTR, L"", RTNONE);
    if (status == RTNORM && !set_acad_str_var(L"clayer", layer)) status = RTERROR;
    resbuf value{};
    value.restype = RTSTR;
    value.resval.rstring = const_cast<wchar_t*>(layer);
    const int setStatus = kcedSetVar(L"CLAYER", &value);
    set_acad_int_var(L"CMDECHO", 1);
    return status == RTNORM ? setStatus : status;
}

int OffOneLayer(const wchar_t* layer) {
    if (!layer || !*layer) return RTERROR;
    std::wstring current;
    const bool isCurrent = currentLayerName(current) && sameLayerName(current.c_str(), layer);
    const std::wstring pattern = layerNamePattern(layer);
    int status = RTERROR;
    if (isCurrent) {
        const int answer = askTurnCurrentLayerOff(layer);
        if (answer != RTNORM) return answer;
        // "_Y" answers the host's own confirmation for the current layer.
        status = kcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_OFF", RTSTR, pattern.c_str(), RTSTR, L"_Y", RTSTR, L"",
                             RTNONE);
    } else {
        status = kcedCommand(RTSTR, L"_.-LAYER", RTSTR, L"_OFF", RTSTR, pattern.c_str(), RTSTR, L"", RTNONE);
    }
    if (status == RTNORM) {
        CString message;
        message.Format(layerText(LayerResourceIds::kLayerTurnedOff), layer);
        printText(message);
    }
    return RTNORM;
}

int GetFirstNameInBuf(const resbuf* containers, kcad_name name) {
    for (const resbuf* record = containers; record; record = record->rbnext) {
        if (isName(record)) {
            copyName(record, name);
            return RTNORM;
        }
    }
    return RTERROR;
}

int GetLastNameInBuf(const resbuf* containers, kcad_name name) {
    const resbuf* last = nullptr;
    for (const resbuf* record = containers; record; record = record->rbnext) {
        if (isName(record)) last = record;
    }
    if (!last) return RTERROR;
    copyName(last, name);
    return RTNORM;
}
