// WMFOUT and WMFIN: selected objects to a Windows Metafile as the view shows
// them, and a metafile into a drawing as an anonymous block reference.
// registerWmfCommands() is called by registerHostCommands().
#pragma once

namespace korva::commands {

void registerWmfCommands();

namespace wmf {
void registerWmfOutCommand();  // WmfOutCommand.cpp
void registerWmfInCommand();   // WmfInCommand.cpp
}  // namespace wmf

}  // namespace korva::commands
