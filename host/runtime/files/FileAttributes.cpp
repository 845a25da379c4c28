// Win32 attributes of system files (see FileAttributes.h).
#include "runtime/files/FileAttributes.h"

#include <unistd.h>

namespace korva::runtime {

bool hasReadOnlyAttribute(const std::string& nativePath, const struct stat& info) {
    if ((info.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) return true;
    return ::access(nativePath.c_str(), W_OK) != 0;
}

DWORD win32Attributes(const std::string& nativePath, const struct stat& info) {
    if (S_ISDIR(info.st_mode)) return FILE_ATTRIBUTE_DIRECTORY;
    return hasReadOnlyAttribute(nativePath, info) ? FILE_ATTRIBUTE_READONLY : FILE_ATTRIBUTE_NORMAL;
}

}  // namespace korva::runtime
