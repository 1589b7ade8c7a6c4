#include "extract/output_names.h"

#include <sys/stat.h>

#include "util/failure.h"

namespace veldmark::extract {
namespace {

bool is_same_file(const struct stat& file, const std::string& name) {
  struct stat other {};
  return ::stat(name.c_str(), &other) == 0 && file.st_dev == other.st_dev &&
         file.st_ino == other.st_ino;
}

}  // namespace

std::vector<std::string> output_names(const Options& options) {
  if (!options.output) {
    return {};
  }
  if (options.format == Format::kTsf) {
    return {*options.output + ".TSF", *options.output + ".XY"};
  }
  return {*options.output};
}

std::string output_title(const Options& options) {
  std::string title;
  for (const std::string& name : output_names(options)) {
    title += (title.empty() ? "" : " and ") + name;
  }
  return title.empty() ? "standard output" : title;
}

void check_outputs(const Options& options, const std::vector<std::string>& inputs) {
  for (const std::string& name : output_names(options)) {
    struct stat output {};
    if (::stat(name.c_str(), &output) != 0) {
      continue;
    }
    for (const std::string& input : inputs) {
      if (is_same_file(output, input)) {
        throw Failure(name + " is read; it can't be the output as well");
      }
    }
    if (!options.overwrite) {
      throw Failure(name + " exists; --overwrite replaces it");
    }
  }
}

}  // namespace veldmark::extract
