// Which options exclude or need each other.

#ifndef VELDMARK_EXTRACT_OPTION_RULES_H_
#define VELDMARK_EXTRACT_OPTION_RULES_H_

#include "extract/options.h"

namespace veldmark::extract {

// Throws UsageError if two options exclude each other, or one needs another.
//
//   deflate_given    whether --deflate is on the command line
void check_combinations(const Options& options, bool deflate_given);

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_OPTION_RULES_H_
