// Whole sessions of the program on arbitrary answers.
//
// The input is typed byte by byte. The folder holds small data files of every kind:
// regular, with empty lines, with CR LF, truncated, with a letter in a field; some are
// missing. Every run must end with status 0, or with 255 and a report, and what it
// claims to have saved must be in its files.

#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <streambuf>
#include <string>
#include <string_view>
#include <vector>

#include "console/console_dialogue.h"
#include "driver/program_driver.h"
#include "reached.h"
#include "require.h"
#include "support/grid_text.h"
#include "support/plain/fields.h"
#include "support/scratch_folder.h"
#include "util/fixed_field.h"

namespace veldmark::fuzz {
namespace {

using testing::data_file_name;
using testing::file_content;
using testing::GridText;
using testing::InFolder;
using testing::ScratchFolder;
using testing::write_file;

// --- The data files

// Gives the cells of some columns of a row values in all months.
void fill_cells(GridText& grid, int last_year, int row, int first_column,
                int last_column) {
  for (int column = first_column; column <= last_column; ++column) {
    for (int month = 0; month < 12 * (last_year - 1900); ++month) {
      const int value = (month * month * 7 + column * 13 + row) % 900 - 200;
      grid.set_value(1901 + month / 12, month % 12 + 1, row, column, value);
    }
  }
}

// A grid file of full lines for these rows: cells with data around Greenwich and on
// both sides of the 180 degree meridian.
GridText small_grid(int last_year, int first_row, int last_row, int missing) {
  GridText grid(last_year, first_row, last_row, missing);
  for (int row = first_row; row <= last_row; ++row) {
    fill_cells(grid, last_year, row, 358, 363);
    fill_cells(grid, last_year, row, 1, 2);
    fill_cells(grid, last_year, row, 719, 720);
  }
  return grid;
}

void write_grid(const std::string& variable, const GridText& grid) {
  write_file(data_file_name(variable), grid.text());
}

// A regular file, 15.6 MB. Most rows hold letters, because searches that save the whole
// globe would take too long.
GridText regular_grid() {
  const std::set<int> readable{1, 280, 281, 282, 283, 284, 360};
  const std::string letters(3600, 'x');
  GridText grid(1901, 1, 360, -999);
  for (int row = 1; row <= 360; ++row) {
    if (readable.contains(row)) {
      fill_cells(grid, 1901, row, 355, 366);
      continue;
    }
    for (int month = 1; month <= 12; ++month) grid.set_line(1901, month, row, letters);
  }
  return grid;
}

void write_data_files() {
  write_grid("pre", small_grid(1902, 281, 284, -999));
  write_grid("tmp", regular_grid());
  GridText with_crlf = small_grid(1901, 281, 282, -999);
  with_crlf.end_lines_with_crlf();
  write_grid("dtr", with_crlf);
  GridText with_letter = small_grid(1901, 281, 282, -999);
  with_letter.set_field(1901, 6, 281, 361, "  1x2");
  write_grid("tmn", with_letter);
  GridText cut = small_grid(1901, 281, 282, -999);
  cut.cut(1901, 11, 282, 1800);
  write_grid("tmx", cut);
  write_file(data_file_name("vap"), "");
  std::filesystem::create_directory(data_file_name("pet"));
  write_grid("cld", small_grid(1901, 281, 281, -999));
  std::filesystem::create_directory(data_file_name("cld") + ".XY");
  GridText frost_days = small_grid(1906, 281, 281, -999);
  for (int month = 1; month <= 12; ++month) {
    frost_days.set_value(1903, month, 281, 360, -999);  // months without data
    for (int year = 1901; year <= 1906; ++year) {
      frost_days.set_value(year, month, 281, 361, 5);  // no variance at all
    }
  }
  write_grid("frs", frost_days);
  write_grid("scPDSI", small_grid(1902, 76, 80, -9999));
}

// The folder that every session runs in, with its data files.
class DataFolder {
 public:
  DataFolder() {
    const InFolder in_folder(folder_.path());
    write_data_files();
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
      data_files_[entry.path().filename().string()] = state_of(entry.path());
    }
  }

  [[nodiscard]] const std::filesystem::path& path() const { return folder_.path(); }

  // Removes the files of a session, which must have changed no others.
  void clean_up() const {
    std::size_t found = 0;
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
      const std::string name = entry.path().filename().string();
      const auto data_file = data_files_.find(name);
      if (data_file != data_files_.end()) {
        ++found;
        require(state_of(entry.path()) == data_file->second,
                "a data file stays as it is", name);
        continue;
      }
      require(
          name.ends_with(".TSF") || name.ends_with(".XY") || name.ends_with(".ftst"),
          "only output files are written", name);
      std::filesystem::remove(entry.path());
    }
    require(found == data_files_.size(), "no data file is removed");
  }

