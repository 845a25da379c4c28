// DXF text of test drawings with blocks and attributes.
#include "BlockDrawing.h"

#include <cstdio>
#include <sstream>

#include "db/DrawingIo.h"

namespace korva::test::blocks {

namespace {

std::string group(int code, const std::string& value) { return std::to_string(code) + "\n" + value + "\n"; }
std::string group(int code, int value) { return group(code, std::to_string(value)); }
std::string group(int code, double value) {
    std::ostringstream out;
    out.precision(17);
    out << value;
    return group(code, out.str());
}
std::string point(int code, const Xyz& p) { return group(code, p.x) + group(code + 10, p.y) + group(code + 20, p.z); }

std::string hex(unsigned value) {
    char buffer[16];
    std::snprintf(buffer, sizeof buffer, "%X", value);
    return buffer;
}

// Inserts text before the first marker found after the anchor.
void insertBefore(std::string& text, const std::string& anchor, const std::string& marker, const std::string& addition) {
    const size_t start = text.find(anchor);
    const size_t at = text.find(marker, start);
    text.insert(at, addition);
}

}  // namespace

std::string BlockDrawing::nextHandle() { return hex(m_nextHandle++); }

void BlockDrawing::layer(const std::string& name, int colour, bool locked) {
    m_layers += group(0, "LAYER") + group(5, nextHandle()) + group(330, "2") + group(100, "AcDbSymbolTableRecord") +
                group(100, "AcDbLayerTableRecord") + group(2, name) + group(70, locked ? 4 : 0) + group(62, colour) +
                group(6, "Continuous") + group(370, -3) + group(390, "F");
}

void BlockDrawing::textStyle(const std::string& name, double widthFactor) {
    m_styles += group(0, "STYLE") + group(5, nextHandle()) + group(330, "3") + group(100, "AcDbSymbolTableRecord") +
                group(100, "AcDbTextStyleTableRecord") + group(2, name) + group(70, 0) + group(40, 0.0) +
                group(41, widthFactor) + group(50, 0.0) + group(71, 0) + group(42, 2.5) + group(3, "txt") + group(4, "");
}

void BlockDrawing::dashedLinetype(const std::string& name) {
    m_linetypes += group(0, "LTYPE") + group(5, nextHandle()) + group(330, "5") + group(100, "AcDbSymbolTableRecord") +
                   group(100, "AcDbLinetypeTableRecord") + group(2, name) + group(70, 0) + group(3, "__ __") +
                   group(72, 65) + group(73, 2) + group(40, 1.0) + group(49, 0.5) + group(74, 0) + group(49, -0.5) +
                   group(74, 0);
}

std::string BlockDrawing::beginBlock(const std::string& name, Xyz base, int flags, bool explodable) {
    const std::string record = nextHandle();
    m_blockRecords += group(0, "BLOCK_RECORD") + group(5, record) + group(330, "1") +
                      group(100, "AcDbSymbolTableRecord") + group(100, "AcDbBlockTableRecord") + group(2, name) +
                      group(70, 0) + group(280, explodable ? 1 : 0) + group(281, 0);
    m_blocks += group(0, "BLOCK") + group(5, nextHandle()) + group(330, record) + group(100, "AcDbEntity") +
                group(8, "0") + group(100, "AcDbBlockBegin") + group(2, name) + group(70, flags) + point(10, base) +
                group(3, name) + group(1, (flags & 4) ? name + ".dwg" : "");
    m_currentBlock = record;
    m_currentBlockName = name;
    return record;
}

void BlockDrawing::endBlock() {
    m_blocks += group(0, "ENDBLK") + group(5, nextHandle()) + group(330, m_currentBlock) + group(100, "AcDbEntity") +
                group(8, "0") + group(100, "AcDbBlockEnd");
    m_currentBlock.clear();
}

std::string BlockDrawing::ownerSpaceGroups(const std::string& owner) const {
    const bool paper = owner == paperSpace() || m_paperInserts.count(owner) != 0;
    return group(330, owner) + group(100, "AcDbEntity") + (paper ? group(67, 1) : std::string());
}

std::string BlockDrawing::line(const std::string& owner, Xyz from, Xyz to, const Look& look) {
    const std::string handle = nextHandle();
    target() += group(0, "LINE") + group(5, handle) + ownerSpaceGroups(owner) + group(8, look.layer) +
                 (look.colour ? group(62, *look.colour) : std::string()) + group(100, "AcDbLine") + point(10, from) +
                 point(11, to);
    return handle;
}

std::string BlockDrawing::circle(const std::string& owner, Xyz centre, double radius, const Look& look) {
    const std::string handle = nextHandle();
    target() += group(0, "CIRCLE") + group(5, handle) + ownerSpaceGroups(owner) + group(8, look.layer) +
                 (look.colour ? group(62, *look.colour) : std::string()) + group(100, "AcDbCircle") +
                 point(10, centre) + group(40, radius);
    return handle;
}

std::string BlockDrawing::textGroups(const TextLook& look, const std::string& value) const {
    std::string text = group(8, look.layer);
    if (look.linetype) text += group(6, *look.linetype);
    if (look.colour) text += group(62, *look.colour);
    if (look.trueColour) text += group(420, *look.trueColour);
    if (look.colourName) text += group(430, *look.colourName);
    text += group(100, "AcDbText") + point(10, look.position) + group(40, look.height) + group(1, value) +
            group(50, look.rotation) + group(41, look.widthFactor) + group(51, look.oblique) + group(7, look.style) +
            group(71, look.generation) + group(72, look.horizontal);
    if (look.alignment) text += point(11, *look.alignment);
    return text;
}

std::string BlockDrawing::attdef(const std::string& owner, const std::string& tag, const std::string& value,
                                 const TextLook& look, int flags) {
    const std::string handle = nextHandle();
    target() += group(0, "ATTDEF") + group(5, handle) + ownerSpaceGroups(owner) + textGroups(look, value) +
                 group(100, "AcDbAttributeDefinition") + group(3, tag + "?") + group(2, tag) + group(70, flags) +
                 group(73, 0) + group(74, look.vertical);
    return handle;
}

std::string BlockDrawing::insert(const std::string& owner, const std::string& block, const InsertPlacement& placement,
                                 bool attributesFollow) {
    const std::string handle = nextHandle();
    if (owner == paperSpace()) m_paperInserts.insert(handle);
    target() += group(0, "INSERT") + group(5, handle) + ownerSpaceGroups(owner) + group(8, placement.look.layer) +
                 (placement.look.colour ? group(62, *placement.look.colour) : std::string()) +
                 group(100, "AcDbBlockReference") + (attributesFollow ? group(66, 1) : std::string()) +
                 group(2, block) + point(10, placement.position) + group(41, placement.scale.x) +
                 group(42, placement.scale.y) + group(43, placement.scale.z) + group(50, placement.rotation);
    return handle;
}

std::string BlockDrawing::attrib(const std::string& insertHandle, const std::string& tag, const std::string& value,
                                 const TextLook& look, int flags) {
    const std::string handle = nextHandle();
    target() += group(0, "ATTRIB") + group(5, handle) + ownerSpaceGroups(insertHandle) + textGroups(look, value) +
                 group(100, "AcDbAttribute") + group(2, tag) + group(70, flags) + group(73, 0) +
                 group(74, look.vertical);
    return handle;
}

void BlockDrawing::seqend(const std::string& insertHandle) {
    target() += group(0, "SEQEND") + group(5, nextHandle()) + ownerSpaceGroups(insertHandle) + group(8, "0");
}

std::string BlockDrawing::text() const {
    std::string text(db::emptyDrawingTemplate());
    if (!m_layers.empty()) insertBefore(text, "\n  2\nLAYER\n", "  0\nENDTAB", m_layers);
    if (!m_linetypes.empty()) insertBefore(text, "\n  2\nLTYPE\n", "  0\nENDTAB", m_linetypes);
    if (!m_styles.empty()) insertBefore(text, "\n  2\nSTYLE\n", "  0\nENDTAB", m_styles);
    if (!m_blockRecords.empty()) insertBefore(text, "\n  2\nBLOCK_RECORD\n", "  0\nENDTAB", m_blockRecords);
    if (!m_blocks.empty()) insertBefore(text, "\n  2\nBLOCKS\n", "  0\nENDSEC", m_blocks);
    const std::string entities = "  2\nENTITIES\n";
    text.insert(text.find(entities) + entities.size(), m_entities);
    return text;
}

}  // namespace korva::test::blocks
