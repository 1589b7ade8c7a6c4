#include "tersify/condense_job.h"

#include <string_view>

namespace veldmark::tersify {

std::string condensed_name(const std::string& name) {
  std::string_view stem = name;
  for (const std::string_view ending : {".gz", ".nc"}) {
    if (stem.ends_with(ending)) {
      stem.remove_suffix(ending.size());
    }
  }
  return std::string(stem) + ".new";
}

}  // namespace veldmark::tersify