 private:
  // Size and time of the last change.
  using State = std::array<std::int64_t, 3>;

  static State state_of(const std::filesystem::path& path) {
    struct stat status {};
    require(::stat(path.c_str(), &status) == 0, "a file has a state", path.native());
    return {status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
  }

  ScratchFolder folder_;
  std::map<std::string, State> data_files_;
};

// --- What was saved

// Returns the lines of a text; each must have a line end.
std::vector<std::string> lines_of(std::string_view text) {
  require(text.empty() || text.ends_with('\n'), "the last line is whole", text);
  std::vector<std::string> lines;
  for (; !text.empty(); text.remove_prefix(text.find('\n') + 1)) {
    lines.emplace_back(text.substr(0, text.find('\n')));
  }
  return lines;
}

std::int64_t number_in(const std::string& line, std::size_t begin, std::size_t size) {
  const auto number = plain::integer(line.substr(begin, size));
  require(line.size() >= begin + size && number.has_value(), "a column holds a number",
          line);
  return *number;
}

// Returns `text` without leading blanks.
std::string trimmed(const std::string& text) {
  return text.substr(std::min(text.find_first_not_of(' '), text.size()));
}

// A search as the console shows it.
struct SavedCells {
  std::int64_t FYOD = 0;
  std::int64_t LYOD = 0;
  std::vector<std::string> longitudes;
  std::vector<std::string> latitudes;
  std::size_t untested = 0;  // cells without a result of the variance test
  std::int64_t defined = 0;
  std::int64_t saved = 0;
  std::string TsfName;
};

constexpr std::string_view kTableStart = "  Saving Cell data : ";
constexpr std::string_view kClaim = " PROGRAM TERMINATING NORMALLY";
constexpr std::string_view kNothingTested = "    *** Ftest Nan computed ***";
constexpr std::string_view kOutputName = " Output is in file ";

// A line of the table: number, longitude, latitude and names of a cell.
void read_table_line(const std::string& line, SavedCells& cells) {
  if (line == kNothingTested) {
    ++cells.untested;
    return;
  }
  require(line.size() == 74, "a line of the table has its columns", line);
  cells.longitudes.push_back(trimmed(line.substr(8, 10)));
  cells.latitudes.push_back(trimmed(line.substr(18, 10)));
  require(number_in(line, 2, 6) == static_cast<std::int64_t>(cells.longitudes.size()),
          "cells are numbered", line);
}

// Reads the table and the summary from the screen, from the table's first line on.
SavedCells read_screen(const std::string& screen) {
  const std::vector<std::string> lines =
      lines_of(screen.substr(0, screen.find('\n', screen.find(kOutputName)) + 1));
  const std::size_t claim = static_cast<std::size_t>(
      std::find(lines.begin(), lines.end(), kClaim) - lines.begin());
  require(lines.size() == claim + 4 && claim >= 4, "the summary has four lines",
          screen);
  SavedCells cells;
  cells.FYOD = number_in(lines[0], kTableStart.size(), 4);
  cells.LYOD = number_in(lines[0], kTableStart.size() + 7, 4);
  for (std::size_t i = 2; i + 2 < claim; ++i) read_table_line(lines[i], cells);
  require(lines[claim + 1].ends_with(" Grids Defined") &&
              lines[claim + 2].ends_with(" Grids Selected and Saved"),
          "the summary counts", screen);
  cells.defined = number_in(lines[claim + 1], 1, 10);
  cells.saved = number_in(lines[claim + 2], 1, 10);
  const std::string field = lines[claim + 3].substr(kOutputName.size());
  require(field.size() == 65, "the name of the file is a field", field);
  cells.TsfName = field;
  return cells;
}

void check_series(const std::vector<std::string>& lines, const SavedCells& cells) {
  const auto years = static_cast<std::size_t>(cells.LYOD - cells.FYOD + 1);
  require(lines.size() == cells.longitudes.size() * (years + 1),
          "the time-series file has all cells and years");
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::string& line = lines[i];
    const std::size_t cell = i / (years + 1);
    const std::size_t year = i % (years + 1);
    if (year == 0) {
      require(line.size() == 128 &&
                  trimmed(line.substr(1, 9)) == cells.longitudes[cell] &&
                  trimmed(line.substr(10, 9)) == cells.latitudes[cell],
              "a cell's series is headed by its place", line);
      continue;
    }
    require(line.size() == 77, "a year has twelve values", line);
    require(number_in(line, 1, 4) == cells.FYOD + static_cast<std::int64_t>(year) - 1,
            "years follow each other", line);
    for (std::size_t column = 5; column < line.size(); column += 6) {
      const std::int64_t value = number_in(line, column, 6);
      require(fixed_integer(value, 6) == line.substr(column, 6),
              "a value stands at the right of its columns", line);
    }
  }
}

