// WMFIN: a Windows Metafile into the drawing as a block reference. The file
// name (FILEDIA), which is read and checked first; then the insertion point,
// the X scale (a number, an opposite corner, "Corner" or "XYZ"), the Y scale
// (Enter: the X scale) and the rotation, all in the current UCS. The picture
// becomes an anonymous block (WmfPictureBlock.h) and the reference goes to the
// current space on the current layer: it is the last entity afterwards.
#include <fstream>
#include <iterator>
#include <optional>
#include <vector>

#include "commands/BuiltInCommand.h"
#include "commands/CommandInput.h"
#include "commands/draw/DrawingPlacement.h"
#include "commands/draw/ScalePrompt.h"
#include "commands/wmf/WmfCommands.h"
#include "commands/wmf/WmfFileName.h"
#include "commands/wmf/WmfPictureBlock.h"
#include "db/Utf8.h"
#include "editor/Document.h"
#include "editor/Prompts.h"
#include "kced.h"
#include "kcut.h"
#include "metafile/MetafileReader.h"

namespace korva::commands::wmf {

namespace {

// Larger files are not metafiles a drawing should take in one go.
constexpr std::streamoff kLargestFile = std::streamoff{256} << 20;

std::optional<std::vector<uint8_t>> readFile(const std::wstring& path) {
    std::ifstream file(db::wideToUtf8(path), std::ios::binary);
    if (!file) return std::nullopt;
    file.seekg(0, std::ios::end);
    const std::streamoff size = file.tellg();
    if (size < 0 || size > kLargestFile) return std::nullopt;
    file.seekg(0, std::ios::beg);
    std::vector<uint8_t> bytes(static_cast<size_t>(size));
    file.read(reinterpret_cast<char*>(bytes.data()), size);
    if (!file) return std::nullopt;
    return bytes;
}

void eraseBlock(KcDbObjectId id) {
    KcDbBlockTableRecord* block = nullptr;
    if (kcdbOpenObject(block, id, KcDb::kForWrite) != Kcad::eOk) return;
    block->erase();
    block->close();
}

void wmfInCommand() {
    KcDbDatabase* database = workingDatabase();
    if (!database) return;
    std::wstring path;
    if (askMetafileName(FileUse::Read, path) != RTNORM) return;
    const std::optional<std::vector<uint8_t>> bytes = readFile(path);
    if (!bytes) {
        printMessage(L"The metafile \"" + path + L"\" could not be read.");
        return;
    }
    const metafile::MetafileReadResult read = metafile::readMetafile(*bytes);
    if (!read.ok()) {
        printMessage(L"\"" + path + L"\" is not a usable metafile: " + db::utf8ToWide(read.error) + L".");
        return;
    }
    kcad_point point;
    if (kcedGetPoint(nullptr, L"\nSpecify insertion point: ", point) != RTNORM) return;
    const std::optional<KcGeScale3d> scale = promptPlacementScale(point);
    if (!scale) return;
    double rotation = 0.0;
    if (const int status = kcedGetOrient(point, L"\nSpecify rotation angle <0>: ", &rotation);
        status != RTNORM && status != RTNONE) {
        return;
    }

    const PictureBlock picture = makePictureBlock(*database, read.picture, metafile::pictureMapping(read.picture));
    if (picture.block.isNull()) {
        printMessage(L"The metafile's block could not be made.");
        return;
    }
    if (picture.entities == 0) {
        eraseBlock(picture.block);
        printMessage(L"The metafile \"" + path + L"\" holds nothing to draw.");
        return;
    }
    if (read.picture.skippedRecords > 0) {
        printMessage(std::to_wstring(read.picture.skippedRecords) + L" metafile record(s) of kinds not imported were skipped.");
    }
    const UcsPlane ucs = UcsPlane::current();
    auto* reference = new KcDbBlockReference(KcGePoint3d::kOrigin, picture.block);
    reference->setNormal(ucs.normal());
    reference->setPosition(ucs.toWorld(point));
    reference->setScaleFactors(*scale);
    reference->setRotation(ucs.ocsAngle(rotation));
    if (appendToCurrentSpace(reference).isNull()) {
        eraseBlock(picture.block);
        printMessage(L"The metafile's block reference could not be added.");
    }
}

}  // namespace

void registerWmfInCommand() { addBuiltInCommand(L"WMFIN", wmfInCommand); }

}  // namespace korva::commands::wmf
