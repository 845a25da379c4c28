// The calling thread's last error of the host's file functions (GetLastError),
// with the Win32 codes modules test for: 2 file not found, 3 path not found,
// 5 access denied, 80 file exists.
#pragma once

#include <string>

#include "kcwindows.h"

namespace korva::runtime {

void setLastError(DWORD code);
// The Win32 code for the errno of a failed operation on `nativePath`. A missing
// file is ERROR_FILE_NOT_FOUND when its folder exists, else ERROR_PATH_NOT_FOUND.
DWORD win32FileError(int error, const std::string& nativePath);
// Sets the last error from errno for `nativePath`.
void setLastErrorFromErrno(const std::string& nativePath);

}  // namespace korva::runtime
