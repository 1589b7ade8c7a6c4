// Condensing a netCDF file: disk space, progress, and what may happen meanwhile.

#include <gtest/gtest.h>

#include <bit>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <sstream>
#include <string>

#include "raw_text.h"
#include "support/classic_netcdf.h"
#include "support/temporary_folder.h"
#include "tersify/condense_file.h"
#include "util/failure.h"
#include "util/interrupt_watch.h"

namespace veldmark::tersify {
namespace {

using companion::ProgressLine;
using testing::repeated;
using veldmark::testing::file_content;
using veldmark::testing::folder_content;
using veldmark::testing::TemporaryFolder;
using veldmark::testing::write_file;
using Header = veldmark::testing::ClassicHeader;

// Where the variables of the file begin, and its size.
constexpr std::size_t kLons = 512;
constexpr std::size_t kLats = kLons + std::size_t{4} * 720;
constexpr std::size_t kTimes = kLats + std::size_t{4} * 360;
constexpr std::size_t kValues = kTimes + std::size_t{4} * 12;
constexpr std::size_t kFileSize = kValues + std::size_t{4} * 12 * 360 * 720;
static_assert(kFileSize == 12'446'480);

std::string header() {
  Header header(1);
  header.count(0).list(Header::kDimensions, 3);
  header.name("time").count(12).name("lat").count(360).name("lon").count(720);
  header.no_list().list(Header::kVariables, 4);
  header.name("lon").count(1).count(2).no_list();
  header.word(Header::kFloat).count(kLats - kLons).offset(kLons);
  header.name("lat").count(1).count(1).no_list();
  header.word(Header::kFloat).count(kTimes - kLats).offset(kLats);
  header.name("time").count(1).count(0).list(Header::kAttributes, 1);
  header.text_attribute("units", "days since 1901-1-1");
  header.word(Header::kFloat).count(kValues - kTimes).offset(kTimes);
  header.name("tmp").count(3).count(0).count(1).count(2).no_list();
  header.word(Header::kFloat).count(kFileSize - kValues).offset(kValues);
  return header.bytes();
}

// Appends `count` numbers from `first` on, `step` apart, the most significant byte of
// each first.
void add_numbers(std::string& bytes, int count, double first, double step) {
  for (int i = 0; i < count; ++i) {
    const auto bits =
        std::bit_cast<std::uint32_t>(static_cast<float>(first + step * i));
    for (const int shift : {24, 16, 8, 0}) {
      bytes += static_cast<char>(bits >> shift & 0xffU);
    }
  }
}

// Writes "a.nc": the year 1901, all values 0.
void write_year() {
  std::string bytes = header();
  bytes.resize(kLons);
  add_numbers(bytes, 720, -179.75, 0.5);
  add_numbers(bytes, 360, -89.75, 0.5);
  add_numbers(bytes, 12, 15, 30.4);
  write_file("a.nc", bytes);
  std::filesystem::resize_file("a.nc", kFileSize);
}

// Condenses "a.nc" with a clock that goes on by a second each month, and then calls
// `after_month`. Returns what the terminal got.
std::string condense(const std::function<void()>& after_month,
                     const FreeSpace& free_space = system_free_space) {
  std::ostringstream terminal;
  double seconds = 0;
  const ProgressLine::Screen screen{.stream = terminal, .shown = true, .clock = [&] {
                                      if (seconds > 0) {
                                        after_month();
                                      }
                                      return seconds++;
                                    }};
  condense_file({"a.nc", std::nullopt, free_space, screen});
  return terminal.str();
}

void do_nothing() {}

// Condensing "a.nc" fails with `message` and leaves neither a copy nor a part.
void expect_failure(const std::string& message,
                    const std::function<void()>& after_month,
                    const FreeSpace& free_space = system_free_space) {
  try {
    condense(after_month, free_space);
    ADD_FAILURE() << "no failure; expected: " << message;
  } catch (const Failure& error) {
    EXPECT_EQ(error.what(), message);
  }
  EXPECT_EQ(folder_content().size(), 1U);
}

TEST(CondenseNetcdf, NeedsDiskSpaceForTheWholeCopy) {
  const TemporaryFolder folder;
  write_year();
  expect_failure(
      "not enough disk space for 'a.new': it takes about 15556320 bytes, and 15556319 "
      "are free",
      do_nothing, [](const std::string&) { return 15'556'319; });
  condense(do_nothing, [](const std::string&) { return 15'556'320; });
  EXPECT_TRUE(file_content("a.new") ==
              repeated(12 * 360, repeated(720, "    0") + "\n"));
}

// A month of the copy has 360 lines of 3601 bytes, 1.3 MB.
TEST(CondenseNetcdf, ShowsItsProgressAfterEachMonth) {
  const TemporaryFolder folder;
  write_year();
  const std::string shown = condense(do_nothing);
  EXPECT_TRUE(shown.starts_with("\r\x1b[K'a.nc': 8 % done, 1 MB/s, 11 s left\r"))
      << shown;
  EXPECT_TRUE(shown.ends_with("\r\x1b[K'a.nc': 100 % done, 1 MB/s, 0 s left\r\x1b[K"))
      << shown;
}

// The netCDF library reads the missing end as zeros.
TEST(CondenseNetcdf, AFileThatIsCutWhileItIsReadIsAFailure) {
  const TemporaryFolder folder;
  write_year();
  expect_failure("'a.nc': the file is cut: it has 12446476 bytes; expected 12446480",
                 [] { std::filesystem::resize_file("a.nc", kFileSize - 4); });
}

// Returns the signal that ended condensing "a.nc"; 0 if none did.
int signal_that_ended(const std::function<void()>& after_month) {
  const InterruptWatch watch;
  try {
    condense(after_month);
  } catch (const Interrupted& interrupted) {
    return interrupted.signal;
  }
  return 0;
}

TEST(CondenseNetcdf, AStopSignalIsCheckedBeforeEachMonthIsWritten) {
  const TemporaryFolder folder;
  write_year();
  int months = 0;
  EXPECT_EQ(signal_that_ended([&] {
              ++months;
              std::raise(SIGINT);
            }),
            SIGINT);
  EXPECT_EQ(months, 1);
  EXPECT_EQ(folder_content().size(), 1U);
}

}  // namespace
}  // namespace veldmark::tersify
