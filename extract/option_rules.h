// Which options go together.

#ifndef VELDMARK_EXTRACT_OPTION_RULES_H_
#define VELDMARK_EXTRACT_OPTION_RULES_H_

#include "extract/options.h"

namespace veldmark::extract {

// Throws UsageError when two of the options exclude each other, or one needs another.
//
//   deflate_given    was the compression chosen?
void check_combinations(const Options& options, bool deflate_given);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_OPTION_RULES_H_
