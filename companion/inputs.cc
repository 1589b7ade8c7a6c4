#include "companion/inputs.h"

#include <utility>

#include "util/failure.h"
#include "util/in_quotes.h"
#include "util/part_file.h"

namespace veldmark::companion {

void Inputs::add(std::string shown_name, const std::optional<FileIdentity>& file) {
  if (file) {
    inputs_.push_back({std::move(shown_name), *file});
  }
}

void Inputs::require_not_an_input(const std::string& output) const {
  for (const std::string& name : {output, PartFile::part_name(output)}) {
    const std::optional<FileIdentity> written = regular_file(name);
    for (const Input& input : inputs_) {
      if (written == input.file) {
        throw Failure(in_quotes(name) + " is the same file as " + input.shown_name +
                      "; nothing was written");
      }
    }
  }
}

}  // namespace veldmark::companion
