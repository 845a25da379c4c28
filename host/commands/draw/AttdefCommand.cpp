// -ATTDEF: an attribute definition from the command line. The modes are
// toggled one option at a time until Enter ("Lock position" starts on, as the
// host's default AFLAGS has it), then the tag (upper-cased, no spaces), the
// prompt (not for constant attributes), the default value, and the text
// placement that -TEXT asks for (TextPlacement.h).
#include <algorithm>
#include <cwctype>
#include <string>
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/DrawEditCommands.h"
#include "commands/draw/DrawingPlacement.h"
#include "commands/draw/TextPlacement.h"
#include "db/ObjectAccess.h"
#include "db/RecordFields.h"
#include "kced.h"
#include "kcut.h"

namespace korva::commands {

namespace {

constexpr std::string_view kAttdefMarker = "AcDbAttributeDefinition";

struct AttributeModes {
    bool invisible = false;
    bool constant = false;
    bool verify = false;
    bool preset = false;
    bool lockPosition = true;
};

const wchar_t* yesNo(bool value) { return value ? L"Y" : L"N"; }

// RTNORM when the modes were accepted (Enter), RTCAN otherwise.
int promptModes(AttributeModes& modes) {
    while (true) {
        kcutPrintf(L"\nCurrent attribute modes: Invisible=%s Constant=%s Verify=%s Preset=%s Lock position=%s",
                   yesNo(modes.invisible), yesNo(modes.constant), yesNo(modes.verify), yesNo(modes.preset),
                   yesNo(modes.lockPosition));
        kcedInitGet(0, L"Invisible Constant Verify Preset Lock");
        wchar_t option[32] = {};
        const int status =
            kcedGetKword(L"\nEnter an option to change [Invisible/Constant/Verify/Preset/Lock position] <done>: ", option, 32);
        if (status == RTNONE) return RTNORM;
        if (status != RTNORM) return RTCAN;
        const std::wstring chosen = option;
        if (chosen == L"Invisible") modes.invisible = !modes.invisible;
        else if (chosen == L"Constant") modes.constant = !modes.constant;
        else if (chosen == L"Verify") modes.verify = !modes.verify;
        else if (chosen == L"Preset") modes.preset = !modes.preset;
        else modes.lockPosition = !modes.lockPosition;
    }
}

bool promptText(bool allowSpaces, const wchar_t* prompt, std::wstring& out) {
    std::vector<wchar_t> buffer(4096, L'\0');
    if (kcedGetString(allowSpaces ? 1 : 0, prompt, buffer.data(), buffer.size()) != RTNORM) return false;
    out = buffer.data();
    return true;
}

// The lock-position flag is the 280 after the tag in the definition's subclass
// (a 280 before the prompt is the version number); files before AC1021 lack it.
void setLockPosition(db::ObjectRecord& attdef, bool locked) {
    if (!attdef.drawing || attdef.drawing->versionNumber() < 1021) return;
    std::vector<db::Tag> tags = attdef.tags.decode();
    const db::RunRange run = db::findRun(tags, kAttdefMarker);
    if (!run.found) return;
    bool afterTag = false;
    for (size_t i = run.begin; i < run.end; ++i) {
        if (tags[i].code == 2) afterTag = true;
        if (afterTag && tags[i].code == 280) {
            tags[i] = db::Tag::integerValue(280, locked ? 1 : 0);
            attdef.tags = db::TagList::encode(tags);
            return;
        }
    }
    if (!locked) return;
    tags.insert(tags.begin() + static_cast<std::ptrdiff_t>(run.end), db::Tag::integerValue(280, 1));
    attdef.tags = db::TagList::encode(tags);
}

void applyModes(KcDbAttributeDefinition& attdef, const AttributeModes& modes) {
    attdef.setInvisible(modes.invisible);
    attdef.setConstant(modes.constant);
    db::ObjectRecord& record = db::ObjectAccess::record(attdef);
    int64_t flags = db::fieldInteger(record, kAttdefMarker, 70, 0) & ~int64_t{12};
    if (modes.verify) flags |= 4;
    if (modes.preset) flags |= 8;
    db::setField(record, kAttdefMarker, db::Tag::integerValue(70, flags));
    setLockPosition(record, modes.lockPosition);
}

void attdefCommand() {
    AttributeModes modes;
    if (promptModes(modes) != RTNORM) return;
    std::wstring tag;
    while (tag.empty()) {
        if (!promptText(false, L"\nEnter attribute tag name: ", tag)) return;
    }
    std::transform(tag.begin(), tag.end(), tag.begin(),
                   [](wchar_t c) { return static_cast<wchar_t>(std::towupper(static_cast<wint_t>(c))); });
    std::wstring prompt;
    if (!modes.constant && !promptText(true, L"\nEnter attribute prompt: ", prompt)) return;
    std::wstring value;
    if (!promptText(true, modes.constant ? L"\nEnter attribute value: " : L"\nEnter default attribute value: ", value)) {
        return;
    }
    TextPlacement placement;
    if (promptTextPlacement(placement) != RTNORM) return;
    auto* definition =
        new KcDbAttributeDefinition(placement.first, value.c_str(), tag.c_str(), prompt.c_str(), placement.style);
    if (placement.height > 0.0) definition->setHeight(placement.height);
    const KcDbObjectId id = appendToCurrentSpace(definition);
    KcDbAttributeDefinition* attdef = nullptr;
    if (kcdbOpenObject(attdef, id, KcDb::kForWrite) != Kcad::eOk) return;
    placeText(*attdef, placement);
    applyModes(*attdef, modes);
    attdef->close();
}

}  // namespace

void registerAttdefCommand() { addBuiltInCommand(L"-ATTDEF", attdefCommand); }

}  // namespace korva::commands
