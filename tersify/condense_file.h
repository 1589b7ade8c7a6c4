// One published file to its condensed copy, NAME to NAME.new.

#ifndef VELDMARK_TERSIFY_CONDENSE_FILE_H_
#define VELDMARK_TERSIFY_CONDENSE_FILE_H_

#include <cstdint>
#include <exception>
#include <functional>
#include <optional>
#include <string>

#include "tersify/progress_line.h"
#include "util/part_file.h"

namespace veldmark::tersify {

// The name of the condensed copy of a file.
std::string condensed_name(const std::string& name);

// Bytes that can still be written to the file system of a folder; nothing when the
// system cannot tell.
using FreeSpace = std::function<std::optional<std::int64_t>(const std::string& folder)>;

std::optional<std::int64_t> system_free_space(const std::string& folder);

// What writing is connected to; tests hand in their own.
struct Disk {
  FileCalls calls = system_file_calls();
  FreeSpace free_space = system_free_space;
};

// What has been done. Sizes in bytes.
struct Condensed {
  std::int64_t lines = 0;
  std::int64_t size_before = 0;
  std::int64_t size_after = 0;
  bool last_line_ended = true;
};

// Thrown when a signal asks to stop; see util/interrupt_watch.h.
struct Interrupted : std::exception {};

// Condenses a file. The copy is written beside its name, to NAME.new.part, and gets its
// name when it is complete. A last line without line end counts when it is whole.
//
// Errors     Failure that names the file, and in it the line and the field;
// Interrupted.
//            There is no NAME.new.part afterwards, and an earlier NAME.new stays.
Condensed condense_file(const std::string& name, const Disk& disk,
                        const ProgressLine::Screen& screen);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_FILE_H_
