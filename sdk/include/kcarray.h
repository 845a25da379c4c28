// KcArray: the growable array the host API passes ids, points and pointers in.
#pragma once

#include <algorithm>
#include <utility>
#include <vector>

template <class T>
class KcArray {
public:
    KcArray() = default;
    explicit KcArray(int reserve) { m_items.reserve(reserve > 0 ? static_cast<size_t>(reserve) : 0); }

    KcArray& append(const T& value) { m_items.push_back(value); return *this; }
    KcArray& append(const KcArray& other) {
        m_items.insert(m_items.end(), other.m_items.begin(), other.m_items.end());
        return *this;
    }
    int length() const { return static_cast<int>(m_items.size()); }
    int logicalLength() const { return length(); }
    bool isEmpty() const { return m_items.empty(); }
    T& operator[](int i) { return m_items[static_cast<size_t>(i)]; }
    const T& operator[](int i) const { return m_items[static_cast<size_t>(i)]; }
    T& at(int i) { return m_items.at(static_cast<size_t>(i)); }
    const T& at(int i) const { return m_items.at(static_cast<size_t>(i)); }
    T& first() { return m_items.front(); }
    T& last() { return m_items.back(); }
    const T& first() const { return m_items.front(); }
    const T& last() const { return m_items.back(); }
    bool contains(const T& value) const { return std::find(m_items.begin(), m_items.end(), value) != m_items.end(); }
    bool find(const T& value, int& index) const {
        auto it = std::find(m_items.begin(), m_items.end(), value);
        if (it == m_items.end()) return false;
        index = static_cast<int>(it - m_items.begin());
        return true;
    }
    KcArray& removeAt(int i) { m_items.erase(m_items.begin() + i); return *this; }
    KcArray& removeLast() { m_items.pop_back(); return *this; }
    bool remove(const T& value) {
        int index = 0;
        if (!find(value, index)) return false;
        removeAt(index);
        return true;
    }
    KcArray& insertAt(int i, const T& value) { m_items.insert(m_items.begin() + i, value); return *this; }
    KcArray& setLogicalLength(int n) { m_items.resize(n > 0 ? static_cast<size_t>(n) : 0); return *this; }
    KcArray& setPhysicalLength(int n) { m_items.reserve(n > 0 ? static_cast<size_t>(n) : 0); return *this; }
    KcArray& removeAll() { m_items.clear(); return *this; }
    KcArray& reverse() { std::reverse(m_items.begin(), m_items.end()); return *this; }
    const T* asArrayPtr() const { return m_items.data(); }
    T* asArrayPtr() { return m_items.data(); }

    auto begin() { return m_items.begin(); }
    auto end() { return m_items.end(); }
    auto begin() const { return m_items.begin(); }
    auto end() const { return m_items.end(); }

    bool operator==(const KcArray& other) const { return m_items == other.m_items; }

private:
    std::vector<T> m_items;
};
