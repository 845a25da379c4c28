// Inserting a drawing file as a block (-INSERT with a file name): the model
// space of the file becomes a block definition whose base point is the file's
// $INSBASE; a block of that name that exists already is redefined. The layers, linetypes, text styles, dimension styles and blocks
// its entities name come along when the drawing lacks them (a name the drawing
// already has keeps the drawing's definition, as hosts do). Links by handle to
// objects of the file (materials, plot styles, hatch boundaries, image
// definitions, multiline styles) are dropped, since those objects stay behind.
#pragma once

#include <string>

#include "kcdbdatabase.h"

namespace korva::commands {

struct ImportResult {
    KcDbObjectId block;
    std::wstring error;  // why nothing was made, for the command line
};

ImportResult importDrawingAsBlock(KcDbDatabase& target, const std::wstring& path, const std::wstring& blockName);

}  // namespace korva::commands
