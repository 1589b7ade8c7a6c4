#include "extract/options.h"

namespace veldmark::extract {

std::string years_text(const Years& years) {
  return std::to_string(years.first) + "-" + std::to_string(years.last);
}

}  // namespace veldmark::extract
