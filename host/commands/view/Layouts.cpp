#include "commands/view/Layouts.h"

#include <algorithm>

#include "commands/CommandInput.h"
#include "db/ApiText.h"
#include "db/RecordFactory.h"
#include "db/RecordFields.h"
#include "db/RecordTags.h"
#include "db/TextCase.h"
#include "db/objects/DictionaryEntries.h"
#include "db/objects/ObjectOwnership.h"
#include "db/tables/BlockBegin.h"
#include "editor/SystemVariables.h"

namespace korva::commands {

namespace {

constexpr std::string_view kLayoutMarker = "AcDbLayout";
constexpr std::string_view kPaperSpaceName = "*Paper_Space";

db::ObjectRecord* layoutDictionary(const db::Drawing& drawing) {
    const db::ObjectRecord* root = drawing.rootDictionary();
    if (!root) return nullptr;
    for (const db::DictionaryEntry& entry : db::dictionaryEntries(*root)) {
        if (db::namesEqual(entry.key, "ACAD_LAYOUT")) return db::liveEntryObject(*root, entry);
    }
    return nullptr;
}

LayoutInfo infoOf(const db::Drawing& drawing, db::ObjectRecord& layout) {
    LayoutInfo info;
    info.layout = &layout;
    info.name = db::toApiText(db::fieldText(layout, kLayoutMarker, 1));
    info.tabOrder = static_cast<int>(db::fieldInteger(layout, kLayoutMarker, 71, 0));
    info.block = drawing.findByHandle(db::fieldHandle(layout, kLayoutMarker, 330));
    return info;
}

// "*Paper_Space<n>" with the lowest n no block record uses.
std::string freePaperSpaceName(const db::Drawing& drawing) {
    for (int n = 0;; ++n) {
        std::string name = std::string(kPaperSpaceName) + std::to_string(n);
        if (!drawing.tableRecord("BLOCK_RECORD", name)) return name;
    }
}

// The tags of a new LAYOUT: its handle and owner, then the source's settings
// with the new name, tab and block, and no last active viewport yet.
void fillLayoutTags(db::ObjectRecord& layout, const db::ObjectRecord& source, const std::string& name, int tabOrder,
                    const db::ObjectRecord& block) {
    std::vector<db::Tag> tags{db::Tag::handle(5, layout.handle)};
    for (db::TagRef tag : db::copyWithoutIdentity(source.tags)) tags.push_back(tag.toTag());
    layout.tags = db::TagList::encode(tags);
    db::setField(layout, kLayoutMarker, db::Tag::string(1, name));
    db::setField(layout, kLayoutMarker, db::Tag::integerValue(71, tabOrder));
    db::setField(layout, kLayoutMarker, db::Tag::handle(330, block.handle));
    db::removeField(layout, kLayoutMarker, 331);
}

}  // namespace

bool LayoutInfo::isModel() const { return block && block->drawing && block == block->drawing->modelSpace(); }

std::vector<LayoutInfo> layoutsOf(const db::Drawing& drawing) {
    std::vector<LayoutInfo> layouts;
    const db::ObjectRecord* dictionary = layoutDictionary(drawing);
    if (!dictionary) return layouts;
    for (const db::DictionaryEntry& entry : db::dictionaryEntries(*dictionary)) {
        db::ObjectRecord* layout = db::liveEntryObject(*dictionary, entry);
        if (layout && layout->type == db::Type::Layout) layouts.push_back(infoOf(drawing, *layout));
    }
    std::stable_sort(layouts.begin(), layouts.end(),
                     [](const LayoutInfo& a, const LayoutInfo& b) { return a.tabOrder < b.tabOrder; });
    return layouts;
}

std::optional<LayoutInfo> findLayout(const db::Drawing& drawing, const std::wstring& name) {
    for (const LayoutInfo& layout : layoutsOf(drawing)) {
        if (sameText(layout.name, name)) return layout;
    }
    return std::nullopt;
}

std::optional<LayoutInfo> activePaperLayout(const db::Drawing& drawing) {
    for (const LayoutInfo& layout : layoutsOf(drawing)) {
        if (layout.block && layout.block == drawing.paperSpace()) return layout;
    }
    return std::nullopt;
}

void makeLayoutCurrent(editor::Document& document, const LayoutInfo& layout) {
    db::Drawing& drawing = document.drawing();
    db::ObjectRecord* active = drawing.paperSpace();
    if (layout.block && active && layout.block != active) {
        const std::string freedName(db::recordName(*layout.block));
        db::renameBlock(*layout.block, kPaperSpaceName);
        db::renameBlock(*active, freedName);
        drawing.setPaperSpace(layout.block);
        if (db::SymbolTable* blocks = drawing.table("BLOCK_RECORD")) blocks->invalidateIndex();
    }
    editor::SystemVariables::instance().setValue(L"TILEMODE", editor::VarValue::ofInteger(editor::VarType::Short, 0));
    setCurrentViewport(document, 1);
}

std::optional<LayoutInfo> createLayout(db::Drawing& drawing, const std::wstring& name, std::wstring& reason) {
    db::ObjectRecord* dictionary = layoutDictionary(drawing);
    const std::vector<LayoutInfo> layouts = layoutsOf(drawing);
    std::optional<LayoutInfo> source = activePaperLayout(drawing);
    if (!source && !layouts.empty()) source = layouts.back();
    if (drawing.versionNumber() < 1015 || !dictionary || !source) {
        reason = L"This drawing's format has no layouts.";
        return std::nullopt;
    }
    if (findLayout(drawing, name)) {
        reason = L"A layout named \"" + name + L"\" already exists.";
        return std::nullopt;
    }
    int lastTab = 0;
    for (const LayoutInfo& layout : layouts) lastTab = std::max(lastTab, layout.tabOrder);

    db::ObjectRecord& block = db::createBlock(drawing, freePaperSpaceName(drawing));
    db::ObjectRecord& layout = db::createObject(drawing, db::Type::Layout, dictionary);
    const std::string storedName = db::toStoredText(name);
    fillLayoutTags(layout, *source->layout, storedName, lastTab + 1, block);
    db::attachToOwner(layout, *dictionary);
    db::setField(block, db::tableRecordMarker(db::Type::BlockRecord), db::Tag::handle(340, layout.handle));
    db::insertDictionaryEntry(*dictionary, storedName, layout.handle, 350);
    return infoOf(drawing, layout);
}

std::vector<db::ObjectRecord*> viewportsOf(const db::ObjectRecord* layoutBlock) {
    std::vector<db::ObjectRecord*> viewports;
    if (!layoutBlock || !layoutBlock->container) return viewports;
    for (db::ObjectRecord* entity : layoutBlock->container->members) {
        if (!entity->erased && entity->type == db::Type::Viewport) viewports.push_back(entity);
    }
    return viewports;
}

int viewportNumber(const db::ObjectRecord& viewport) {
    return static_cast<int>(db::fieldInteger(viewport, "AcDbViewport", 69, 0));
}

int viewportStatus(const db::ObjectRecord& viewport) {
    return static_cast<int>(db::fieldInteger(viewport, "AcDbViewport", 68, 0));
}

bool setCurrentViewport(editor::Document& document, int number) {
    const auto value = editor::VarValue::ofInteger(editor::VarType::Short, number);
    if (editor::SystemVariables::instance().setValue(L"CVPORT", value) != RTNORM) return false;
    // The database picks the current space from the header's CVPORT.
    document.drawing().header.setInteger("$CVPORT", 70, number);
    return true;
}

}  // namespace korva::commands
