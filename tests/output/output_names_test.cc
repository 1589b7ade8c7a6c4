#include "output/output_names.h"

#include <gtest/gtest.h>

#include <string>

namespace veldmark {
namespace {

VariableEntry entry_of(const std::string& DataFileName) {
  VariableEntry entry;
  entry.DataFileName = TextField<65>::cut(DataFileName);
  return entry;
}

TEST(ExtractName, IsTheDataFilesNameAndTheExtension) {
  EXPECT_EQ(extract_name(entry_of("cru.pre.dat.new"), ".TSF").trimmed(),
            "cru.pre.dat.new.TSF");
  EXPECT_EQ(extract_name(entry_of("cru.pre.dat.new"), ".XY").trimmed(),
            "cru.pre.dat.new.XY");
  EXPECT_EQ(extract_name(entry_of(""), ".TSF").trimmed(), ".TSF");
  EXPECT_EQ(extract_name(entry_of("a"), ".TSF").view().size(), 65U);
}

TEST(ExtractName, TakesFortyCharactersWithoutTheirBlanks) {
  EXPECT_EQ(extract_name(entry_of(std::string(41, 'a')), ".XY").trimmed(),
            std::string(40, 'a') + ".XY");
  EXPECT_EQ(extract_name(entry_of("a b"), ".XY").trimmed(), "ab.XY");
}

TEST(ReportName, TakesTheNameUpToItsFirstBlank) {
  EXPECT_EQ(report_name(entry_of("cru.frs.dat.new")).trimmed(), "cru.frs.dat.new.ftst");
  EXPECT_EQ(report_name(entry_of("a b")).trimmed(), "a.ftst");
  EXPECT_EQ(report_name(entry_of("")).trimmed(), ".ftst");
}

// A name is composed in a field of 65 characters, which truncates the extension.
TEST(ReportName, TakesNoMoreThanSixtyOneCharacters) {
  EXPECT_EQ(report_name(entry_of(std::string(58, 'a'))).trimmed(),
            std::string(58, 'a') + ".ftst");
  EXPECT_EQ(report_name(entry_of(std::string(65, 'a'))).trimmed(),
            std::string(61, 'a') + ".fts");
}

}  // namespace
}  // namespace veldmark
