#include "extract/read_failure.h"

#include <system_error>

#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::extract {

void fail_to_read(const std::string& name, int error_number) {
  const std::string reason = error_number != 0
                                 ? std::generic_category().message(error_number)
                                 : "it became shorter";
  throw Failure("cannot read " + in_quotes(name) + ": " + reason);
}

}  // namespace veldmark::extract
