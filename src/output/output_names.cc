#include "output/output_names.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>

#include "util/stringclean.h"

namespace veldmark {
namespace {

// The maximum length of what a report's name takes from the data file's name.
constexpr std::size_t kMaxReportStem = 61;

OutputName joined(std::string_view stem, std::string_view extension) {
  const std::string name = std::string(stem) + std::string(extension);
  std::string field(OutputName::cut(name).view());
  stringclean(field, static_cast<std::int32_t>(field.size()));
  return OutputName::cut(field);
}

}  // namespace

OutputName extract_name(const VariableEntry& entry, std::string_view extension) {
  return joined(entry.DataFileName.view().substr(0, kMaxDataFileNameLength), extension);
}

OutputName report_name(const VariableEntry& entry) {
  const std::string_view name = entry.DataFileName.view();
  const std::size_t up_to_blank = std::min(name.find(' '), kMaxReportStem - 1) + 1;
  return joined(name.substr(0, up_to_blank), ".ftst");
}

}  // namespace veldmark
