// Monthly series as CSV: a line a month, or a line a year with twelve months.

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

// Returns `field` as it stands in a CSV line: in double quotes where it holds a comma,
// a quote or a line end.
std::string csv_field(std::string_view field);

// The columns after those of the place: "year,month,value", or "year,jan,...,dec".
std::string_view csv_series_heading(bool wide);

// A short text that is written many times: in whole blocks, which takes no call of the
// library's copy.
class BlockText {
 public:
  explicit BlockText(std::string_view text) : blocks_(text), size_(text.size()) {
    blocks_.resize((size_ + kBlock - 1) / kBlock * kBlock);
  }

  // How many characters `write` may overwrite.
  [[nodiscard]] std::size_t copied() const { return blocks_.size(); }

  // Writes the text at `out`; returns the place behind it.
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
  // Values are written as `texts` has them; `texts` and `output` must outlive this.
  CsvSeries(TextOutput& output, const ValueTexts& texts, const Years& years, bool wide);

  // Writes all lines of a series.
  //
  //   place    the first columns, the comma behind them included
  //   series   all months, January of the first year first
  void write(std::string_view place, std::span<const std::int16_t> series);

 private:
  void write_long_lines(const BlockText& place, std::span<const BlockText> months,
                        std::span<const std::int16_t> values);
  void write_wide_line(const BlockText& place, const BlockText& year,
                       std::span<const std::int16_t> values);

  TextOutput& output_;
  const ValueTexts& texts_;
  bool wide_;
  std::vector<BlockText> times_;  // "1901,1," and on, or "1901" and on
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_CSV_SERIES_H_
