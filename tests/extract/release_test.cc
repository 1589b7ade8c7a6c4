#include "extract/release.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "catalogue/variable_name.h"
#include "extract/citation.h"

namespace veldmark::extract {
namespace {

const VariableEntry& tmp() { return *find_by_short_name("tmp"); }
const VariableEntry& drought() { return *find_by_short_name("scpdsi"); }

std::string prefix_of(const VariableEntry& entry, const std::string& file_name) {
  return std::string(
      with_release(entry, release_of(entry, file_name)).OutputPrefix.view());
}

TEST(Release, IsToldByTheName) {
  const auto number = [](const std::string& name) {
    return release_of(tmp(), name).number;
  };
  EXPECT_EQ(number("cru_ts4.01.1901.2016.tmp.dat.new"), "4.01");
  EXPECT_EQ(number("x/cru_ts4.01/cru_ts4.09.1901.2024.tmp.dat.new"), "4.09");
  EXPECT_EQ(number("CRU_TS_3_10.1901.2009.tmp.dat"), "3.10");
  EXPECT_EQ(number("cru_ts3.24.01.1901.2015.tmp.dat.new"), "3.24.01");
  EXPECT_EQ(number("cru_ts4.07_europe.tmp.dat.new"), "4.07");
  EXPECT_EQ(number("cru_ts4.08-pre.1901.2016.tmp.dat.new"), "4.08");
  EXPECT_EQ(number("cru_ts4.08:1.1901.2016.tmp.dat"), "4.08");
  EXPECT_EQ(number("cru_ts4.08"), "4.08");
  EXPECT_EQ(number("CRUTS4.09.1901.2024.tmp.dat"), "4.09");
  EXPECT_EQ(number("cru_ts4.010.1901.2016.tmp.dat"), "");
  EXPECT_EQ(number("cru_ts4.1901.2016.tmp.dat.new"), "");
  EXPECT_EQ(number("cru_ts4.01/europe.tmp"), "");
  EXPECT_EQ(number("europe.tmp.dat.new"), "");
  EXPECT_EQ(release_of(drought(), "scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new").number,
            "3.25");
  EXPECT_EQ(release_of(drought(), "scPDSI_4.05.1901.2020.new").number, "4.05");
  EXPECT_EQ(release_of(drought(), "scPDSI4.05.1901.2020.new").number, "4.05");
  EXPECT_EQ(release_of(drought(), "scPDSI.cru_ts4.05.1901.2020.new").number, "");
}

TEST(Release, IsTheCataloguesByItsNumber) {
  EXPECT_TRUE(release_of(tmp(), "cru_ts4.01.1901.1905.tmp.dat.new").is_catalogued);
  EXPECT_FALSE(release_of(tmp(), "cru_ts4.010.1901.2016.tmp.dat").is_catalogued);
  EXPECT_FALSE(release_of(tmp(), "cru_ts4.09.1901.2024.tmp.dat").is_catalogued);
  EXPECT_FALSE(release_of(tmp(), "europe.tmp").is_catalogued);
  for (const VariableEntry& entry : VariableCatalogue) {
    EXPECT_TRUE(release_of(entry, entry.DataFileName.view()).is_catalogued);
  }
  EXPECT_EQ(release_of(tmp(), "cru_ts4.09.tmp").title, "CRU TS 4.09");
  EXPECT_EQ(release_of(drought(), "scPDSI.3.25.new").title, "scPDSI 3.25");
  EXPECT_EQ(release_of(tmp(), "europe.tmp").title, "CRU TS");
}

TEST(Release, StandsInThePrefixWhereItFits) {
  EXPECT_EQ(prefix_of(tmp(), "cru_ts4.01.1901.2016.tmp.dat.new"), "CRUts4.01tmp.");
  EXPECT_EQ(prefix_of(tmp(), "cru_ts4.09.1901.2024.tmp.dat.new"), "CRUts4.09tmp.");
  EXPECT_EQ(prefix_of(tmp(), "cru_ts5.1.1901.2030.tmp.dat.new"), "CRUts5.1tmp. ");
  EXPECT_EQ(prefix_of(tmp(), "cru_ts3.24.01.1901.2015.tmp.dat"), "CRUtstmp.    ");
  EXPECT_EQ(prefix_of(tmp(), "europe.tmp"), "CRUtstmp.    ");
  EXPECT_EQ(prefix_of(*find_by_short_name("pre"), "cru_ts4.09.pre.x"), "CRUts4.09ppt.");
  EXPECT_EQ(prefix_of(drought(), "scPDSI.4.05.1901.2020.new"), "scPDSI.dat.  ");
}

TEST(CitationOfFile, IsThatOfItsReleaseOrSaysWhichItIs) {
  const auto text = [](const VariableEntry& entry, const std::string& name,
                       const std::optional<Years>& years) {
    return citation_of_file(entry, name, years);
  };
  EXPECT_EQ(text(tmp(), "cru_ts4.01.1901.1905.tmp.dat.new", Years{1901, 1905}),
            citation_text(tmp()));
  EXPECT_EQ(text(tmp(), "x/cru_ts4.09.1901.2024.tmp.dat", Years{1901, 2024}),
            "CRU TS 4.09, mean temperature, 1901-2024; University of East Anglia "
            "Climatic Research Unit, which tells how to cite this release");
  EXPECT_EQ(text(drought(), "scPDSI.4.05.new", std::nullopt),
            std::string("scPDSI 4.05, ") + std::string(drought().long_name) +
                "; its producers tell how to cite this release");
  EXPECT_EQ(text(tmp(), "x/europe.tmp", std::nullopt),
            "mean temperature from 'x/europe.tmp', whose name tells no release. CRU TS "
            "4.01 is cited as: " +
                citation_text(tmp()));
}

}  // namespace
}  // namespace veldmark::extract
