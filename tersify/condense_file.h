// One published file to its condensed copy, NAME to NAME.new.

#ifndef VELDMARK_TERSIFY_CONDENSE_FILE_H_
#define VELDMARK_TERSIFY_CONDENSE_FILE_H_

#include <cstdint>
#include <string>

#include "companion/inputs.h"
#include "companion/progress_line.h"
#include "tersify/disk_room.h"

namespace veldmark::tersify {

// Returns the name of the condensed copy of a file.
std::string condensed_name(const std::string& name);

// What has been done. Sizes in bytes.
struct Condensed {
  std::int64_t lines = 0;
  std::int64_t size_before = 0;
  std::int64_t size_after = 0;
  bool last_line_ended = true;
};

// Condenses a file. The copy is written beside its name, to NAME.new.part, and gets its
// name when it is complete. A last line without line end counts when it is whole.
//
//   inputs    what else the run reads; the copy must not take the place of any
//
// Throws Failure that names the file, and in it the line and the field; Interrupted
// when an InterruptWatch catches a signal. There is no NAME.new.part of this run
// afterwards, and an earlier NAME.new stays.
Condensed condense_file(const std::string& name, const FreeSpace& free_space,
                        const companion::ProgressLine::Screen& screen,
                        const companion::Inputs& inputs = {});

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_FILE_H_
