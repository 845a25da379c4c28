// Win32 file attributes of a system file. A file is read-only when nobody may
// write it by its mode bits, or the process may not write it; the host's file
// functions refuse to write or delete read-only files as their model does, also
// when the process could (a super-user ignores mode bits).
#pragma once

#include <sys/stat.h>

#include <string>

#include "kcwindows.h"

namespace korva::runtime {

bool hasReadOnlyAttribute(const std::string& nativePath, const struct stat& info);
// FILE_ATTRIBUTE_DIRECTORY, FILE_ATTRIBUTE_READONLY or FILE_ATTRIBUTE_NORMAL.
DWORD win32Attributes(const std::string& nativePath, const struct stat& info);

}  // namespace korva::runtime
