// Tersify's parsers: published lines and files, condensed files, list files and command
// lines. The copy must be what a plain definition makes of the input, and pass the
// check.

#include <fcntl.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "companion/line_buffer.h"
#include "companion/progress_line.h"
#include "fuzz_input.h"
#include "plain_tersify.h"
#include "reached.h"
#include "require.h"
#include "support/scratch_folder.h"
#include "tersify/check_file.h"
#include "tersify/command_line.h"
#include "tersify/condense_file.h"
#include "tersify/condense_line.h"
#include "tersify/grid_check.h"
#include "tersify/name_list.h"
#include "tersify/tersify.h"
#include "util/failure.h"
#include "util/file_descriptor.h"

namespace veldmark::fuzz {
namespace {

using testing::file_content;
using testing::InFolder;
using testing::ScratchFolder;
using testing::write_file;

using companion::kLinePadding;
using companion::kLongestLine;
using companion::LineBuffer;

// --- A published line

// A line of whole published fields with `text` in place of some of them.
std::string line_around(FuzzInput& input, const std::string& text) {
  static constexpr std::array<const char*, 4> kSeparators{" ", "  ", "\t", "    "};
  const std::string separator = kSeparators[input.byte() % kSeparators.size()];
  const int seed = input.byte();
  const int before = input.between(0, kGridColumns);
  const int more = input.byte() % 4 - 1;  // -1 to 2; 0 makes a whole line of it mostly
  const int own = static_cast<int>(plain_words(text).size());
  const int after = kGridColumns - before - own + (more == 2 ? 0 : more);
  std::string line;
  const auto add = [&](int count) {
    for (int i = 0; i < count; ++i) {
      line += separator + std::to_string((i * 37 + seed * 101) % 20000 - 9999);
    }
  };
  add(before);
  line += separator + text + separator;
  add(after);
  return line;
}

// The line between digits, which must not matter, in a buffer of exactly its size.
class RoomyLine {
 public:
  explicit RoomyLine(std::string_view line) : size_(line.size()) {
    const std::string room(kLinePadding, '7');
    const std::string text = room + std::string(line) + room;
    bytes_.assign(text.begin(), text.end());
  }

  [[nodiscard]] std::string_view view() const {
    return {bytes_.data() + kLinePadding, size_};
  }

