#include "extract/area_mean.h"

#include <cmath>
#include <numbers>

#include "extract/decimal_text.h"

namespace veldmark::extract {

AreaMean::AreaMean(std::size_t month_count, std::int32_t MissingCode)
    : MissingCode_(MissingCode),
      sums_(month_count),
      weights_(month_count),
      cells_(month_count) {}

void AreaMean::add(double latitude, std::span<const std::int16_t> series) {
  constexpr double kHalfCircle = 180;
  const double weight = std::cos(latitude * std::numbers::pi / kHalfCircle);
  for (std::size_t month = 0; month < series.size(); ++month) {
    if (series[month] != MissingCode_) {
      sums_[month] += weight * series[month];
      weights_[month] += weight;
      ++cells_[month];
    }
  }
}

std::optional<double> AreaMean::mean(std::size_t month, std::int32_t decimals) const {
  constexpr double kTen = 10;
  if (cells_[month] == 0) {
    return std::nullopt;
  }
  return sums_[month] / weights_[month] / std::pow(kTen, decimals);
}

std::string AreaMean::mean_text(std::size_t month, std::int32_t decimals) const {
  constexpr std::int32_t kMoreDecimals = 2;
  const std::optional<double> value = mean(month, decimals);
  if (!value) {
    return "";
  }
  const std::string text = decimal_text(*value, decimals + kMoreDecimals);
  const bool is_zero = text.find_first_not_of("-0.") == std::string::npos;
  return is_zero && text.starts_with('-') ? text.substr(1) : text;
}

}  // namespace veldmark::extract
