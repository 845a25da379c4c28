// The table of open registry key handles (see KeyHandles.h).
#include "runtime/profile/KeyHandles.h"

namespace korva::runtime {

KeyHandles& KeyHandles::instance() {
    static KeyHandles* handles = new KeyHandles;  // never destroyed: modules close keys at exit
    return *handles;
}

HKEY KeyHandles::add(OpenKey key) {
    std::lock_guard guard(mutex_);
    const uintptr_t handle = next_;
    next_ += 4;  // multiples of 4, like the handles of its model
    open_.emplace(handle, std::move(key));
    return reinterpret_cast<HKEY>(handle);
}

std::optional<OpenKey> KeyHandles::find(HKEY handle) const {
    if (handle == HKEY_CURRENT_USER) return OpenKey{RegistryPath{}, KEY_ALL_ACCESS};
    std::lock_guard guard(mutex_);
    const auto found = open_.find(reinterpret_cast<uintptr_t>(handle));
    if (found == open_.end()) return std::nullopt;
    return found->second;
}

bool KeyHandles::remove(HKEY handle) {
    if (handle == HKEY_CURRENT_USER) return true;
    std::lock_guard guard(mutex_);
    return open_.erase(reinterpret_cast<uintptr_t>(handle)) == 1;
}

size_t KeyHandles::openCount() const {
    std::lock_guard guard(mutex_);
    return open_.size();
}

}  // namespace korva::runtime