 private:
  std::size_t size_;
  std::vector<char> bytes_;
};

// Lines are read 64 characters at a time; their alignment must not matter.
void check_shifted(const std::string& line, const PlainLine& expected, int seed) {
  constexpr int kPiece = 64;
  for (int shift = seed % 8; shift < kPiece; shift += 8) {
    const RoomyLine roomy(std::string(static_cast<std::size_t>(shift), ' ') + line);
    std::vector<char> output(tersify::kCondensedCapacity, '?');
    const auto fault = tersify::condense_line(roomy.view(), output.data());
    require((fault ? fault->field : 0) == expected.fault,
            "the first field at fault is named wherever the line lies", line);
    require(fault || expected.text ==
                         std::string_view(output.data(), tersify::kCondensedLine),
            "a line is condensed as the plain definition wherever it lies", line);
  }
}

void check_line(const std::string& line, int seed) {
  const PlainLine expected = plain_condensed(line);
  reached(expected.fault == 0 ? "lines condensed" : "lines at fault");
  const RoomyLine roomy(line);
  std::vector<char> output(tersify::kCondensedCapacity, '?');
  const auto is_expected_text = [&] {
    return std::string_view(output.data(), tersify::kCondensedLine) == expected.text;
  };
  const auto fault = tersify::condense_line(roomy.view(), output.data());
  require((fault ? fault->field : 0) == expected.fault,
          "the first field at fault is named", line);
  require(fault || is_expected_text(), "a line is condensed as the plain definition",
          line);

  std::fill(output.begin(), output.end(), '?');
  const bool usual = tersify::condense_line_fast(roomy.view(), output.data());
  require(!usual || (expected.fault == 0 && is_expected_text()),
          "a usual line is condensed as the plain definition", line);
  std::fill(output.begin(), output.end(), '?');
  const auto any_fault = tersify::condense_line_by_fields(roomy.view(), output.data());
  require((any_fault ? any_fault->field : 0) == expected.fault,
          "the first field at fault is named the plain way, too", line);
  require(any_fault || is_expected_text(),
          "any line is condensed as the plain definition", line);
  check_shifted(line, expected, seed);
}

// --- A published file

constexpr int kLines = 12;  // a year of one row

std::string published_text(FuzzInput& input) {
  const std::uint8_t kind = input.byte();
  const int lines = kind % 4 == 0 ? input.byte() % 32 : kLines;
  const int edited = input.byte() % kLines;
  const std::string line_end = kind % 8 >= 4 ? "\r\n" : "\n";
  static constexpr std::array<std::uint8_t, 5> kWholeLine{0, 0, 0, 0, 1};
  FuzzInput whole(kWholeLine.data(), kWholeLine.size());
  const std::string usual = line_around(whole, "0");
  std::string text;
  for (int i = 0; i < lines; ++i) {
    const bool is_edited = i == edited;
    text += is_edited ? line_around(input, input.text(kind)) : usual;
    if (i + 1 < lines || kind % 16 < 8) text += line_end;
  }
  if (kind % 64 == 63) {  // a line of about the maximum length
    const std::size_t length = std::min(text.find('\n'), text.size());
    text.insert(0, kLongestLine + 2 - length - input.byte() % 4U, ' ');
  }
  const std::string last = input.rest();
  if (kind % 32 >= 16) {
    text.insert(text.size() - std::min<std::size_t>(kind * 40U, text.size()), last);
  }
  return text;
}

const ScratchFolder& folder() {
  static const ScratchFolder the_folder;
  return the_folder;
}

std::optional<std::string> fault_of(std::string_view text, const GridShape& shape,
                                    std::size_t piece, std::size_t longest) {
  LineBuffer lines(
      [&](char* buffer, std::size_t size) {
        const std::size_t count = text.copy(buffer, std::min(size, piece));
        text.remove_prefix(count);
        return count;
      },
      longest);
  return tersify::find_fault(lines, shape);
}

// A line longer than the maximum means that the file is not text.
bool has_endless_line(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    if (end >= kLongestLine) return true;
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return false;
}

// Condenses the lines of a published file plainly; nullopt if one is bad.
std::optional<std::string> plain_condensed_file(const std::string& text) {
  if (has_endless_line(text)) return std::nullopt;
  std::string condensed;
  const std::vector<std::string> lines = plain_lines(text);
  for (const std::string& line : lines) {
    const PlainLine plain = plain_condensed(line);
    if (plain.fault != 0) return std::nullopt;
    condensed += plain.text + "\n";
  }
  if (lines.empty()) return std::nullopt;
  return condensed;
}

void check_condensed_file(const std::string& text, const std::string& condensed,
                          const tersify::Condensed& done) {
  require(plain_condensed_file(text) == condensed,
          "a file is condensed as the plain definition");
  const auto size = static_cast<std::int64_t>(condensed.size());
  require(done.size_after == size && done.lines * 3601 == size,
          "the counts are those of the file");
  require(done.size_before == static_cast<std::int64_t>(text.size()),
          "the whole file was read");
  require(done.last_line_ended == text.ends_with('\n'), "a missing line end is told");
}

void check_file_round_trip(const std::string& text) {
  const InFolder in_folder(folder().path());
  std::ostringstream screen_text;
  const companion::ProgressLine::Screen screen{.stream = screen_text};
  write_file("grid", text);
  try {
    const tersify::Condensed done = tersify::condense_file(
        {"grid", std::nullopt, tersify::system_free_space, screen});
    check_condensed_file(text, file_content("grid.new"), done);
    reached("files condensed");
    const GridShape shape{.first_year = 1901, .years = 1, .rows = 1};
    const auto fault = tersify::check_file("grid.new", shape, screen).fault;
    require(fault.has_value() == (done.lines % kLines != 0),
            "what was condensed passes the check", fault.value_or("complete"));
    std::filesystem::remove("grid.new");
  } catch (const Failure& failure) {
    reached("files refused");
    require(std::string_view(failure.what()).find("grid") != std::string::npos,
            "a failure names the file", failure.what());
    const std::string_view what = failure.what();
    const bool compressed = what.find(" is compressed ") != std::string_view::npos ||
                            what.starts_with("the compressed file ") ||
                            what.find(" is netCDF") != std::string_view::npos;
    const bool condensed = what.ends_with(" is condensed already");
    require(!condensed || plain_fault(text, {.years = 1, .rows = 1}) != 1,
            "a file called condensed begins with a condensed line", what);
    require(compressed || condensed || !plain_condensed_file(text),
            "a good file is condensed", what);
  }
  require(
      !std::filesystem::exists("grid.new.part") && !std::filesystem::exists("grid.new"),
      "nothing unfinished is left");
}

// --- A condensed file, a list file, a command line

void check_fault(FuzzInput& input) {
  const GridShape shape{
      .first_year = 1901, .years = 1, .rows = 1, .columns = 1 + input.byte() % 30};
  const std::size_t piece = 1U + input.byte();
  const std::size_t longest = shape.line_length() + 2 + input.byte();
  const std::string text = input.rest();
  const auto fault = fault_of(text, shape, piece, longest);
  const auto expected = plain_fault(text, shape);
  reached(expected ? "checks that find a fault" : "checks passed");
  require(fault.has_value() == expected.has_value(),
          "a file is at fault when the plain definition says so",
          fault.value_or("complete"));
  if (!fault) return;
  const auto lines = static_cast<std::int64_t>(plain_lines(text).size());
  const std::string place = *expected > lines
                                ? "the file ends after " + std::to_string(lines) + " of"
                                : "line " + std::to_string(*expected);
  require(fault->starts_with(place + " ") || fault->starts_with(place + ":"),
          "the first fault is named", *fault);
}

void check_good_fields(std::string_view text) {
  const RoomyLine roomy(text);
  int expected = 0;
  for (std::size_t i = 0; i + 5 <= text.size(); i += 5) {
    if (!is_plainly_good_field(std::string(text.substr(i, 5)))) break;
    ++expected;
  }
  reached("good fields", static_cast<std::size_t>(expected));
  require(tersify::count_good_fields(roomy.view()) == expected,
          "the good fields are counted", text);
}

// Returns whether the line can be a name: no null character, and neither the whole nor
// a component too long.
bool is_plainly_a_name(std::string line) {
  while (!line.empty() && std::string(" \t\r").find(line.back()) != std::string::npos) {
    line.pop_back();
  }
  std::istringstream parts(line);
  std::string part;
  while (std::getline(parts, part, '/')) {
    if (part.size() > 255) {
      return false;
    }
  }
  return line.size() < 4096 && line.find('\0') == std::string::npos;
}

// A name is not blank and has no trailing blanks.
void check_name_list(std::string text) {
  const InFolder in_folder(folder().path());
  write_file("list", text);
  if (text.starts_with("\xef\xbb\xbf")) {
    text.erase(0, 3);
  }
  std::size_t names = 0;
  bool is_list = true;
  for (const std::string& line : plain_lines(text)) {
    names += line.find_first_not_of(" \t\r") == std::string::npos ? 0 : 1;
    is_list = is_list && is_plainly_a_name(line);
  }
  try {
    const std::vector<std::string> list = tersify::read_name_list("list");
    reached("lists read");
    require(list.size() == names, "every line that isn't blank is a name", text);
    for (const std::string& name : list) {
      require(
          !name.empty() && std::string(" \t\r").find(name.back()) == std::string::npos,
          "a name is trimmed", name);
    }
  } catch (const Failure& failure) {
    const bool compressed = std::string_view(failure.what()).find(" is compressed ") !=
                            std::string_view::npos;
    require(names == 0 || compressed || !is_list, "a list with names is read",
            failure.what());
  }
}

// Runs the whole program with the lines of `text` as arguments, in a folder that holds
// only a list of the list itself and of names from the input.
void check_command_line(const std::string& text) {
  std::vector<std::string> arguments = plain_lines(text);
  // Keeps all names inside the folder: nothing else may be read or written.
  for (std::string& argument : arguments) {
    std::replace(argument.begin(), argument.end(), '/', '_');
    std::replace(argument.begin(), argument.end(), '\0', '_');
  }
  const InFolder in_folder(folder().path());
  write_file("list", "list\nnone\n");
  const FileDescriptor input("list", O_RDONLY);
  std::ostringstream output;
  std::ostringstream messages;
  const companion::Environment environment{
      .input = input.get(), .output = output, .messages = {.stream = messages}};
  const int status = tersify::run_tersify(arguments, environment);
  require(0 <= status && status <= 2, "the status is 0, 1 or 2", text);
  reached("command lines with status " + std::to_string(status));
  require(status != 2 || messages.str().starts_with("tersify: "),
          "a wrong command line is told", messages.str());
  require(status == 0 || !(output.str() + messages.str()).empty(), "a failure is told",
          text);
}

}  // namespace
}  // namespace veldmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace veldmark::fuzz;  // NOLINT
  FuzzInput input(data, size);
  switch (input.byte() % 8) {
    case 0:
    case 1:
    case 2: {
      const int length = input.byte();
      const std::string text = input.text(static_cast<std::size_t>(length));
      check_line(line_around(input, text), length);
      break;
    }
    case 3:
    case 4:
      check_file_round_trip(published_text(input));
      break;
    case 5:
      check_fault(input);
      break;
    case 6:
      check_good_fields(input.rest());
      break;
    default:
      if (input.flag()) {
        check_name_list(input.rest());
      } else {
        check_command_line(input.rest());
      }
  }
  return 0;
}
