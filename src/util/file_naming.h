// Gives files other names where a plain rename would lose what has the name by then.
// errno tells why something failed.

#ifndef VELDMARK_UTIL_FILE_NAMING_H_
#define VELDMARK_UTIL_FILE_NAMING_H_

#include <string>

namespace veldmark {

// Renames `from` to `to` unless something stands there; false with EEXIST if it does.
// Nothing that appears at the last moment is lost, but where the file system has no
// hard links (FAT): there it is looked for just before.
bool rename_to_free_name(const std::string& from, const std::string& to);

// Lets two files exchange their names in one step; false where one of them is missing,
// and where the file system can't.
bool exchange_names(const std::string& one, const std::string& other);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_FILE_NAMING_H_
