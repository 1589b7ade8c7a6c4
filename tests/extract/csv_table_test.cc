#include "extract/csv_table.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "support/temporary_folder.h"
#include "util/failure.h"

namespace veldmark::extract {
namespace {

using Fields = std::vector<std::string>;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

// The fields of all records, which are numbered from 1.
std::vector<Fields> records_of(const std::string& content) {
  const TemporaryFolder folder;
  write_file("t.csv", content);
  std::vector<Fields> records;
  for (const CsvRecord& record : read_csv("t.csv")) {
    records.push_back(record.fields);
    EXPECT_EQ(record.number, records.size());
  }
  return records;
}

std::string fault_of(const std::string& content) {
  try {
    records_of(content);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return "";
}

TEST(ReadCsv, KeepsFieldsUnchanged) {
  EXPECT_EQ(records_of(""), std::vector<Fields>{});
  EXPECT_EQ(records_of("\xEF\xBB\xBF"), std::vector<Fields>{});
  EXPECT_EQ(records_of("a"), std::vector<Fields>{{"a"}});
  EXPECT_EQ(records_of(",\n"), (std::vector<Fields>{{"", ""}}));
  EXPECT_EQ(records_of(" a , \tb\n"), (std::vector<Fields>{{" a ", " \tb"}}));
  EXPECT_EQ(records_of("\"a,\"\"b\"\"\nc\",\"\"\r\nd,e"),
            (std::vector<Fields>{{"a,\"b\"\nc", ""}, {"d", "e"}}));
  EXPECT_EQ(records_of("\n\r\na\n\n\nb\n"), (std::vector<Fields>{{"a"}, {"b"}}));
  // A byte order mark is skipped at the start only.
  EXPECT_EQ(records_of("\xEF\xBB\xBF\"a\"\n\xEF\xBB\xBF"),
            (std::vector<Fields>{{"a"}, {"\xEF\xBB\xBF"}}));
}

TEST(ReadCsv, ReadsAFileLargerThanTheBuffer) {
  std::string content;
  std::vector<Fields> expected;
  for (int i = 0; i < 100'000; ++i) {
    content += std::to_string(i) + ",\"x\"\n";
    expected.push_back({std::to_string(i), "x"});
  }
  EXPECT_TRUE(records_of(content) == expected);
}

TEST(ReadCsv, NamesTheRecordWithAStrayQuote) {
  EXPECT_EQ(fault_of("a,b\n\n1,2\"3\"\n"),
            "'t.csv': record 2: a quote stands inside a field that has none around it");
  EXPECT_EQ(fault_of("\"a\"b\n"),
            "'t.csv': record 1: a quote stands inside a field that has none around it");
  EXPECT_EQ(fault_of("a\n\"b\n\n"), "'t.csv': record 2: a quote is never closed");
}

TEST(ReadCsv, SaysWhyAFileCantBeRead) {
  const TemporaryFolder folder;
  std::filesystem::create_directory("d");
  try {
    read_csv("d");
    FAIL() << "a folder was read";
  } catch (const Failure& failure) {
    EXPECT_STREQ(failure.what(), "cannot read 'd': Is a directory");
  }
}

}  // namespace
}  // namespace veldmark::extract
