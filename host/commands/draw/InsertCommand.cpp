// -INSERT: a block reference from the command line. The block name (Enter
// repeats the last one; "name=file" or a name that is a DXF file path inserts
// the file as a block, DrawingImport.h; "name=file" for an existing block asks
// whether to redefine it), the insertion point (with "Scale",
// "X", "Y", "Z" and "Rotate" to give those first), the X scale (a number, an
// opposite corner, "Corner" or "XYZ"), the Y scale (Enter: the X scale) and
// the rotation. The reference lies in the XY plane of the current UCS. With
// ATTREQ = 1 the block's attribute definitions are asked in order, with their
// prompts and defaults (constant ones are not asked and give no attribute,
// preset ones take their default, verified ones are asked again at the end).
#include <cmath>
#include <cwctype>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingImport.h"
#include "commands/draw/DrawingPlacement.h"
#include "commands/draw/ScalePrompt.h"
#include "db/Utf8.h"
#include "editor/Document.h"
#include "editor/Prompts.h"
#include "editor/SystemVariables.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

std::wstring lastBlockName;  // INSNAME: the default of the next -INSERT

struct InsertPresets {
    std::optional<KcGeScale3d> scale;
    std::optional<double> rotation;  // UCS angle
};

struct AttributeAnswer {
    KcDbObjectId definition;
    std::wstring prompt;
    std::wstring value;
    bool verify = false;
};

std::wstring lowered(std::wstring text) {
    for (wchar_t& c : text) c = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(c)));
    return text;
}

KcDbObjectId blockNamed(KcDbDatabase& database, const std::wstring& name) {
    KcDbBlockTable* table = nullptr;
    KcDbObjectId id;
    if (database.getBlockTable(table, KcDb::kForRead) != Kcad::eOk) return id;
    table->getAt(name.c_str(), id);
    table->close();
    return id;
}

// Whether a typed name is a file name: a path, or a name with the .dxf extension.
bool looksLikeFile(const std::wstring& name) {
    const std::wstring lower = lowered(name);
    return name.find_first_of(L"/\\") != std::wstring::npos ||
           (lower.size() > 4 && lower.compare(lower.size() - 4, 4, L".dxf") == 0);
}

// The file of a name, looked for as given, with ".dxf" added, and next to the drawing.
std::optional<std::wstring> findDrawingFile(const std::wstring& name) {
    std::vector<std::filesystem::path> candidates{std::filesystem::path(db::wideToUtf8(name))};
    if (!looksLikeFile(name)) candidates.emplace_back(db::wideToUtf8(name + L".dxf"));
    if (editor::Document* document = editor::Session::instance().current(); document && !document->path().empty()) {
        const std::filesystem::path folder = std::filesystem::path(document->path()).parent_path();
        const size_t count = candidates.size();
        for (size_t i = 0; i < count; ++i) {
            if (candidates[i].is_relative()) candidates.push_back(folder / candidates[i]);
        }
    }
    std::error_code error;
    for (const auto& candidate : candidates) {
        if (std::filesystem::is_regular_file(candidate, error)) return db::utf8ToWide(candidate.string());
    }
    return std::nullopt;
}

// The block to insert by the name typed; null (after a message) when there is none.
KcDbObjectId resolveBlock(KcDbDatabase& database, const std::wstring& typed) {
    std::wstring blockName = typed, fileName;
    if (const size_t equals = typed.find(L'='); equals != std::wstring::npos) {
        blockName = typed.substr(0, equals);
        fileName = typed.substr(equals + 1);
    } else if (const KcDbObjectId existing = blockNamed(database, typed); !existing.isNull()) {
        return existing;
    } else {
        fileName = typed;
        blockName = db::utf8ToWide(std::filesystem::path(db::wideToUtf8(typed)).stem().string());
        if (const KcDbObjectId known = blockNamed(database, blockName); !known.isNull()) return known;
    }
    const std::optional<std::wstring> file = findDrawingFile(fileName.empty() ? blockName : fileName);
    if (!file) {
        kcutPrintf(L"\nBlock \"%s\" not found.", typed.c_str());
        return KcDbObjectId::kNull;
    }
    if (const KcDbObjectId existing = blockNamed(database, blockName); !existing.isNull()) {
        kcedInitGet(0, L"Yes No");
        wchar_t answer[16] = {};
        const std::wstring question = L"\nBlock \"" + blockName + L"\" already exists. Redefine it? [Yes/No] <N>: ";
        const int status = kcedGetKword(question.c_str(), answer, 16);
        if (status == RTCAN) return KcDbObjectId::kNull;
        if (status != RTNORM || std::wstring(answer) != L"Yes") return existing;
    }
    const ImportResult imported = importDrawingAsBlock(database, *file, blockName);
    if (imported.block.isNull()) kcutPrintf(L"\n%s", imported.error.c_str());
    return imported.block;
}

