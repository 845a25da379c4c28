// Test drawings with blocks, references and attributes: DXF text built on the
// host's empty drawing (a 2018 file), with block records, block definitions,
// layers, text styles and entities added where a real file holds them, so
// the real reader loads them as it loads any drawing. Handles are given out in
// order from 0x100 upwards; every builder call returns the handle it used.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <utility>

namespace korva::test::blocks {

struct Xyz {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
};

// The properties an ATTRIB, ATTDEF or TEXT carries (angles in degrees, as DXF stores them).
struct TextLook {
    Xyz position;
    std::optional<Xyz> alignment;  // group 11
    double height = 1.0;
    double rotation = 0.0;
    double widthFactor = 1.0;
    double oblique = 0.0;
    std::string style = "Standard";
    int horizontal = 0;  // 72
    int vertical = 0;    // 74 of an attribute or definition
    int generation = 0;  // 71
    std::string layer = "0";
    std::optional<int> colour;        // 62
    std::optional<int> trueColour;    // 420
    std::optional<std::string> colourName;  // 430
    std::optional<std::string> linetype;    // 6
};

// Common properties of the other entities.
struct Look {
    std::string layer = "0";
    std::optional<int> colour;
};

struct InsertPlacement {
    InsertPlacement(Xyz at = {}, Xyz scaleFactors = {1.0, 1.0, 1.0}, double degrees = 0.0, Look properties = {})
        : position(at), scale(scaleFactors), rotation(degrees), look(std::move(properties)) {}
    Xyz position;
    Xyz scale;
    double rotation;  // degrees
    Look look;
};

class BlockDrawing {
public:
    void layer(const std::string& name, int colour, bool locked = false);
    void textStyle(const std::string& name, double widthFactor);
    void dashedLinetype(const std::string& name);

    // A block definition; entities are added with the owner it returns. flags: group 70 (4 = xref).
    std::string beginBlock(const std::string& name, Xyz base = {}, int flags = 0, bool explodable = true);
    void endBlock();

    // Entities: owner is a block record handle from beginBlock, or modelSpace()/paperSpace().
    std::string line(const std::string& owner, Xyz from, Xyz to, const Look& look = {});
    std::string circle(const std::string& owner, Xyz centre, double radius, const Look& look = {});
    std::string attdef(const std::string& owner, const std::string& tag, const std::string& value, const TextLook& look,
                       int flags = 0);
    std::string insert(const std::string& owner, const std::string& block, const InsertPlacement& placement,
                       bool attributesFollow = false);
    std::string attrib(const std::string& insertHandle, const std::string& tag, const std::string& value,
                       const TextLook& look, int flags = 0);
    void seqend(const std::string& insertHandle);

    static std::string modelSpace() { return "1F"; }
    static std::string paperSpace() { return "1B"; }

    std::string text() const;

private:
    std::string nextHandle();
    // Where entities go: the open block, or the ENTITIES section.
    std::string& target() { return m_currentBlock.empty() ? m_entities : m_blocks; }
    std::string ownerSpaceGroups(const std::string& owner) const;
    std::string textGroups(const TextLook& look, const std::string& value) const;

    unsigned m_nextHandle = 0x100;
    std::string m_layers;
    std::string m_styles;
    std::string m_linetypes;
    std::string m_blockRecords;
    std::string m_blocks;
    std::string m_entities;
    std::string m_currentBlock;       // record handle while a block is open
    std::string m_currentBlockName;
    std::set<std::string> m_paperInserts;  // attributes of these go to paper space too
};

}  // namespace korva::test::blocks
