#include "extract/output_names.h"

#include <sys/stat.h>

#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::extract {
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
    title += (title.empty() ? "" : " and ") + in_quotes(name);
  }
  return title.empty() ? "standard output" : title;
}

PartFile::IfExists if_output_exists(const Options& options) {
  return options.overwrite ? PartFile::IfExists::kReplace : PartFile::IfExists::kKeep;
}

// lstat, not stat: a dangling link also occupies the name.
void check_outputs(const Options& options, const companion::Inputs& inputs) {
  for (const std::string& name : output_names(options)) {
    inputs.require_not_an_input(name);
    struct stat output {};
    if (::lstat(name.c_str(), &output) != 0) {
      continue;
    }
    if (!S_ISREG(output.st_mode) && !S_ISLNK(output.st_mode)) {
      throw Failure("cannot write " + in_quotes(name) +
                    ": it exists and is not a regular file");
    }
    if (!options.overwrite) {
      throw Failure(in_quotes(name) + " exists; --overwrite replaces it");
    }
  }
}

}  // namespace veldmark::extract
