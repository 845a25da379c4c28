// The reading pipeline: file bytes, tokenizer, section parser, binder, audit.
#include "dxf/DxfReader.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <functional>

#include "db/Audit.h"
#include "dxf/AsciiTokenizer.h"
#include "dxf/BinaryFormat.h"
#include "dxf/BinaryTokenizer.h"
#include "dxf/DrawingBinder.h"
#include "dxf/SectionParser.h"

namespace korva::dxf {

namespace {

// A read-only memory map of a whole file; large drawings are not copied.
class MappedFile {
public:
    explicit MappedFile(const std::string& path) {
        fd_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
        if (fd_ < 0) {
            error_ = std::strerror(errno);
            return;
        }
        struct stat info {};
        if (::fstat(fd_, &info) != 0) {
            error_ = std::strerror(errno);
            return;
        }
        if (S_ISDIR(info.st_mode)) {
            error_ = "it is a folder";
            return;
        }
        size_ = static_cast<size_t>(info.st_size);
        if (size_ == 0) return;
        void* map = ::mmap(nullptr, size_, PROT_READ, MAP_PRIVATE, fd_, 0);
        if (map == MAP_FAILED) {
            error_ = std::strerror(errno);
            size_ = 0;
            return;
        }
        ::madvise(map, size_, MADV_SEQUENTIAL);
        data_ = static_cast<const char*>(map);
    }
    ~MappedFile() {
        if (data_) ::munmap(const_cast<char*>(data_), size_);
        if (fd_ >= 0) ::close(fd_);
    }
    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    const std::string& error() const { return error_; }
    std::string_view bytes() const { return {data_ ? data_ : "", size_}; }

    // Drops the pages before position from memory (they stay in the page cache).
    void release(const char* position) {
        static const size_t page = static_cast<size_t>(::sysconf(_SC_PAGESIZE));
        if (!data_ || position <= data_) return;
        const size_t upTo = (static_cast<size_t>(position - data_) / page) * page;
        if (upTo > released_) {
            ::madvise(const_cast<char*>(data_) + released_, upTo - released_, MADV_DONTNEED);
            released_ = upTo;
        }
    }

private:
    int fd_ = -1;
    const char* data_ = nullptr;
    size_t size_ = 0;
    size_t released_ = 0;
    std::string error_;
};

template <class Tokenizer>
bool parse(Tokenizer& tokenizer, db::Drawing& drawing, ParsedSections& parsed, db::AuditReport& audit,
           std::string& error) {
    SectionParser<Tokenizer> parser(tokenizer, drawing, parsed, audit);
    if (parser.run()) return true;
    error = parser.error();
    return false;
}

// Reads a drawing from bytes; releaser (optional) is told which bytes are done with.
ReadResult readBytes(std::string_view bytes, const std::function<void(const char*)>& releaser) {
    ReadResult result;
    auto drawing = std::make_unique<db::Drawing>();
    ParsedSections parsed;
    if (bytes.empty()) {
        result.error = "the file is empty";
        return result;
    }
    bool ok = false;
    if (isBinaryDxf(bytes)) {
        drawing->format.binary = true;
        std::string_view body = bytes.substr(kBinarySentinel.size());
        // R12 files use one-byte group codes; later ones two bytes, so "0" is two zero bytes.
        const bool twoByteCodes = body.size() >= 2 && body[0] == 0 && body[1] == 0;
        BinaryTokenizer tokenizer(body, twoByteCodes, kBinarySentinel.size());
        ok = parse(tokenizer, *drawing, parsed, result.audit, result.error);
    } else {
        AsciiTokenizer tokenizer(bytes);
        if (releaser) tokenizer.setReleaser(releaser);
        ok = parse(tokenizer, *drawing, parsed, result.audit, result.error);
    }
    if (!ok) return result;
    if (!parsed.hasHeader && parsed.tables.empty() && parsed.blocks.empty() && parsed.entities.empty() &&
        parsed.objects.empty()) {
        result.error = "no DXF sections were found";
        return result;
    }
    bindDrawing(*drawing, parsed, result.audit);
    db::AuditInput input{parsed.withoutHandle, parsed.duplicateHandles};
    db::auditDrawing(*drawing, input, result.audit);
    result.drawing = std::move(drawing);
    return result;
}

}  // namespace

ReadResult readDxf(std::string_view bytes) { return readBytes(bytes, nullptr); }

ReadResult readDxfFile(const std::string& path) {
    MappedFile file(path);
    if (!file.error().empty()) {
        ReadResult result;
        result.error = "cannot open \"" + path + "\": " + file.error();
        return result;
    }
    ReadResult result = readBytes(file.bytes(), [&file](const char* position) { file.release(position); });
    if (!result.ok()) result.error = "\"" + path + "\": " + result.error;
    return result;
}

}  // namespace korva::dxf