// The insertion point, with presets of scale and rotation given first. RTNORM or the ending status.
int promptInsertionPoint(kcad_point point, InsertPresets& presets) {
    while (true) {
        kcedInitGet(0, L"Scale X Y Z Rotate");
        const int status = kcedGetPoint(nullptr, L"\nSpecify insertion point or [Scale/X/Y/Z/Rotate]: ", point);
        if (status != RTKWORD) return status;
        const std::wstring option = answeredKeyword();
        if (option == L"Rotate") {
            double rotation = 0.0;
            const int given = kcedGetOrient(nullptr, L"\nSpecify rotation angle <0>: ", &rotation);
            if (given != RTNORM && given != RTNONE) return RTCAN;
            presets.rotation = rotation;
            continue;
        }
        KcGeScale3d scale = presets.scale.value_or(KcGeScale3d(1.0));
        double factor = 1.0;
        const std::wstring axis = option == L"Scale" ? L"scale factor for XYZ axes" : option + L" scale factor";
        const int given = promptScaleFactor(L"\nSpecify " + axis + L" <1>: ", factor);
        if (given != RTNORM && given != RTNONE) return RTCAN;
        if (option == L"Scale") scale = KcGeScale3d(factor);
        else if (option == L"X") scale.sx = factor;
        else if (option == L"Y") scale.sy = factor;
        else scale.sz = factor;
        presets.scale = scale;
    }
}

std::wstring definitionPrompt(const KcDbAttributeDefinition& definition) {
    const std::wstring prompt = definition.promptConst() ? definition.promptConst() : L"";
    return prompt.empty() ? std::wstring(definition.tagConst()) : prompt;
}

// The attribute definitions of a block that make attributes, with their values answered.
bool askAttributes(KcDbObjectId block, std::vector<AttributeAnswer>& answers) {
    KcDbBlockTableRecord* record = nullptr;
    if (kcdbOpenObject(record, block, KcDb::kForRead) != Kcad::eOk) return true;
    KcDbBlockTableRecordIterator* iterator = nullptr;
    record->newIterator(iterator);
    for (; iterator && !iterator->done(); iterator->step()) {
        KcDbEntity* entity = nullptr;
        if (iterator->getEntity(entity, KcDb::kForRead) != Kcad::eOk) continue;
        if (auto* definition = KcDbAttributeDefinition::cast(entity); definition && !definition->isConstant()) {
            answers.push_back({definition->objectId(), definitionPrompt(*definition), definition->textStringConst(),
                               definition->isVerifiable()});
            if (definition->isPreset()) answers.back().prompt.clear();  // preset: the default, not asked
        }
        entity->close();
    }
    delete iterator;
    record->close();
    if (editor::SystemVariables::instance().integer(L"ATTREQ", 1) == 0) return true;
    auto ask = [](AttributeAnswer& answer) {
        const std::wstring tail = answer.value.empty() ? L": " : L" <" + answer.value + L">: ";
        std::vector<wchar_t> typed(4096, L'\0');
        if (kcedGetString(1, (L"\n" + answer.prompt + tail).c_str(), typed.data(), typed.size()) != RTNORM) return false;
        if (typed[0] != L'\0') answer.value = typed.data();
        return true;
    };
    bool announced = false;
    for (AttributeAnswer& answer : answers) {
        if (answer.prompt.empty()) continue;
        if (!announced) kcutPrintf(L"\nEnter attribute values");
        announced = true;
        if (!ask(answer)) return false;
    }
    announced = false;
    for (AttributeAnswer& answer : answers) {
        if (!answer.verify || answer.prompt.empty()) continue;
        if (!announced) kcutPrintf(L"\nVerify attribute values");
        announced = true;
        if (!ask(answer)) return false;
    }
    return true;
}

