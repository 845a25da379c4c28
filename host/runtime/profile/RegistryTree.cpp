// The registry store in memory (see RegistryTree.h).
#include "runtime/profile/RegistryTree.h"

#include <algorithm>

#include "db/Utf8.h"

namespace korva::runtime {

namespace {

bool isSeparator(wchar_t c) { return c == L'\\' || c == L'/'; }

// Names become section headers of the store file, one per line: no control
// characters, and only Unicode scalar values.
bool isValidKeyName(std::wstring_view name) {
    if (name.empty() || name.size() > kMaxKeyNameLength) return false;
    return std::all_of(name.begin(), name.end(), [](wchar_t c) {
        const auto code = static_cast<uint32_t>(c);
        return code >= 0x20 && code != 0x7F && !(code >= 0xD800 && code <= 0xDFFF) && code <= 0x10FFFF;
    });
}

}  // namespace

std::wstring foldRegistryName(std::wstring_view name) {
    std::wstring folded(name);
    for (wchar_t& c : folded) c = static_cast<wchar_t>(db::upperCodepoint(static_cast<char32_t>(c)));
    return folded;
}

bool registryNamesEqual(std::wstring_view a, std::wstring_view b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i) {
        if (a[i] != b[i] && db::upperCodepoint(static_cast<char32_t>(a[i])) != db::upperCodepoint(static_cast<char32_t>(b[i])))
            return false;
    }
    return true;
}

std::optional<RegistryPath> splitRegistryPath(std::wstring_view path) {
    RegistryPath names;
    if (!path.empty() && isSeparator(path.back())) path.remove_suffix(1);
    if (path.empty()) return names;
    size_t start = 0;
    while (true) {
        size_t end = start;
        while (end < path.size() && !isSeparator(path[end])) ++end;
        const std::wstring_view name = path.substr(start, end - start);
        if (!isValidKeyName(name)) return std::nullopt;
        names.emplace_back(name);
        if (end == path.size()) break;
        start = end + 1;
    }
    return names;
}

std::wstring joinRegistryPath(const RegistryPath& path) {
    std::wstring joined;
    for (const std::wstring& name : path) {
        if (!joined.empty()) joined += L'\\';
        joined += name;
    }
    return joined;
}

const RegistryValue* RegistryKey::findValue(std::wstring_view name) const {
    for (const RegistryValue& value : values) {
        if (registryNamesEqual(value.name, name)) return &value;
    }
    return nullptr;
}

bool RegistryKey::setValue(std::wstring_view name, DWORD type, std::vector<uint8_t> data) {
    for (RegistryValue& value : values) {
        if (!registryNamesEqual(value.name, name)) continue;
        if (value.type == type && value.data == data) return false;
        value.type = type;
        value.data = std::move(data);
        return true;
    }
    values.push_back(RegistryValue{std::wstring(name), type, std::move(data)});
    return true;
}

bool RegistryKey::removeValue(std::wstring_view name) {
    const auto found = std::find_if(values.begin(), values.end(),
                                    [&](const RegistryValue& value) { return registryNamesEqual(value.name, name); });
    if (found == values.end()) return false;
    values.erase(found);
    return true;
}

RegistryTree::RegistryTree() { keys_.emplace(std::wstring(), RegistryKey{}); }

std::wstring RegistryTree::foldedPath(const RegistryPath& path) { return foldRegistryName(joinRegistryPath(path)); }

const RegistryKey* RegistryTree::findKey(const RegistryPath& path) const {
    const auto found = keys_.find(foldedPath(path));
    return found == keys_.end() ? nullptr : &found->second;
}

RegistryKey* RegistryTree::findKey(const RegistryPath& path) {
    const auto found = keys_.find(foldedPath(path));
    return found == keys_.end() ? nullptr : &found->second;
}

RegistryKey& RegistryTree::createKey(const RegistryPath& path, bool* created) {
    if (created) *created = false;
    RegistryKey* key = &keys_.at(std::wstring());
    RegistryPath prefix;
    for (const std::wstring& name : path) {
        prefix.push_back(name);
        const std::wstring folded = foldedPath(prefix);
        auto found = keys_.find(folded);
        if (found == keys_.end()) {
            // A new key takes its parent's path as stored, so parents keep their case.
            RegistryKey child;
            child.path = key->path;
            child.path.push_back(name);
            found = keys_.emplace(folded, std::move(child)).first;
            if (created) *created = true;
        } else if (created) {
            *created = false;
        }
        key = &found->second;
        prefix = key->path;
    }
    return *key;
}

bool RegistryTree::removeKey(const RegistryPath& path) {
    if (path.empty()) return false;
    const std::wstring folded = foldedPath(path);
    const auto found = keys_.find(folded);
    if (found == keys_.end()) return false;
    keys_.erase(found);
    // Every key below shares the prefix "path\", so they sort together.
    const std::wstring below = folded + L'\\';
    for (auto it = keys_.lower_bound(below); it != keys_.end() && it->first.starts_with(below);) it = keys_.erase(it);
    return true;
}

std::vector<const RegistryKey*> RegistryTree::keys() const {
    std::vector<const RegistryKey*> out;
    out.reserve(keys_.size());
    for (const auto& entry : keys_) out.push_back(&entry.second);
    return out;
}

}  // namespace korva::runtime
