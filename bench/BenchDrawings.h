// The benchmark drawings: synthetic DXF files of N mixed entities made by the
// shared generator the first time they are needed and kept in a cache folder
// of the build tree, since the largest takes minutes to make. They are never
// committed.
#pragma once

#include <cstddef>
#include <string>

namespace korva::bench {

// The path of the drawing with `entities` model-space entities, generating it
// when the cache does not hold it yet; throws std::runtime_error on failure.
std::string benchDrawing(size_t entities);

size_t fileSize(const std::string& path);

}  // namespace korva::bench
