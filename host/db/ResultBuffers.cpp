// Result buffers: C-allocated chains and the mapping of group codes to value members.
#include "db/ResultBuffers.h"

#include <charconv>
#include <cstdlib>
#include <cstring>

#include "db/ApiText.h"
#include "db/EntityNames.h"
#include "db/GroupCode.h"
#include "db/RecordTags.h"

namespace korva::db {

resbuf* newResbuf(short type) {
    auto* rb = static_cast<resbuf*>(std::calloc(1, sizeof(resbuf)));
    if (rb) rb->restype = type;
    return rb;
}

wchar_t* duplicateWide(std::wstring_view text) {
    auto* copy = static_cast<wchar_t*>(std::malloc((text.size() + 1) * sizeof(wchar_t)));
    if (!copy) return nullptr;
    std::memcpy(copy, text.data(), text.size() * sizeof(wchar_t));
    copy[text.size()] = L'\0';
    return copy;
}

ItemType itemTypeOf(int code) {
    switch (code) {
        case RTREAL:
        case RTANG:
        case RTORINT: return ItemType::Real;
        case RTPOINT:
        case RT3DPOINT: return ItemType::Point;
        case RTSHORT: return ItemType::Short;
        case RTSTR:
        case RTDXF0: return ItemType::Text;
        case RTENAME:
        case RTPICKS: return ItemType::Name;
        case RTLONG: return ItemType::Long;
        case RTNONE:
        case RTVOID:
        case RTLB:
        case RTLE:
        case RTDOTE:
        case RTNIL:
        case RTT: return ItemType::None;
        default: break;
    }
    if (code == -1 || code == -2) return ItemType::Name;
    if (code == -3) return ItemType::None;
    if (code == -4) return ItemType::Text;
    if (code == 5 || code == 105 || (code >= 320 && code <= 329) || code == 1005) return ItemType::HandleText;
    if ((code >= 330 && code <= 369) || (code >= 390 && code <= 399) || code == 480 || code == 481) return ItemType::Name;
    if (isPointCode(code)) return ItemType::Point;
    if ((code >= 310 && code <= 319) || code == 1004) return ItemType::Binary;
    switch (kindOfCode(code)) {
        case TagKind::Real: return ItemType::Real;
        case TagKind::Integer:
            if ((code >= 90 && code <= 99) || (code >= 420 && code <= 429) || (code >= 440 && code <= 459) ||
                code == 1071)
                return ItemType::Long;
            if (code >= 160 && code <= 169) return ItemType::Int64;
            return ItemType::Short;
        default: return ItemType::Text;
    }
}

void releaseResbufs(resbuf* chain) {
    while (chain) {
        resbuf* next = chain->rbnext;
        const ItemType type = itemTypeOf(chain->restype);
        if (type == ItemType::Text || type == ItemType::HandleText) std::free(chain->resval.rstring);
        else if (type == ItemType::Binary) std::free(chain->resval.rbinary.buf);
        std::free(chain);
        chain = next;
    }
}

resbuf* ResbufChain::append(short type) {
    resbuf* rb = newResbuf(type);
    if (!rb) return nullptr;
    if (tail_) tail_->rbnext = rb;
    else head_ = rb;
    tail_ = rb;
    return rb;
}

void ResbufChain::appendText(short type, std::wstring_view text) {
    if (resbuf* rb = append(type)) rb->resval.rstring = duplicateWide(text);
}

void ResbufChain::appendName(short type, const ObjectRecord* record) {
    if (resbuf* rb = append(type)) nameOf(record, rb->resval.rlname);
}

void ResbufChain::appendPoint(short type, const KcGePoint3d& point) {
    if (resbuf* rb = append(type)) {
        rb->resval.rpoint[0] = point.x;
        rb->resval.rpoint[1] = point.y;
        rb->resval.rpoint[2] = point.z;
    }
}

void ResbufChain::appendReal(short type, double value) {
    if (resbuf* rb = append(type)) rb->resval.rreal = value;
}

void ResbufChain::appendShort(short type, int value) {
    if (resbuf* rb = append(type)) rb->resval.rint = static_cast<short>(value);
}

namespace {

double numberOf(const Tag& tag) {
    if (tag.kind == TagKind::Real || tag.isPoint()) return tag.xyz[0];
    if (tag.kind == TagKind::Integer) return static_cast<double>(tag.integer);
    double value = 0.0;
    std::from_chars(tag.text.data(), tag.text.data() + tag.text.size(), value);
    return value;
}

int64_t integerOf(const Tag& tag) {
    if (tag.kind == TagKind::Integer || tag.kind == TagKind::Handle) return tag.integer;
    return integerOfReal(numberOf(tag));
}

}  // namespace

void ResbufChain::appendTag(const Tag& tag, const Drawing* drawing) {
    const short code = tag.code;
    switch (itemTypeOf(code)) {
        case ItemType::Real: appendReal(code, numberOf(tag)); return;
        case ItemType::Point: appendPoint(code, tag.isPoint() ? tag.pointValue() : KcGePoint3d(numberOf(tag), 0, 0)); return;
        case ItemType::Short: appendShort(code, static_cast<int>(integerOf(tag))); return;
        case ItemType::Long:
            if (resbuf* rb = append(code)) rb->resval.rlong = static_cast<int32_t>(integerOf(tag));
            return;
        case ItemType::Int64:
            if (resbuf* rb = append(code)) rb->resval.mnInt64 = integerOf(tag);
            return;
        case ItemType::Name:
            if (tag.kind == TagKind::Handle && drawing) appendName(code, drawing->findByHandle(tag.handleValue()));
            else appendName(code, nullptr);
            return;
        case ItemType::HandleText:
            if (tag.kind == TagKind::Handle) {
                const std::string hex = formatHandle(tag.handleValue());
                appendText(code, std::wstring(hex.begin(), hex.end()));
            } else {
                appendText(code, toApiText(tag.text));
            }
            return;
        case ItemType::Binary:
            if (resbuf* rb = append(code)) {
                const size_t n = std::min<size_t>(tag.text.size(), 32767);
                rb->resval.rbinary.clen = static_cast<short>(n);
                rb->resval.rbinary.buf = static_cast<char*>(std::malloc(n ? n : 1));
                if (rb->resval.rbinary.buf && n) std::memcpy(rb->resval.rbinary.buf, tag.text.data(), n);
            }
            return;
        case ItemType::Text: appendText(code, toApiText(tag.text)); return;
        case ItemType::None: append(code); return;
    }
}

bool tagFromResbuf(const resbuf& item, const Drawing* drawing, Tag& out, std::string* reason) {
    const int code = item.restype == RTDXF0 ? 0 : item.restype;
    auto fail = [&](const char* why) {
        if (reason) *reason = why;
        return false;
    };
    switch (itemTypeOf(code)) {
        case ItemType::Real:
            out = Tag::real(code, item.resval.rreal);
            return true;
        case ItemType::Point:
            out = Tag::point(code, {item.resval.rpoint[0], item.resval.rpoint[1], item.resval.rpoint[2]});
            return true;
        case ItemType::Short:
            out = Tag::integerValue(code, item.resval.rint);
            return true;
        case ItemType::Long:
            out = Tag::integerValue(code, item.resval.rlong);
            return true;
        case ItemType::Int64:
            out = Tag::integerValue(code, item.resval.mnInt64);
            return true;
        case ItemType::Name: {
            if (isNullName(item.resval.rlname)) {
                out = Tag::handle(code, 0);
                return true;
            }
            const ObjectRecord* record = recordOf(item.resval.rlname);
            if (!record) return fail("an entity name that names no object");
            if (record->drawing != drawing) return fail("an entity name of another drawing");
            out = Tag::handle(code, record->handle);
            return true;
        }
        case ItemType::HandleText: {
            if (!item.resval.rstring) return fail("a handle without text");
            const std::string text = toStoredText(item.resval.rstring);
            Handle value = 0;
            auto [ptr, ec] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
            if (ec != std::errc() || ptr != text.data() + text.size() || text.empty()) {
                out = Tag::string(code, text);
            } else {
                out = Tag::handle(code, value);
            }
            return true;
        }
        case ItemType::Binary:
            if (item.resval.rbinary.clen < 0 || (item.resval.rbinary.clen > 0 && !item.resval.rbinary.buf)) {
                return fail("a binary chunk without data");
            }
            out = Tag::binary(code, std::string_view(item.resval.rbinary.buf ? item.resval.rbinary.buf : "",
                                                     static_cast<size_t>(item.resval.rbinary.clen)));
            return true;
        case ItemType::Text:
            if (!item.resval.rstring) return fail("a text item without text");
            out = Tag::string(code, toStoredText(item.resval.rstring));
            return true;
        case ItemType::None: return fail("an item that carries no value");
    }
    return fail("an unknown item");
}

}  // namespace korva::db
