// Result-buffer chains: allocation with the C allocator (kcutRelRb frees them)
// and conversion between database tags and list items.
#pragma once

#include <string_view>
#include <vector>

#include "db/Drawing.h"
#include "db/Tag.h"
#include "kcadstd.h"

namespace korva::db {

resbuf* newResbuf(short type);
void releaseResbufs(resbuf* chain);
wchar_t* duplicateWide(std::wstring_view text);  // malloc'ed

// Appends items to a chain under construction.
class ResbufChain {
public:
    ResbufChain() = default;
    ~ResbufChain() { releaseResbufs(head_); }
    ResbufChain(const ResbufChain&) = delete;
    ResbufChain& operator=(const ResbufChain&) = delete;

    resbuf* append(short type);
    void appendText(short type, std::wstring_view text);
    void appendName(short type, const ObjectRecord* record);
    void appendPoint(short type, const KcGePoint3d& point);
    void appendReal(short type, double value);
    void appendShort(short type, int value);
    // A stored tag as the list item of its group code; references resolve in the drawing.
    void appendTag(const Tag& tag, const Drawing* drawing);
    resbuf* release() {
        resbuf* head = head_;
        head_ = tail_ = nullptr;
        return head;
    }

private:
    resbuf* head_ = nullptr;
    resbuf* tail_ = nullptr;
};

// What a group code's item holds in a result buffer.
enum class ItemType { Text, Real, Point, Short, Long, Int64, Name, HandleText, Binary, None };
ItemType itemTypeOf(int code);

// A list item to a stored tag. References given as entity names must lie in the
// drawing (a null drawing takes only null names). False (with a reason) when the item's value cannot be stored.
bool tagFromResbuf(const resbuf& item, const Drawing* drawing, Tag& out, std::string* reason = nullptr);

}  // namespace korva::db
