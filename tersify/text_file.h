// Opens text files, and rejects compressed ones.

#ifndef VELDMARK_TERSIFY_TEXT_FILE_H_
#define VELDMARK_TERSIFY_TEXT_FILE_H_

#include <string>
#include <string_view>

#include "companion/input_file.h"

namespace veldmark::tersify {

// Throws Failure "'NAME' is compressed (xz); decompress it first" if the first bytes of
// a file are those of a compression format or archive.
void refuse_compressed(const std::string& name, std::string_view first_bytes);

// Opens a file. Throws Failure "cannot read 'NAME': reason" and, for a compressed
// regular file, "'NAME' is compressed (gzip); decompress it first".
companion::InputFile open_text_file(const std::string& name,
                                    companion::InputFile::Kind kind);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_TEXT_FILE_H_
