#include "output/search_outputs.h"

#include <optional>
#include <utility>

#include "util/file_fault.h"

namespace veldmark {
namespace {

// Throws FileFault if `name` refers to a file in use. OutputFile checks that again
// after opening it, because a link may refer to a file that the other output creates.
void require_not_in_use(const std::string& name, FilesInUse& in_use) {
  const std::optional<FileIdentity> file = regular_file(name);
  if (in_use.contains(file)) {
    throw FileFault(FileFault::Kind::kNotOpened, name, 0);
  }
  in_use.add(file);
}

}  // namespace

SearchOutputs open_search_outputs(const std::string& TsfName, const std::string& XyName,
                                  FilesInUse& in_use) {
  FilesInUse before_opening = in_use;
  require_not_in_use(TsfName, before_opening);
  require_not_in_use(XyName, before_opening);
  OutputFile time_series(TsfName, in_use);
  in_use.add(time_series.identity());
  OutputFile cell_list(XyName, in_use);
  in_use.add(cell_list.identity());
  return {std::move(time_series), std::move(cell_list)};
}

}  // namespace veldmark
