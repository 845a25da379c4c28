// -BLOCK: a block definition from selected objects. The name (an existing one
// asks whether to redefine it), the insertion base point, then the objects,
// which move into the block: they are copied into the definition with what
// they own (attributes, vertices, extension dictionaries) and erased from their
// space, as hosts do when the objects are not retained. The definition is made
// in the current UCS: its coordinates are those of the UCS, so that inserting
// it in the same UCS puts the objects back where they were.
#include <string>
#include <vector>

#include "commands/BlockRecords.h"
#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "commands/edit/EditSelection.h"
#include "kcdbfuncs.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

void listBlocks(KcDbDatabase& database) {
    KcDbBlockTable* table = nullptr;
    if (database.getBlockTable(table, KcDb::kForRead) != Kcad::eOk) return;
    kcutPrintf(L"\nDefined blocks.");
    KcDbSymbolTableIterator* iterator = nullptr;
    table->newIterator(iterator);
    int count = 0;
    for (; iterator && !iterator->done(); iterator->step()) {
        KcDbBlockTableRecord* block = nullptr;
        if (iterator->getRecord(block, KcDb::kForRead) != Kcad::eOk) continue;
        const wchar_t* name = nullptr;
        if (!block->isLayout() && !block->isAnonymous() && block->getName(name) == Kcad::eOk) {
            kcutPrintf(L"\n  \"%s\"", name);
            ++count;
        }
        block->close();
    }
    delete iterator;
    table->close();
    kcutPrintf(L"\n%d user block(s).", count);
}

// The block of that name, or null; fails (false) for a layout's block, which is no block to define.
bool findBlock(KcDbDatabase& database, const std::wstring& name, KcDbObjectId& id) {
    id = KcDbObjectId::kNull;
    KcDbBlockTable* table = nullptr;
    if (database.getBlockTable(table, KcDb::kForRead) != Kcad::eOk) return false;
    table->getAt(name.c_str(), id);
    table->close();
    if (id.isNull()) return true;
    KcDbBlockTableRecord* block = nullptr;
    if (kcdbOpenObject(block, id, KcDb::kForRead) != Kcad::eOk) return false;
    const bool definable = !block->isLayout() && !block->isFromExternalReference();
    block->close();
    return definable;
}

// A reference among the objects to the block being redefined would make it contain itself.
bool referencesBlock(const std::vector<KcDbObjectId>& ids, KcDbObjectId block) {
    for (KcDbObjectId id : ids) {
        KcDbBlockReference* reference = nullptr;
        if (kcdbOpenObject(reference, id, KcDb::kForRead) != Kcad::eOk) continue;
        const bool self = reference->blockTableRecord() == block;
        reference->close();
        if (self) return true;
    }
    return false;
}

// The new or emptied block record with its base point.
KcDbObjectId prepareBlock(KcDbDatabase& database, const std::wstring& name, KcDbObjectId existing,
                          const KcGePoint3d& origin) {
    if (existing.isNull()) return addBlockRecord(database, name, origin);
    return emptyBlockRecord(existing, origin) ? existing : KcDbObjectId::kNull;
}

// Copies the objects into the block (in UCS coordinates) and erases them.
void moveIntoBlock(KcDbDatabase& database, const std::vector<KcDbObjectId>& ids, KcDbObjectId block,
                   const UcsPlane& ucs) {
    KcDbObjectIdArray sources;
    for (KcDbObjectId id : ids) sources.append(id);
    KcDbIdMapping map;
    if (database.deepCloneObjects(sources, block, map) != Kcad::eOk) {
        kcutPrintf(L"\nThe objects could not be copied into the block.");
        return;
    }
    for (KcDbObjectId id : ids) {
        KcDbIdPair pair(id, KcDbObjectId::kNull, false);
        if (!ucs.isWorld() && map.compute(pair) && pair.isCloned()) {
            KcDbEntity* clone = nullptr;
            if (kcdbOpenObject(clone, pair.value(), KcDb::kForWrite) == Kcad::eOk) {
                clone->transformBy(ucs.toUcsMatrix());
                clone->close();
            }
        }
        KcDbEntity* entity = nullptr;
        if (kcdbOpenObject(entity, id, KcDb::kForWrite) != Kcad::eOk) continue;
        entity->erase();
        entity->close();
    }
}

// The block name, with "?" lists and the redefinition question. False ends the command.
bool promptBlockName(KcDbDatabase& database, std::wstring& name, KcDbObjectId& existing) {
    while (true) {
        wchar_t typed[512] = {};
        if (kcedGetString(0, L"\nEnter block name or [?]: ", typed, 512) != RTNORM || typed[0] == L'\0') return false;
        name = typed;
        if (name == L"?") {
            listBlocks(database);
            continue;
        }
        if (kcdbSNValid(name.c_str(), 0) != RTNORM || !findBlock(database, name, existing)) {
            kcutPrintf(L"\nInvalid block name.");
            continue;
        }
        if (existing.isNull()) return true;
        kcedInitGet(0, L"Yes No");
        wchar_t answer[16] = {};
        const std::wstring question = L"\nBlock \"" + name + L"\" already exists. Redefine it? [Yes/No] <N>: ";
        const int status = kcedGetKword(question.c_str(), answer, 16);
        return status == RTNORM && std::wstring(answer) == L"Yes";
    }
}

void blockCommand() {
    KcDbDatabase* database = workingDatabase();
    if (!database) return;
    std::wstring name;
    KcDbObjectId existing;
    if (!promptBlockName(*database, name, existing)) return;
    kcad_point base;
    if (kcedGetPoint(nullptr, L"\nSpecify insertion base point: ", base) != RTNORM) return;
    std::vector<KcDbObjectId> ids;
    if (const int status = selectObjectsToEdit(ids); status != RTNORM) {
        if (status == RTNONE) kcutPrintf(L"\nNothing selected.");
        return;
    }
    if (!existing.isNull() && referencesBlock(ids, existing)) {
        kcutPrintf(L"\nBlock %s references itself\n*Invalid*", name.c_str());
        return;
    }
    const UcsPlane ucs = UcsPlane::current();
    const KcDbObjectId block = prepareBlock(*database, name, existing, KcGePoint3d(base[0], base[1], base[2]));
    if (block.isNull()) {
        kcutPrintf(L"\nInvalid block name.");
        return;
    }
    moveIntoBlock(*database, ids, block, ucs);
}

}  // namespace

void registerBlockCommand() { addBuiltInCommand(L"-BLOCK", blockCommand); }

}  // namespace korva::commands
