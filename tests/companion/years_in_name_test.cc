#include "companion/years_in_name.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace veldmark::companion {
namespace {

// Returns "1901-2024", or "" if there are none.
std::string years_of(const std::string& name) {
  const std::optional<Years> years = years_in_name(name);
  return years ? std::to_string(years->first) + "-" + std::to_string(years->last) : "";
}

TEST(YearsInName, StandBetweenFullStops) {
  EXPECT_EQ(years_of("cru_ts4.09.1901.2024.tmp.dat.gz"), "1901-2024");
  EXPECT_EQ(years_of("/data/cru_ts4.07.2021.2022.tmp.dat.nc"), "2021-2022");
  EXPECT_EQ(years_of("scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new"), "1901-2016");
  EXPECT_EQ(years_of("x.1901.1901.y"), "1901-1901");
  EXPECT_EQ(years_of("x.1901.2016."), "1901-2016");
  EXPECT_EQ(years_of("x.4.0100.1901.2024.y"), "100-1901");
  EXPECT_EQ(years_of("x.2016.1901.2000.y"), "1901-2000");
}

TEST(YearsInName, AreNothingElse) {
  for (const std::string name :
       {"grid", "", "tmp.1901.dat", "cru_ts4.01.2016.1901.tmp.dat", "x.1901-2016.y",
        "x.1901.20166.y", ".1901.2016", "1901.2016.dat", "a.1901.2016.d/grid"}) {
    EXPECT_EQ(years_of(name), "") << name;
  }
}

}  // namespace
}  // namespace veldmark::companion
