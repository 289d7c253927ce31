#ifndef TOOLS_IO_SPLIT_PATH_H_
#define TOOLS_IO_SPLIT_PATH_H_

// Paths as text.

#include <cstddef>
#include <string>

namespace qeo::tool {

struct PathParts {
  std::string directory;  ///< "there/", or "./" when the path has none
  std::string name;       ///< empty when the path ends with a slash
};

inline PathParts SplitPath(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return {"./", path};
  return {path.substr(0, slash + 1), path.substr(slash + 1)};
}

}  // namespace qeo::tool

#endif  // TOOLS_IO_SPLIT_PATH_H_
