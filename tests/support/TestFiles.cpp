// Corpus files, temporary folders and the independent reader for tests.
#include "TestFiles.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <fstream>
#include <random>
#include <sstream>

namespace korva::test {

std::vector<std::filesystem::path> corpusFiles() {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(KORVA_CORPUS_DIR)) {
        std::string ext = entry.path().extension().string();
        std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
        if (entry.is_regular_file() && ext == ".dxf") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::filesystem::path corpusFile(const std::string& name) { return std::filesystem::path(KORVA_CORPUS_DIR) / name; }

TempDir::TempDir() {
    std::random_device random;
    path_ = std::filesystem::temp_directory_path() /
            ("korva-test-" + std::to_string(::getpid()) + "-" + std::to_string(random()));
    std::filesystem::create_directories(path_);
}

TempDir::~TempDir() {
    std::error_code ec;
    std::filesystem::remove_all(path_, ec);
}

std::string readFileBytes(const std::filesystem::path& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream s;
    s << in.rdbuf();
    return s.str();
}

void writeFileBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out << bytes;
}

std::vector<std::string> openWithIndependentReader(
    const std::vector<std::pair<std::filesystem::path, std::filesystem::path>>& savedAndOriginal) {
    TempDir dir;
    std::ofstream list(dir.file("files.txt"));
    for (const auto& [saved, original] : savedAndOriginal) list << saved.string() << '\t' << original.string() << '\n';
    list.close();
    const std::string command = std::string(KORVA_PYTHON3) + " " + KORVA_SOURCE_DIR +
                                "/tests/support/independent_reader.py " + dir.file("files.txt").string() + " 2>&1";
    std::vector<std::string> complaints;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (!pipe) return {"cannot start " + command};
    std::array<char, 4096> line{};
    while (std::fgets(line.data(), static_cast<int>(line.size()), pipe)) {
        std::string text(line.data());
        while (!text.empty() && text.back() == '\n') text.pop_back();
        if (!text.empty()) complaints.push_back(text);
    }
    const int status = ::pclose(pipe);
    if (status != 0 && complaints.empty()) complaints.push_back("the reader exited with status " + std::to_string(status));
    return complaints;
}

}  // namespace korva::test
