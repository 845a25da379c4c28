// Test drawings built from the empty template and made the working database.
#include "TestDrawing.h"

#include <gtest/gtest.h>

#include <sstream>

#include "db/DrawingIo.h"
#include "dxf/DxfReader.h"
#include "kcdbfuncs.h"

namespace korva::test {

std::string dxfLines(std::string_view pairs) {
    std::string out;
    std::istringstream in{std::string(pairs)};
    std::string line;
    while (std::getline(in, line)) {
        const size_t start = line.find_first_not_of(' ');
        if (start == std::string::npos) continue;
        const size_t space = line.find(' ', start);
        out += line.substr(start, space - start) + "\n";
        out += (space == std::string::npos ? std::string() : line.substr(space + 1)) + "\n";
    }
    return out;
}

std::string drawingText(std::string_view entities, std::string_view layers) {
    std::string text(db::emptyDrawingTemplate());
    if (!layers.empty()) {
        const size_t table = text.find("\n  2\nLAYER\n");
        const size_t end = text.find("  0\nENDTAB", table);
        text.insert(end, std::string(layers));
    }
    const std::string marker = "  2\nENTITIES\n";
    text.insert(text.find(marker) + marker.size(), std::string(entities));
    return text;
}

WorkingDrawing::WorkingDrawing(const std::string& dxfText) {
    auto result = dxf::readDxf(dxfText);
    if (!result.ok()) ADD_FAILURE() << "the test drawing does not load: " << result.error;
    audit_ = result.audit;
    database_ = std::make_unique<KcDbDatabase>(std::move(result.drawing));
    previous_ = kcdbHostApplicationServices()->workingDatabase();
    kcdbHostApplicationServices()->setWorkingDatabase(database_.get());
}

WorkingDrawing::~WorkingDrawing() {
    if (database_ && kcdbHostApplicationServices()->workingDatabase() == database_.get()) {
        kcdbHostApplicationServices()->setWorkingDatabase(previous_);
    }
}

void WorkingDrawing::name(const wchar_t* handle, kcad_name out) const {
    if (kcdbHandEnt(handle, out) != RTNORM) ADD_FAILURE() << "no object with that handle";
}

KcDbObjectId WorkingDrawing::id(const wchar_t* handle) const {
    kcad_name ent;
    name(handle, ent);
    KcDbObjectId result;
    kcdbGetObjectId(result, ent);
    return result;
}

}  // namespace korva::test
