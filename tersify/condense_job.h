// Input and result of condensing one file, the same for text, gzip and netCDF.

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

// One file to condense.
//
//   name          the published file, as the user named it
//   output        the condensed copy's name; nullopt for condensed_name or, for netCDF,
//                 a name that depends on the content
//   free_space    returns the free space of a disk
//   screen        where progress is shown
//   inputs        the files that the copy must not replace
struct CondenseJob {
  std::string name;
  std::optional<std::string> output;
  FreeSpace free_space;
  const companion::ProgressLine::Screen& screen;
  companion::Inputs inputs{};
};

// The result of condensing one file.
//
//   output             the copy's name
//   size_before        bytes of the published file, compressed if it is compressed
//   size_after         bytes of the copy
//   last_line_ended    false if the last line of a text has no newline
//   warnings           whole sentences about problems that didn't prevent the copy
struct Condensed {
  std::string output;
  std::int64_t lines{};
  std::int64_t size_before{};
  std::int64_t size_after{};
  bool last_line_ended = true;
  std::vector<std::string> warnings{};
};

// Returns the default name of a file's condensed copy: ".new" is appended to the name,
// or replaces ".gz", ".nc" or ".nc.gz" at its end.
std::string condensed_name(const std::string& name);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_CONDENSE_JOB_H_
