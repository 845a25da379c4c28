// The dynamic linker modules see ("DynamicLinker" in the system registry): it
// loads and unloads modules by file name through the module loader, and locks
// and unlocks applications by their packet.
#pragma once

#include "kcrx.h"

namespace korva::runtime {

class DynamicLinker final : public KcRxDynamicLinker {
public:
    DynamicLinker() = default;

    // Searches the program folder, then the caller's folder, then the default
    // module folder. With printIt a failure is reported on the command line.
    bool loadModule(const wchar_t* fileName, bool printIt, bool asCmd = false) override;
    bool unloadModule(const wchar_t* fileName, bool asCmd = false) override;
    bool lockApplication(void* appPacket) const override;
    bool unlockApplication(void* appPacket) const override;
    bool isApplicationLocked(const wchar_t* fileName) const override;
};

}  // namespace korva::runtime
