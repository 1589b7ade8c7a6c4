// What every road from a published file to its condensed copy is given, and what it
// tells at the end.

#ifndef VELDMARK_TERSIFY_CONDENSE_JOB_H_
#define VELDMARK_TERSIFY_CONDENSE_JOB_H_

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "companion/inputs.h"
#include "companion/progress_line.h"
#include "tersify/disk_space.h"

namespace veldmark::tersify {

// One input and what is to become of it.
//
//   name          the published file, as the user calls it; messages name it so
//   output        the condensed copy's name; nullopt leaves it to condensed_name, or to
//                 what a netCDF file tells of itself
//   free_space    how much room a disk has
//   screen        takes the progress
//   inputs        what else the run reads; the copy must not take the place of any
struct CondenseJob {
  std::string name;
  std::optional<std::string> output;
  FreeSpace free_space;
  const companion::ProgressLine::Screen& screen;
  companion::Inputs inputs{};
};

// What has been done.
//
//   output             the name that was written
//   size_before        bytes of the published file, compressed ones where it is
//   compressed size_after         bytes of the copy last_line_ended    false when a
//   text's last line has no line end warnings           what the input had that it
//   should not have; whole sentences
struct Condensed {
  std::string output;
  std::int64_t lines = 0;
  std::int64_t size_before = 0;
  std::int64_t size_after = 0;
  bool last_line_ended = true;
  std::vector<std::string> warnings{};
};

// Returns the name of the condensed copy of a file: ".new" at the end of it, in the
// place of ".gz", ".nc" and ".nc.gz".
std::string condensed_name(const std::string& name);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_JOB_H_
