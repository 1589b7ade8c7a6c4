// The mean over the cells of an area, month by month.

#ifndef VELDMARK_EXTRACT_AREA_MEAN_H_
#define VELDMARK_EXTRACT_AREA_MEAN_H_

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace veldmark::extract {

// Weights each cell by the cosine of its latitude, because cells become narrower
// towards the poles. The mean of a month is over the cells that have data in it.
class AreaMean {
 public:
  AreaMean(std::size_t month_count, std::int32_t MissingCode);

  // Adds the series of a cell, in stored units. Requires all months.
  void add(double latitude, std::span<const std::int16_t> series);

  // The number of cells with data in a month; months are counted from 0.
  [[nodiscard]] std::int32_t cells(std::size_t month) const { return cells_[month]; }
  [[nodiscard]] std::span<const std::int32_t> cells() const { return cells_; }

  [[nodiscard]] std::size_t month_count() const { return cells_.size(); }

  // Returns the mean of a month divided by 10^decimals; nullopt for a month without
  // cells.
  [[nodiscard]] std::optional<double> mean(std::size_t month,
                                           std::int32_t decimals) const;

  // Returns the mean as text, rounded to two decimals more than the values have; empty
  // for a month without cells.
  [[nodiscard]] std::string mean_text(std::size_t month, std::int32_t decimals) const;

 private:
  std::int32_t MissingCode_;
  std::vector<double> sums_;
  std::vector<double> weights_;
  std::vector<std::int32_t> cells_;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_AREA_MEAN_H_
