// Renames that never lose a file that already has the new name.

#ifndef VELDMARK_UTIL_FILE_NAMING_H_
#define VELDMARK_UTIL_FILE_NAMING_H_

#include <string>

namespace veldmark {

// Renames `from` to `to` unless a file `to` exists. Returns false with errno set,
// EEXIST if it does. A file that appears at the last moment is kept, except where the
// file system has no hard links (FAT): there the check comes just before the rename.
bool rename_to_free_name(const std::string& from, const std::string& to);

// Exchanges the names of two files in one step. Returns false with errno set, also
// where the file system cannot do that.
bool exchange_names(const std::string& one, const std::string& other);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FILE_NAMING_H_
