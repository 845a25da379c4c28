// Files for tests: the shared corpus, temporary folders and the independent
// DXF reader used to check saved drawings.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace korva::test {

// Every drawing of the shared corpus, sorted by name.
std::vector<std::filesystem::path> corpusFiles();
std::filesystem::path corpusFile(const std::string& name);

// A fresh folder under the system's temporary folder, removed with the object.
class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;
    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path file(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

std::string readFileBytes(const std::filesystem::path& path);
void writeFileBytes(const std::filesystem::path& path, const std::string& bytes);

// Opens each saved file with the independent reader (python3-ezdxf). A file
// whose original the reader also rejects may be opened in its recovery mode.
// Returns the reader's complaints, one line per failing file; empty when all open.
std::vector<std::string> openWithIndependentReader(
    const std::vector<std::pair<std::filesystem::path, std::filesystem::path>>& savedAndOriginal);

}  // namespace korva::test
