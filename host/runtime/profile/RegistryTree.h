// The registry store in memory: a tree of keys under HKEY_CURRENT_USER, each
// with named values. Key and value names compare without regard to case and keep
// the case they were created with. Key paths are lists of names; in text they are
// joined with "\" (and "/" is accepted as a separator too).
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "kcwindows.h"

namespace korva::runtime {

using RegistryPath = std::vector<std::wstring>;

constexpr size_t kMaxKeyNameLength = 255;
constexpr size_t kMaxValueNameLength = 16383;

// The case fold used for every name comparison of the store.
std::wstring foldRegistryName(std::wstring_view name);
bool registryNamesEqual(std::wstring_view a, std::wstring_view b);

// Splits "a\b/c\" into {a, b, c}; an empty text is the key itself ({}). Nothing
// when a name is empty (a leading or doubled separator), too long, or holds a
// control character.
std::optional<RegistryPath> splitRegistryPath(std::wstring_view path);
std::wstring joinRegistryPath(const RegistryPath& path);

struct RegistryValue {
    std::wstring name;  // "" is the key's default value
    DWORD type = REG_NONE;
    std::vector<uint8_t> data;

    bool operator==(const RegistryValue&) const = default;
};

// One key: its path as created, and its values in the order they were created.
struct RegistryKey {
    RegistryPath path;
    std::vector<RegistryValue> values;

    const RegistryValue* findValue(std::wstring_view name) const;
    // True when the value was added or its type or data changed.
    bool setValue(std::wstring_view name, DWORD type, std::vector<uint8_t> data);
    bool removeValue(std::wstring_view name);

    bool operator==(const RegistryKey&) const = default;
};

// Every key of the store by its folded path. The root key (HKEY_CURRENT_USER
// itself, the empty path) always exists.
class RegistryTree {
public:
    RegistryTree();

    const RegistryKey* findKey(const RegistryPath& path) const;
    RegistryKey* findKey(const RegistryPath& path);
    // Creates the key and its missing parents; `created` tells whether the key
    // itself is new. Existing keys keep the case of their names.
    RegistryKey& createKey(const RegistryPath& path, bool* created = nullptr);
    // Removes the key and every key below it; false when it is missing or the root.
    bool removeKey(const RegistryPath& path);

    // Keys in a stable order: every parent before its children.
    std::vector<const RegistryKey*> keys() const;
    size_t keyCount() const { return keys_.size(); }

    bool operator==(const RegistryTree&) const = default;

private:
    static std::wstring foldedPath(const RegistryPath& path);

    std::map<std::wstring, RegistryKey> keys_;
};

}  // namespace korva::runtime