void check_cell_list(const std::vector<std::string>& lines, const SavedCells& cells) {
  require(lines.size() == cells.longitudes.size() + 1, "the cell list has all cells");
  require(lines[0] == " #   Lon.     Lat.      " + cells.TsfName,
          "the cell list names the series", lines[0]);
  for (std::size_t cell = 0; cell + 1 < lines.size(); ++cell) {
    const std::string& line = lines[cell + 1];
    require(line.size() >= 63 && trimmed(line.substr(1, 9)) == cells.longitudes[cell] &&
                trimmed(line.substr(10, 9)) == cells.latitudes[cell],
            "the cell list has a cell's place", line);
  }
}

void check_report(const std::vector<std::string>& lines, const SavedCells& cells) {
  reached("variance reports");
  require(lines.size() == 2 + cells.longitudes.size() - cells.untested,
          "the report has all cells that could be tested");
  for (std::size_t i = 2; i < lines.size(); ++i) {
    std::istringstream words(lines[i]);
    std::string longitude;
    std::string latitude;
    std::string f;
    std::string prob;
    words >> longitude >> latitude >> f >> prob;
    require(lines[i].size() == 65 && !prob.empty(), "a test has four numbers",
            lines[i]);
    require(f == "Inf" || std::stof(f) >= 1, "the larger variance is on top", lines[i]);
    require(prob == "NaN" || std::fabs(std::stof(prob)) <= 1.001F,
            "a probability is one", lines[i]);
  }
}

// Compares the files with the screen since the last check.
void check_saved(const std::string& screen) {
  const std::size_t table = screen.find(kTableStart);
  if (table == std::string::npos || screen.find(kClaim) == std::string::npos) return;
  const SavedCells cells = read_screen(screen.substr(table));
  reached("searches saved");
  reached("cells saved", cells.longitudes.size());
  require(cells.saved == static_cast<std::int64_t>(cells.longitudes.size()),
          "the cells of the table are counted", screen.substr(table));
  require(cells.saved <= std::max<std::int64_t>(cells.defined, 0),
          "no more cells are saved than there are", screen.substr(table));
  const std::string name = cells.TsfName.substr(0, cells.TsfName.find(' '));
  require(name.ends_with(".TSF"), "series have their extension", name);
  const std::string stem = name.substr(0, name.size() - 4);
  check_series(lines_of(file_content(name)), cells);
  check_cell_list(lines_of(file_content(stem + ".XY")), cells);
  if (screen.find("Ftest Comparison of Variance:") != std::string::npos) {
    check_report(lines_of(file_content(stem + ".ftst")), cells);
  } else {
    require(cells.untested == 0, "nothing is tested without a report");
  }
}

// --- The session

// Records what the program writes and runs. It clears the screen between two searches:
// at that point its claims so far are checked.
class Screen : public std::streambuf {
 public:
  void run_command(const std::string& command) {
    require(command == "clear" || command == "ls *.dat.new", "two commands are known",
            command);
    if (command == "clear") check_pass();
  }

  void check_pass() {
    check_saved(text_);
    text_.clear();
  }

 protected:
  int_type overflow(int_type character) override {
    text_ += traits_type::to_char_type(character);
    return character;
  }
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    text_.append(text, static_cast<std::size_t>(size));
    return size;
  }

 private:
  std::string text_;
};

// The channels and operations that a report can name.
void check_report_of_end(const std::string& report) {
  const std::vector<std::string> lines = lines_of(report);
  require(lines.size() == 3 && lines[0] == "Run-time error:" && !lines[1].empty() &&
              lines[2].starts_with("? ") && lines[2].ends_with(",..."),
          "a run-time error has a report of three lines", report);
}

void run_session(const std::string& typed) {
  std::istringstream input(typed);
  Screen screen;
  std::ostream output(&screen);
  std::ostringstream errors;
  ConsoleDialogue console(
      input, output, [&](const std::string& command) { screen.run_command(command); });
  const int status = run_program(console, errors);
  screen.check_pass();
  require(status == 0 || status == 255, "the status is 0 or 255");
  reached(status == 0 ? "quiet ends" : "ends with a report");
  if (status == 255) {
    check_report_of_end(errors.str());
  } else {
    require(errors.str().empty(), "a quiet end reports nothing", errors.str());
  }
}

}  // namespace
}  // namespace veldmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace veldmark::fuzz;  // NOLINT
  static const DataFolder folder;
  const InFolder in_folder(folder.path());
  run_session(std::string(reinterpret_cast<const char*>(data), size));
  folder.clean_up();
  return 0;
}
