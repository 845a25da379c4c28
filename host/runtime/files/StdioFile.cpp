// CStdioFile: a text file of UTF-8 lines without a byte-order mark and without
// newline translation; ReadString strips only the "\n" that ends a line, so a
// "\r" stays part of the text. Errors never throw: a failed Open returns FALSE
// and sets the last error, and a closed file reads nothing and ignores writes.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "db/Utf8.h"
#include "kcmfc.h"
#include "runtime/files/FileAttributes.h"
#include "runtime/files/LastError.h"
#include "runtime/files/NativePath.h"

namespace {

// What m_file points to. A stdio stream must be repositioned between reading and
// writing, so the last direction is remembered.
struct OpenTextFile {
    FILE* stream = nullptr;
    bool lastWasWrite = false;
};

OpenTextFile* openFile(void* file) { return static_cast<OpenTextFile*>(file); }

void turnTo(OpenTextFile& file, bool writing) {
    if (file.lastWasWrite != writing) std::fseek(file.stream, 0, SEEK_CUR);
    file.lastWasWrite = writing;
}

}  // namespace

CStdioFile::~CStdioFile() { Close(); }

BOOL CStdioFile::Open(LPCWSTR path, UINT flags) {
    Close();
    const UINT access = flags & (modeWrite | modeReadWrite);
    if (!path || access == (modeWrite | modeReadWrite)) {
        korva::runtime::setLastError(ERROR_INVALID_PARAMETER);
        return FALSE;
    }
    const std::string native = korva::runtime::nativePath(path);
    const bool writing = access != modeRead;
    const bool creates = (flags & modeCreate) != 0;
    const bool truncates = creates && (flags & modeNoTruncate) == 0;
    struct stat info{};
    if (::stat(native.c_str(), &info) == 0) {
        const bool refused = S_ISDIR(info.st_mode) ||
                             ((writing || truncates) && korva::runtime::hasReadOnlyAttribute(native, info));
        if (refused) {
            korva::runtime::setLastError(ERROR_ACCESS_DENIED);
            return FALSE;
        }
    }
    int openFlags = O_CLOEXEC | (creates ? O_CREAT : 0) | (truncates ? O_TRUNC : 0);
    const char* streamMode = "r";
    if (access == modeReadWrite || (truncates && !writing)) {
        openFlags |= O_RDWR;
        streamMode = "r+";
    } else if (writing) {
        openFlags |= O_WRONLY;
        streamMode = "w";
    }
    const int fd = ::open(native.c_str(), openFlags, 0666);
    if (fd < 0) {
        korva::runtime::setLastErrorFromErrno(native);
        return FALSE;
    }
    FILE* stream = ::fdopen(fd, streamMode);
    if (!stream) {
        korva::runtime::setLastErrorFromErrno(native);
        ::close(fd);
        return FALSE;
    }
    m_file = new OpenTextFile{stream, false};
    return TRUE;
}

void CStdioFile::WriteString(LPCWSTR text) {
    OpenTextFile* file = openFile(m_file);
    if (!file || !text) return;
    turnTo(*file, true);
    const std::string bytes = korva::db::wideToUtf8(text);
    std::fwrite(bytes.data(), 1, bytes.size(), file->stream);
}

BOOL CStdioFile::ReadString(CString& line) {
    OpenTextFile* file = openFile(m_file);
    if (!file) return FALSE;
    turnTo(*file, false);
    const bool atStart = std::ftell(file->stream) == 0;
    char* buffer = nullptr;
    size_t capacity = 0;
    const ssize_t length = ::getline(&buffer, &capacity, file->stream);
    if (length < 0) {
        std::free(buffer);
        return FALSE;
    }
    std::string_view bytes(buffer, static_cast<size_t>(length));
    if (!bytes.empty() && bytes.back() == '\n') bytes.remove_suffix(1);
    // A byte-order mark written by another program is not part of the text.
    if (atStart && bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    line = CString(korva::db::utf8ToWide(bytes));
    std::free(buffer);
    return TRUE;
}

void CStdioFile::Close() {
    OpenTextFile* file = openFile(m_file);
    if (!file) return;
    std::fclose(file->stream);
    delete file;
    m_file = nullptr;
}
