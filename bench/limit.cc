// The minimum work of any extraction: reads the bytes of the requested rows once, and
// writes as many bytes as the outputs have, without looking at any of them.
//
//   limit [--commands] GRID ROWS FIRST_YEAR LAST_YEAR FOLDER SIZE...
//
// With --commands it first runs the three shell commands that a session has to run.
//
// ROWS are ascending ranges, 281-300 or 1-1,5-9, of rows 1..360; years are 1..116 (1 is
// 1901), both ends included. Makes one file in FOLDER for each SIZE, named 1, 2, ...; a
// file that is there is emptied in place, as the outputs of a search are. GRID is a
// condensed file with LF line ends.

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

namespace {

constexpr std::size_t kPieceSize = std::size_t{256} * 1024;
constexpr std::int64_t kLineSize = 3601;
constexpr std::int64_t kRows = 360;
constexpr std::int64_t kMonthsPerYear = 12;
constexpr mode_t kMode = 0666;

// A contiguous range of bytes of the grid file.
struct ByteRange {
  std::int64_t begin;
  std::int64_t size;
};

[[noreturn]] void fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

struct Range {
  std::int64_t first;
  std::int64_t last;
};

std::vector<Range> parse_ranges(const std::string& text) {
  std::vector<Range> ranges;
  std::istringstream words(text);
  for (std::string word; std::getline(words, word, ',');) {
    const std::size_t dash = word.find('-');
    ranges.push_back({std::stoll(word), std::stoll(word.substr(dash + 1))});
  }
  return ranges;
}

// The requested lines: one range for each range of rows in each month, or a single
// range for whole months.
std::vector<ByteRange> requested_ranges(const std::vector<Range>& rows,
                                        const Range& years) {
  const std::int64_t first_month = (years.first - 1) * kMonthsPerYear;
  const std::int64_t end_month = years.last * kMonthsPerYear;
  if (rows.front().first == 1 && rows.front().last == kRows) {
    return {{first_month * kRows * kLineSize,
             (end_month - first_month) * kRows * kLineSize}};
  }
  std::vector<ByteRange> ranges;
  for (std::int64_t month = first_month; month < end_month; ++month) {
    for (const Range& range : rows) {
      ranges.push_back({(month * kRows + range.first - 1) * kLineSize,
                        (range.last - range.first + 1) * kLineSize});
    }
  }
  return ranges;
}

void read_range(int file, const ByteRange& range, std::vector<char>& buffer) {
  std::int64_t offset = range.begin;
  const std::int64_t end = range.begin + range.size;
  while (offset < end) {
    const auto size = std::min(buffer.size(), static_cast<std::size_t>(end - offset));
    const ssize_t count = ::pread(file, buffer.data(), size, offset);
    if (count < 0) {
      fail("reading");
    }
    if (count == 0) {
      throw std::runtime_error("the grid file is too short");
    }
    offset += count;
  }
}

void write_file(const std::string& name, std::size_t size,
                const std::vector<char>& buffer) {
  const int file = ::open(name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, kMode);
  if (file < 0 || ::ftruncate(file, 0) != 0) {
    fail(name);
  }
  while (size > 0) {
    const ssize_t count = ::write(file, buffer.data(), std::min(buffer.size(), size));
    if (count < 0) {
      fail(name);
    }
    size -= static_cast<std::size_t>(count);
  }
  if (::close(file) != 0) {
    fail(name);
  }
}

// Their exit statuses are ignored, as in a session.
void run_commands() {
  for (const char* command : {"clear", "clear", "ls *.dat.new"}) {
    [[maybe_unused]] const int status = std::system(command);
  }
}

void run(std::vector<std::string> arguments) {
  const bool commands = !arguments.empty() && arguments[0] == "--commands";
  if (commands) {
    arguments.erase(arguments.begin());
  }
  if (arguments.size() < 5) {
    throw std::runtime_error(
        "usage: limit [--commands] GRID ROWS FIRST_YEAR LAST_YEAR FOLDER SIZE...");
  }
  if (commands) {
    run_commands();
  }
  const int grid = ::open(arguments[0].c_str(), O_RDONLY | O_CLOEXEC);
  if (grid < 0) {
    fail(arguments[0]);
  }
  std::vector<char> buffer(kPieceSize, ' ');
  const Range years{std::stoll(arguments[2]), std::stoll(arguments[3])};
  for (const ByteRange& range : requested_ranges(parse_ranges(arguments[1]), years)) {
    read_range(grid, range, buffer);
  }
  ::close(grid);
  for (std::size_t i = 5; i < arguments.size(); ++i) {
    write_file(arguments[4] + "/" + std::to_string(i - 4), std::stoull(arguments[i]),
               buffer);
  }
}

}  // namespace

int main(int argc, char** argv) {
  try {
    run({argv + 1, argv + argc});
  } catch (const std::exception& failure) {
    std::cerr << "limit: " << failure.what() << '\n';
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
