#include "extract/data_set.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace veldmark::extract {
namespace {

constexpr RowOrder kSouth = RowOrder::kSouthFirst;
constexpr RowOrder kNorth = RowOrder::kNorthFirst;

constexpr std::array<DataSet, 11> kDataSets{{
    {"pre", "cru_ts4.01.1901.2016.pre.dat.new", "precipitation", "mm", 1, -999, kSouth,
     1},
    {"tmp", "cru_ts4.01.1901.2016.tmp.dat.new", "near-surface temperature", "degC", 1,
     -999, kSouth, 2},
    {"dtr", "cru_ts4.01.1901.2016.dtr.dat.new", "diurnal temperature range", "degC", 1,
     -999, kSouth, 3},
    {"tmn", "cru_ts4.01.1901.2016.tmn.dat.new",
     "near-surface temperature minimum", "degC", 1, -999, kSouth, 4},
    {"tmx", "cru_ts4.01.1901.2016.tmx.dat.new",
     "near-surface temperature maximum", "degC", 1, -999, kSouth, 5},
    {"vap", "cru_ts4.01.1901.2016.vap.dat.new", "vapour pressure", "hPa", 1, -999,
     kSouth, 6},
    {"pet", "cru_ts4.01.1901.2016.pet.dat.new", "potential evapotranspiration",
     "mm day-1", 1, -999, kSouth, 7},
    {"cld", "cru_ts4.01.1901.2016.cld.dat.new", "cloud cover", "percent", 1, -999,
     kSouth, 8},
    {"frs", "cru_ts4.01.1901.2016.frs.dat.new", "ground frost frequency", "day", 2,
     -999, kSouth, 9},
    {"wet", "cru_ts4.01.1901.2016.wet.dat.new", "wet day frequency", "day", 2, -999,
     kSouth, 10},
    {"scpdsi", "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new",
     "self-calibrating Palmer drought severity index", "1", 2, -9999, kNorth, 11},
}};

std::string lower_case(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](unsigned char c) {
    return static_cast<char>(std::tolower(c));
  });
  return lower;
}

}  // namespace

std::span<const DataSet> data_sets() { return kDataSets; }

std::string short_names() {
  std::string names;
  for (const DataSet& data_set : kDataSets) {
    names += (names.empty() ? "" : " ") + std::string(data_set.short_name);
  }
  return names;
}

const DataSet* find_data_set(std::string_view short_name) {
  const std::string wanted = lower_case(short_name);
  const auto* found =
      std::find_if(kDataSets.begin(), kDataSets.end(),
                   [&](const DataSet& row) { return row.short_name == wanted; });
  return found == kDataSets.end() ? nullptr : found;
}

const DataSet* data_set_of_file(std::string_view file_name) {
  file_name.remove_prefix(file_name.rfind('/') + 1);  // npos + 1 is 0
  const std::string name = lower_case(file_name);
  for (const DataSet& data_set : kDataSets) {
    const std::string short_name(data_set.short_name);
    if (name.find("." + short_name + ".") != std::string::npos ||
        (data_set.order == RowOrder::kNorthFirst && name.starts_with(short_name))) {
      return &data_set;
    }
  }
  return nullptr;
}

}  // namespace veldmark::extract
