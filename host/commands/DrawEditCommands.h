// Registration of the host's drawing, block and editing commands (LINE, CIRCLE,
// ARC, PLINE, POINT, -TEXT, -ATTDEF, -BLOCK, -INSERT, ERASE, COPY, MOVE, ROTATE,
// SCALE, MIRROR, EXPLODE, WIPEOUT). Each function lives in the file of its
// commands; registerDrawEditCommands() calls them all for registerHostCommands().
#pragma once

namespace korva::commands {

void registerDrawEditCommands();

void registerLineCommand();       // LineCommand.cpp
void registerCircleCommand();     // CircleCommand.cpp
void registerArcCommand();        // ArcCommand.cpp
void registerPlineCommand();      // PlineCommand.cpp
void registerPointCommand();      // PointCommand.cpp
void registerTextCommand();       // TextCommand.cpp
void registerAttdefCommand();     // AttdefCommand.cpp
void registerBlockCommand();      // BlockCommand.cpp
void registerInsertCommand();     // InsertCommand.cpp
void registerEraseCommand();      // EraseCommand.cpp
void registerMoveCopyCommands();  // MoveCopyCommands.cpp
void registerRotateScaleCommands();  // RotateScaleCommands.cpp
void registerMirrorCommand();     // MirrorCommand.cpp
void registerExplodeCommand();    // ExplodeCommand.cpp
void registerWipeoutCommand();    // WipeoutCommand.cpp

}  // namespace korva::commands
