#include "tersify/condense_file.h"

#include <cstddef>
#include <string>
#include <string_view>

#include "companion/input_file.h"
#include "companion/line_buffer.h"
#include "tersify/condense_gzip.h"
#include "tersify/condense_netcdf.h"
#include "tersify/condense_text.h"
#include "tersify/file_bytes.h"
#include "tersify/gzip_format.h"
#include "tersify/netcdf_format.h"
#include "tersify/text_file.h"

namespace veldmark::tersify {
namespace {

using companion::InputFile;

// Returns a hint for text whose name says that it is gzip or netCDF: often it is an
// error page that a server sent instead of the file.
std::string wrong_extension_hint(std::string_view name) {
  if (name.ends_with(".gz")) {
    return " (the file is not gzip, although its name says so)";
  }
  if (name.ends_with(".nc")) {
    return " (the file is not netCDF, although its name says so)";
  }
  return "";
}

Condensed condense_plain_text(const CondenseJob& job, const InputFile& input,
                              const std::string& beginning) {
  FileBytes bytes(input, job.screen);
  try {
    Condensed done =
        condense_text(job, {.beginning = beginning,
                            .size = input.size(),
                            .read_more = [&](char* buffer, std::size_t size) {
                              return bytes.read(buffer, size);
                            }});
    done.size_before = bytes.count();
    return done;
  } catch (const TextFault& fault) {
    throw TextFault(fault.what() + wrong_extension_hint(job.name));
  }
}

}  // namespace

Condensed condense_file(const CondenseJob& job) {
  const InputFile input(job.name, InputFile::Kind::kRegular);
  CondenseJob job_with_input = job;
  job_with_input.inputs.add(input.shown_name(), input.identity());
  const std::string beginning = input.beginning(companion::kLongestLine);
  if (beginning.starts_with(kGzipMark)) {
    return condense_gzip(job_with_input, input);
  }
  if (is_netcdf(beginning)) {
    return condense_netcdf(job_with_input.name, job_with_input);
  }
  refuse_compressed(job_with_input.name, beginning);
  return condense_plain_text(job_with_input, input, beginning);
}

}  // namespace veldmark::tersify
