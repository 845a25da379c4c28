// LAYOFF's choice of layer. A block definition is an xref when its flags
// (group 70 of its "BLOCK" table list) have bit 4 set.
#include "layers/LayOffLayerChoice.h"

#include <cwchar>
#include <string>

#include "framework/ResbufUtils.h"
#include "kcdbfuncs.h"
#include "layers/LayerNames.h"
#include "layers/LayerRoutines.h"

namespace KvLayers {

namespace {

constexpr int kXrefBlockFlag = 4;

struct BlockOfReference {
    bool found = false;  // the reference's block is in the block table
    std::wstring name;
    int flags = 0;
    bool isXref() const { return found && (flags & kXrefBlockFlag) != 0; }
};

// The block a reference uses (its group 2) and that block's flags.
BlockOfReference blockOf(const kcad_name reference) {
    BlockOfReference block;
    ResbufChain referenceList(kcdbEntGet(reference));
    const wchar_t* name = nullptr;
    if (!referenceList || GetBufString(referenceList.get(), 2, name) != RTNORM || !name) return block;
    block.name = name;
    ResbufChain record(kcdbTblSearch(L"BLOCK", name));
    if (!record) return block;
    block.found = true;
    GetBufInt(record.get(), 70, block.flags);
    return block;
}

void copyLayer(const std::wstring& text, wchar_t* layer, size_t size) {
    std::wcsncpy(layer, text.c_str(), size - 1);
    layer[size - 1] = L'\0';
}

// "block|layer" when the layer lies in that xref, lacks a pipe and does not start with zero.
void prefixXrefName(const BlockOfReference& xref, wchar_t* layer, size_t size) {
    if (!xref.isXref() || startsWithZero(layer) || !lacksPipe(layer)) return;
    copyLayer(xrefLayerName(xref.name.c_str(), layer), layer, size);
}

// Block mode inside blocks: the layer of the reference that directly holds the object.
int blockModeLayer(const kcad_name inner, const resbuf* containers, wchar_t* layer, size_t size) {
    const BlockOfReference innerBlock = blockOf(inner);
    if (innerBlock.isXref()) {
        prefixXrefName(innerBlock, layer, size);
        return 1;
    }
    if (innerBlock.found) return GetObjLayer(inner, layer, size);
    // The inner block is not in the table: look outward for an xref reference.
    kcad_name first = {0, 0};
    kcad_name xrefReference = {0, 0};
    if (GetBufFirstAndRefNames(containers, first, xrefReference) != RTNORM) return 1;
    const BlockOfReference xref = blockOf(xrefReference);
    if (!GetObjLayer(inner, layer, size)) return 0;
    prefixXrefName(xref, layer, size);
    return 1;
}

}  // namespace

int ChooseLayOffLayer(int nesting, const kcad_name entity, const resbuf* containers, wchar_t* layer, size_t size) {
    if (!layer || size == 0 || !GetObjLayer(entity, layer, size)) return 0;
    kcad_name inner = {0, 0};
    kcad_name outer = {0, 0};
    const bool nested = GetFirstNameInBuf(containers, inner) == RTNORM && GetLastNameInBuf(containers, outer) == RTNORM;
    if (!nested) return 1;
    switch (nesting) {
        case kNestingNone:
            return GetObjLayer(outer, layer, size);
        case kNestingEntity:
            prefixXrefName(blockOf(outer), layer, size);
            return 1;
        case kNestingBlock:
        default:
            return blockModeLayer(inner, containers, layer, size);
    }
}

}  // namespace KvLayers
