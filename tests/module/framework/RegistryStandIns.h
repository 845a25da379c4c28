// Stand-ins the framework tests put into the host's system registry for one
// test: a command stack that records every call (and can replace itself after
// each one, to see whether the module fetches the stack anew), and a dynamic
// linker that records lock and unlock requests. The real entries go back when
// the swap ends.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "kcedcommands.h"

namespace korva::test {

// Puts an object under a registry key until the end of the scope.
class RegistryEntrySwap {
public:
    RegistryEntrySwap(const wchar_t* key, KcRxObject* standIn) : key_(key) {
        original_ = kcrxSysRegistry()->atPut(key, standIn);
    }
    ~RegistryEntrySwap() { kcrxSysRegistry()->atPut(key_.c_str(), original_); }
    RegistryEntrySwap(const RegistryEntrySwap&) = delete;
    RegistryEntrySwap& operator=(const RegistryEntrySwap&) = delete;

private:
    std::wstring key_;
    KcRxObject* original_ = nullptr;
};

struct AddCommandCall {
    std::wstring group;
    std::wstring globalName;
    std::wstring localName;
    Kcad::Int32 flags = 0;
    KcRxFunctionPtr handler = nullptr;
    KcEdUIContext* uiContext = nullptr;
    int functionCode = 0;
    HINSTANCE resourceHandle = nullptr;
    KcEdCommand** commandOut = nullptr;
    int stackInstance = 0;  // which stand-in received the call
};

// Every call the module makes on "KCAD_REGISTERED_COMMANDS", with the stand-in
// that received it. With rotate set, each stand-in hands the registry key to a
// fresh one after its first call.
class CommandStackRecorder {
public:
    explicit CommandStackRecorder(bool rotate) : rotate_(rotate) { swap_ = std::make_unique<RegistryEntrySwap>(kKey, next()); }

    std::vector<AddCommandCall> adds;
    std::vector<std::wstring> removedGroups;

private:
    static constexpr const wchar_t* kKey = L"KCAD_REGISTERED_COMMANDS";

    class Stack final : public KcEdCommandStack {
    public:
        Stack(CommandStackRecorder& owner, int instance) : owner_(owner), instance_(instance) {}
        Kcad::ErrorStatus addCommand(const wchar_t* group, const wchar_t* globalName, const wchar_t* localName,
                                     Kcad::Int32 flags, KcRxFunctionPtr handler, KcEdUIContext* uiContext,
                                     int functionCode, HINSTANCE resourceHandle, KcEdCommand** commandOut) override {
            owner_.adds.push_back({group ? group : L"", globalName ? globalName : L"", localName ? localName : L"",
                                   flags, handler, uiContext, functionCode, resourceHandle, commandOut, instance_});
            if (owner_.rotate_) kcrxSysRegistry()->atPut(kKey, owner_.next());  // this one stays owned by the recorder
            return Kcad::eOk;
        }
        Kcad::ErrorStatus removeCmd(const wchar_t*, const wchar_t*) override { return Kcad::eOk; }
        Kcad::ErrorStatus removeGroup(const wchar_t* group) override {
            owner_.removedGroups.push_back(group ? group : L"");
            return Kcad::eOk;
        }

    private:
        CommandStackRecorder& owner_;
        int instance_;
    };

    KcEdCommandStack* next() {
        stacks_.push_back(std::make_unique<Stack>(*this, static_cast<int>(stacks_.size())));
        return stacks_.back().get();
    }

    bool rotate_;
    std::vector<std::unique_ptr<Stack>> stacks_;
    std::unique_ptr<RegistryEntrySwap> swap_;  // declared last: put back before the stand-ins go
};

// Lock and unlock requests on "DynamicLinker"; onLock runs inside a lock request.
class LinkerRecorder {
public:
    LinkerRecorder() : swap_(L"DynamicLinker", &linker_) {}

    std::vector<const void*> locks;
    std::vector<const void*> unlocks;
    std::function<void()> onLock;

private:
    class Linker final : public KcRxDynamicLinker {
    public:
        explicit Linker(LinkerRecorder& owner) : owner_(owner) {}
        bool lockApplication(void* packet) const override {
            owner_.locks.push_back(packet);
            if (owner_.onLock) owner_.onLock();
            return true;
        }
        bool unlockApplication(void* packet) const override {
            owner_.unlocks.push_back(packet);
            return true;
        }

    private:
        LinkerRecorder& owner_;
    };

    Linker linker_{*this};
    RegistryEntrySwap swap_;
};

}  // namespace korva::test