// Attributes from the definitions, placed by the reference's block transformation.
void addAttributes(KcDbObjectId referenceId, const std::vector<AttributeAnswer>& answers) {
    KcDbBlockReference* reference = nullptr;
    if (kcdbOpenObject(reference, referenceId, KcDb::kForWrite) != Kcad::eOk) return;
    const KcGeMatrix3d transform = reference->blockTransform();
    wchar_t* referenceLayer = reference->layer();
    for (const AttributeAnswer& answer : answers) {
        KcDbAttributeDefinition* definition = nullptr;
        if (kcdbOpenObject(definition, answer.definition, KcDb::kForRead) != Kcad::eOk) continue;
        auto* attribute = new KcDbAttribute();
        attribute->setAttributeFromBlock(definition, transform);
        wchar_t* definitionLayer = definition->layer();
        // Attributes defined on layer 0 go on the reference's layer.
        if (!definitionLayer || std::wstring(definitionLayer) == L"0") attribute->setLayer(referenceLayer);
        kcutDelString(definitionLayer);
        definition->close();
        attribute->setTextString(answer.value.c_str());
        if (reference->appendAttribute(attribute) == Kcad::eOk) attribute->close();
        else delete attribute;
    }
    kcutDelString(referenceLayer);
    reference->close();
}

void insertCommand() {
    KcDbDatabase* database = workingDatabase();
    if (!database) return;
    KcDbObjectId block;
    std::wstring typed;
    while (block.isNull()) {
        wchar_t name[1024] = {};
        const std::wstring prompt =
            L"\nEnter block name or [?]" + (lastBlockName.empty() ? std::wstring() : L" <" + lastBlockName + L">") + L": ";
        if (kcedGetString(0, prompt.c_str(), name, 1024) != RTNORM) return;
        typed = name[0] ? std::wstring(name) : lastBlockName;
        if (typed.empty()) return;
        block = resolveBlock(*database, typed);
        if (block.isNull()) return;
    }
    KcDbBlockTableRecord* record = nullptr;
    if (kcdbOpenObject(record, block, KcDb::kForRead) != Kcad::eOk) return;
    const wchar_t* blockName = nullptr;
    record->getName(blockName);
    lastBlockName = blockName ? blockName : typed;
    const bool layout = record->isLayout();
    record->close();
    if (layout) {
        kcutPrintf(L"\nInvalid block name.");
        return;
    }

    InsertPresets presets;
    kcad_point point;
    if (promptInsertionPoint(point, presets) != RTNORM) return;
    KcGeScale3d scale = presets.scale.value_or(KcGeScale3d(1.0));
    if (!presets.scale) {
        const auto given = promptPlacementScale(point);
        if (!given) return;
        scale = *given;
    }
    double rotation = presets.rotation.value_or(0.0);
    if (!presets.rotation) {
        const int status = kcedGetOrient(point, L"\nSpecify rotation angle <0>: ", &rotation);
        if (status != RTNORM && status != RTNONE) return;
    }
    std::vector<AttributeAnswer> answers;
    if (!askAttributes(block, answers)) return;

    const UcsPlane ucs = UcsPlane::current();
    auto* reference = new KcDbBlockReference(KcGePoint3d::kOrigin, block);
    reference->setNormal(ucs.normal());
    reference->setPosition(ucs.toWorld(point));
    reference->setScaleFactors(scale);
    reference->setRotation(ucs.ocsAngle(rotation));
    const KcDbObjectId id = appendToCurrentSpace(reference);
    if (!id.isNull() && !answers.empty()) addAttributes(id, answers);
}

}  // namespace

void registerInsertCommand() { addBuiltInCommand(L"-INSERT", insertCommand); }

}  // namespace korva::commands
