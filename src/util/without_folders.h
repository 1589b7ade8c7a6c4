// The name of a file without its folders.

#ifndef VELDMARK_UTIL_WITHOUT_FOLDERS_H_
#define VELDMARK_UTIL_WITHOUT_FOLDERS_H_

#include <string_view>

namespace veldmark {

// Returns what follows the last slash of `name`, which must outlive the result: all of
// a name without a slash, nothing of one that ends with it.
inline std::string_view without_folders(std::string_view name) {
  return name.substr(name.rfind('/') + 1);  // npos + 1 is 0
}

}  // namespace veldmark

#endif  // VELDMARK_UTIL_WITHOUT_FOLDERS_H_
