// What the five characters of a field mean: in a cell with data, at sea, and in a cell
// with a late start.

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstddef>
#include <string>
#include <vector>

#include "run_in_process.h"
#include "support/grid_text.h"
#include "support/temporary_folder.h"
#include "util/file_descriptor.h"

namespace veldmark::extract {
namespace {

using testing::Outcome;
using testing::run;
using veldmark::testing::file_content;
using veldmark::testing::GridText;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;

constexpr const char* kName = "x.1901.1901.tmp.new";

// A year with 7 in every month of the cell in row 301, column 81; the cell east of it
// has what a test puts there.
class Fields : public ::testing::Test {
 protected:
  Fields() {
    GridText grid(1901, 1, 360, -999);
    for (int month = 1; month <= 12; ++month) {
      grid.set_value(1901, month, 301, 81, 7);
    }
    write_file(kName, grid.text());
  }

  // The stored values of a cell whose fields are `months`, then -999, "no data" where
  // it is left out; or the messages of a failure.
  static std::string read_as(const std::vector<std::string>& months) {
    const FileDescriptor file(kName, O_WRONLY);
    for (std::size_t month = 0; month < 12; ++month) {
      const std::string field = month < months.size() ? months[month] : " -999";
      const std::size_t place = (month * 360 + 300) * 3601 + std::size_t{81} * 5;
      EXPECT_EQ(::pwrite(file.get(), field.data(), 5, static_cast<off_t>(place)), 5);
    }
    const Outcome outcome =
        run({kName, "--lat", "60:60.5", "--lon", "-140:-139", "--wide", "--stored",
             "--quiet", "--overwrite", "-o", "x.csv"});
    if (outcome.status != 0) {
      return outcome.messages;
    }
    const std::string text = file_content("x.csv");
    EXPECT_NE(text.find("\n60.25,-139.75,1901,7,7,7,7,7,7,7,7,7,7,7,7\n"),
              std::string::npos);
    const std::string place = "\n60.25,-139.25,1901,";
    const std::size_t begin = text.find(place);
    return begin == std::string::npos ? "no data" : text.substr(begin + place.size());
  }

  TemporaryFolder folder_;
};

TEST_F(Fields, HoldIntegersOf16Bits) {
  const std::vector<std::vector<std::string>> known{
      {"    0", "0"},     {"32767", "32767"}, {"-9999", "-9999"}, {"+9999", "9999"},
      {"30000", "30000"}, {"     ", "0"},     {"-0012", "-12"},   {"\t1\t2 ", "12"},
      {"3 3 3", "333"},   {"00099", "99"},    {"9    ", "9"},     {"-  99", "-99"},
      {" -998", "-998"},  {"-999 ", ""},      {"-1000", "-1000"},
  };
  for (const auto& words : known) {
    const std::string& field = words.front();
    const std::string& value = words.back();
    // Data from the first month on, from the second one on, and in the second alone.
    EXPECT_EQ(read_as({"    1", field, "    3"}), "1," + value + ",3,,,,,,,,,\n");
    EXPECT_EQ(read_as({" -999", field, "    3"}), "," + value + ",3,,,,,,,,,\n");
    EXPECT_EQ(read_as({" -999", field}),
              value.empty() ? "no data" : "," + value + ",,,,,,,,,,\n");
    EXPECT_EQ(read_as({field}), value.empty() ? "no data" : value + ",,,,,,,,,,,\n");
  }
}

TEST_F(Fields, AnythingElseIsNamed) {
  const std::vector<std::vector<std::string>> known{
      {"32768", "too large for a value"},
      {"99999", "too large for a value"},
      {"65535", "too large for a value"},
      {"64537", "too large for a value"},
      {"    -", "no integer"},
      {"1.5  ", "no integer"},
      {"- -99", "no integer"},
      {"-99x9", "no integer"},
      {"  12,", "no integer"},
      {"/0000", "no integer"},
  };
  const auto fault = [](int line, const std::vector<std::string>& words) {
    return std::string("veldmark-extract: '") + kName + "': line " +
           std::to_string(line) + ": characters 406-410 (column 82): '" +
           words.front() + "' is " + words.back() + "\n";
  };
  for (const auto& words : known) {
    const std::string& field = words.front();
    EXPECT_EQ(read_as({field}), fault(301, words));
    EXPECT_EQ(read_as({"    1", field}), fault(661, words));
    EXPECT_EQ(read_as({" -999", field}), fault(661, words));
    EXPECT_EQ(read_as({" -999", "    2", field}), fault(1021, words));
  }
}

}  // namespace
}  // namespace veldmark::extract
