// Layouts of a drawing as the layout commands see them: the LAYOUT objects of
// the "ACAD_LAYOUT" dictionary with their names, tab order and block records;
// which one is current; making one current; adding one; the viewports of a
// layout and the current viewport (CVPORT).
//
// DXF files name the block of the active layout "*Paper_Space" and keep its
// entities in the ENTITIES section; the other layouts' blocks are
// "*Paper_Space0", "*Paper_Space1", ... So making a layout current swaps the
// names of its block and of the block of the layout that was active.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "db/Drawing.h"
#include "editor/Document.h"

namespace korva::commands {

struct LayoutInfo {
    db::ObjectRecord* layout = nullptr;  // the LAYOUT object
    db::ObjectRecord* block = nullptr;   // its block record
    std::wstring name;
    int tabOrder = 0;
    bool isModel() const;
};

// The layouts in tab order (Model first).
std::vector<LayoutInfo> layoutsOf(const db::Drawing& drawing);
std::optional<LayoutInfo> findLayout(const db::Drawing& drawing, const std::wstring& name);
// The layout whose block is the active paper space.
std::optional<LayoutInfo> activePaperLayout(const db::Drawing& drawing);

// Makes a paper layout the active paper space and switches to it (TILEMODE 0, CVPORT 1).
void makeLayoutCurrent(editor::Document& document, const LayoutInfo& layout);
// A new layout at the end of the tabs, with the settings of the active paper layout.
// Empty with the reason when the drawing cannot hold it.
std::optional<LayoutInfo> createLayout(db::Drawing& drawing, const std::wstring& name, std::wstring& reason);

// The live VIEWPORT entities of a layout block, in creation order.
std::vector<db::ObjectRecord*> viewportsOf(const db::ObjectRecord* layoutBlock);
int viewportNumber(const db::ObjectRecord& viewport);  // group 69
int viewportStatus(const db::ObjectRecord& viewport);  // group 68: 0 off, > 0 on
// Sets CVPORT (the document's and the header's); false when no viewport has that number.
bool setCurrentViewport(editor::Document& document, int number);

}  // namespace korva::commands
