// Writes monthly series as CSV: one line per month, or one per year with twelve months.

#ifndef VELDMARK_EXTRACT_CSV_SERIES_H_
#define VELDMARK_EXTRACT_CSV_SERIES_H_

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "extract/options.h"
#include "extract/text_output.h"
#include "extract/value_texts.h"

namespace veldmark::extract {

// Returns `field` as CSV: in double quotes if it contains a comma, a quote or a line
// end.
std::string csv_field(std::string_view field);

// Returns the headings after those of the place: "year,month,value", or
// "year,jan,...,dec".
std::string_view csv_series_heading(bool wide);

// A short text that is written many times. It is padded to whole blocks of constant
// size, so that copying it needs no call of memcpy.
class PaddedText {
 public:
  explicit PaddedText(std::string_view text) : blocks_(text), size_(text.size()) {
    blocks_.resize((size_ + kBlock - 1) / kBlock * kBlock);
  }

  // The number of characters that `write` may overwrite.
  [[nodiscard]] std::size_t padded_size() const { return blocks_.size(); }

  // Writes the text at `out`. Returns the position after it.
  char* write(char* out) const {
    for (std::size_t i = 0; i < blocks_.size(); i += kBlock) {
      std::memcpy(out + i, &blocks_[i], kBlock);
    }
    return out + size_;
  }

 private:
  static constexpr std::size_t kBlock = 16;

  std::string blocks_;
  std::size_t size_;
};

class CsvSeries {
 public:
  // Requires that `output` and `texts` outlive this object.
  CsvSeries(TextOutput& output, const ValueTexts& texts, const Years& years, bool wide);

  // Writes all lines of a series.
  //
  //   place    the first columns, including the comma after them
  //   series   all months, January of the first year first
  void write(std::string_view place, std::span<const std::int16_t> series);

 private:
  void write_long_lines(const PaddedText& place, std::span<const PaddedText> months,
                        std::span<const std::int16_t> values);
  void write_wide_line(const PaddedText& place, const PaddedText& year,
                       std::span<const std::int16_t> values);

  TextOutput& output_;
  const ValueTexts& texts_;
  bool wide_;
  std::vector<PaddedText> times_;  // "1901,1,", "1901,2,", ... or "1901", "1902", ...
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_CSV_SERIES_H_
