// The series found for a site.

#ifndef VELDMARK_EXTRACT_SITE_SERIES_H_
#define VELDMARK_EXTRACT_SITE_SERIES_H_

#include <cstddef>
#include <cstdint>
#include <span>

#include "extract/place.h"

namespace veldmark::extract {

// A site and the cell used for it. Requires that the series outlive this object.
struct SiteSeries {
  std::size_t site_index;  // into the site table
  Cell cell;
  std::span<const std::int16_t> series;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_SITE_SERIES_H_
