// Describes what is wrong with a line of the input.

#ifndef VELDMARK_EXTRACT_LINE_FAULT_H_
#define VELDMARK_EXTRACT_LINE_FAULT_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace veldmark::extract {

// Returns what is wrong with a line: it has a line end inside, or one of the fields of
// `columns` (1..720, ascending) is not an integer or is too large for a value;
// nullopt for a valid line.
//
//   line    3600 characters without line end
std::optional<std::string> find_line_fault(std::string_view line,
                                           std::span<const std::int32_t> columns);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_LINE_FAULT_H_
