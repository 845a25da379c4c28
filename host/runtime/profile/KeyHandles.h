// The registry key handles given out by RegOpenKeyExW and RegCreateKeyExW. A
// handle stands for a key path and the access it was opened with; handles live
// in a table, so a closed, forged or garbage handle is recognised and refused
// instead of being followed. HKEY_CURRENT_USER is always valid, with all access.
#pragma once

#include <cstdint>
#include <map>
#include <mutex>
#include <optional>

#include "kcwindows.h"
#include "runtime/profile/RegistryTree.h"

namespace korva::runtime {

struct OpenKey {
    RegistryPath path;
    REGSAM access = 0;
};

class KeyHandles {
public:
    static KeyHandles& instance();

    HKEY add(OpenKey key);
    std::optional<OpenKey> find(HKEY handle) const;
    // False for a handle that is not open (closing HKEY_CURRENT_USER succeeds).
    bool remove(HKEY handle);
    size_t openCount() const;

private:
    mutable std::mutex mutex_;
    std::map<uintptr_t, OpenKey> open_;
    // Handles are never reused, so a stale copy of a closed handle stays invalid.
    uintptr_t next_ = 0x10000;
};

}  // namespace korva::runtime
