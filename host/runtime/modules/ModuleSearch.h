// Where the host looks for files of modules: the program's own folder, the
// folder of the module that asks (found from a code address inside it), and
// the default module folder <program folder>/../lib/korva.
#pragma once

#include <string>
#include <vector>

namespace korva::runtime {

// The running program (/proc/self/exe) and its folder.
const std::string& programPath();
const std::string& programFolder();
// <program folder>/../lib/korva, normalised.
std::string defaultModuleFolder();
// The folder of the shared object (or program) that holds a code address;
// the program folder when the address lies in no file.
std::string folderOfAddress(const void* address);

// The file a module name stands for: the name as given when it has a folder,
// else the first of <program folder>/name, <caller folder>/name and
// <default module folder>/name that exists. Empty with the places searched
// in `error` when there is none.
std::string findModuleFile(const std::string& name, const std::string& callerFolder, std::string& error);

}  // namespace korva::runtime
