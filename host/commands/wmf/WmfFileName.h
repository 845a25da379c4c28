// The metafile name WMFOUT and WMFIN ask for: with FILEDIA = 1 through the
// file dialog (kcedGetFileNavDialog with the "wmf" filter, in save mode for
// WMFOUT), with FILEDIA = 0 on the command line. Typed names may be quoted,
// take "\" or "/" as separators, and get ".wmf" when they have no extension.
#pragma once

#include <string>

namespace korva::commands::wmf {

enum class FileUse { Write, Read };

// RTNORM with the path, or the status that ends the command (RTCAN, RTNONE).
// Reading needs an existing file; a missing one is reported and ends the command.
int askMetafileName(FileUse use, std::wstring& path);

// A typed name as a path: quotes dropped, "\" made "/", ".wmf" added when there is no extension.
std::wstring metafilePath(std::wstring typed);

}  // namespace korva::commands::wmf
