// One block reference burst: constant attribute texts, the exploded entities in
// model space, and the reference erased.
#include "blocks/ReferenceBurst.h"

#include <cwchar>
#include <memory>

#include "framework/HostUtils.h"
#include "kcdbdatabase.h"
#include "kcdbfuncs.h"
#include "kced.h"

namespace {

constexpr Kcad::UInt16 kByBlock = 0;
constexpr Kcad::UInt16 kByLayer = 256;

// Closes an open object when the scope ends.
template <class T>
struct Closer {
    void operator()(T* object) const {
        if (object) object->close();
    }
};
template <class T>
using OpenObject = std::unique_ptr<T, Closer<T>>;

// Appends a new entity to model space (always, whatever space the reference is
// in); an entity the database refuses is deleted.
void appendToModelSpace(KcDbEntity* entity) {
    KcDbObjectId id;
    if (addEntityToDb(id, entity, true) != Kcad::eOk) {
        delete entity;
        return;
    }
    entity->close();
}

// A constant attribute definition shows its default value as a text at the
// reference's position plus the definition's, added coordinate by coordinate:
// the reference's scale and rotation are deliberately not applied.
void addConstantAttributeText(const KcGePoint3d& referencePosition, const KcDbAttributeDefinition& definition) {
    const KcGePoint3d definitionPosition = definition.position();
    const KcGePoint3d position(referencePosition.x + definitionPosition.x, referencePosition.y + definitionPosition.y,
                               referencePosition.z + definitionPosition.z);
    appendToModelSpace(new KcDbText(position, definition.textStringConst(), definition.textStyle(),
                                    definition.height(), definition.rotation()));
}

void addConstantAttributeTexts(const KcDbBlockTableRecord& block, const KcGePoint3d& referencePosition) {
    KcDbBlockTableRecordIterator* rawIterator = nullptr;
    if (block.newIterator(rawIterator) != Kcad::eOk || !rawIterator) return;
    const std::unique_ptr<KcDbBlockTableRecordIterator> iterator(rawIterator);
    for (; !iterator->done(); iterator->step()) {
        KcDbEntity* rawEntity = nullptr;
        if (iterator->getEntity(rawEntity, KcDb::kForRead) != Kcad::eOk) continue;  // skipped, as any object that fails to open
        const OpenObject<KcDbEntity> entity(rawEntity);
        const KcDbAttributeDefinition* definition = KcDbAttributeDefinition::cast(entity.get());
        if (definition && definition->isConstant()) addConstantAttributeText(referencePosition, *definition);
    }
}

bool isExactlyLayerZero(const KcDbEntity& entity) {
    wchar_t* layer = entity.layer();
    const bool zero = layer && std::wcscmp(layer, L"0") == 0;
    kcutDelString(layer);
    return zero;
}

// An entity from layer "0" with a BYLAYER or BYBLOCK colour goes to the
// reference's layer; a BYBLOCK colour (on any layer) becomes the reference's.
void adoptReferenceProperties(KcDbEntity& entity, KcDbObjectId referenceLayer, Kcad::UInt16 referenceColour) {
    const Kcad::UInt16 colour = entity.colorIndex();
    if ((colour == kByLayer || colour == kByBlock) && isExactlyLayerZero(entity)) {
        if (entity.setLayer(referenceLayer) != Kcad::eOk) {
            // The layer stays "0": the entity is still worth keeping.
        }
    }
    if (entity.colorIndex() == kByBlock) {
        if (entity.setColorIndex(referenceColour) != Kcad::eOk) {
            // The colour stays BYBLOCK, as after a plain explode.
        }
    }
}

// Explodes the reference into model space; true when the explosion succeeded.
bool explodeIntoModelSpace(const KcDbBlockReference& reference) {
    const Kcad::UInt16 referenceColour = reference.colorIndex();
    const KcDbObjectId referenceLayer = reference.layerId();
    KcDbVoidPtrArray parts;
    if (reference.explode(parts) != Kcad::eOk) {
        for (void* part : parts) delete static_cast<KcDbEntity*>(part);
        return false;
    }
    for (void* part : parts) {
        auto* entity = static_cast<KcDbEntity*>(part);
        adoptReferenceProperties(*entity, referenceLayer, referenceColour);
        appendToModelSpace(entity);
    }
    return true;
}

}  // namespace

void burstReference(const kcad_name referenceName) {
    KcDbObjectId referenceId;
    if (kcdbGetObjectId(referenceId, referenceName) != Kcad::eOk) return;
    KcDbBlockReference* rawReference = nullptr;
    if (kcdbOpenObject(rawReference, referenceId, KcDb::kForWrite) != Kcad::eOk) return;  // not a reference, or locked
    const OpenObject<KcDbBlockReference> reference(rawReference);
    {
        KcDbBlockTableRecord* rawBlock = nullptr;
        if (kcdbOpenObject(rawBlock, reference->blockTableRecord(), KcDb::kForRead) != Kcad::eOk) return;
        const OpenObject<KcDbBlockTableRecord> block(rawBlock);
        if (!block->explodable()) return;  // left alone, attributes and all
        addConstantAttributeTexts(*block, reference->position());
    }
    if (explodeIntoModelSpace(*reference)) {
        if (kcedSSSetFirst(nullptr, nullptr) != RTNORM) {
            // Clearing an absent pick-first set cannot fail in a way that matters here.
        }
    }
    // Erased even when the explosion failed: such a reference disappears without replacement.
    if (reference->erase() != Kcad::eOk) {
        // A reference that refuses the erase stays; its texts are made all the same.
    }
}
