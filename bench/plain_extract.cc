// A plain extraction. The outputs of measured programs are compared with its outputs.
// It shares no code with the program.
//
//   plain_extract VARIABLE GRID OUTPUT ROWS YEARS FACTOR COLUMNS [COLUMNS]
//
//   VARIABLE   pre, tmp, ...; not the drought index
//   OUTPUT     folder for the .TSF and the .XY, which are named after GRID
//   ROWS, YEARS, COLUMNS   FIRST-LAST, both included, as in 281-300 or 1961-1990
//   FACTOR     keeps every n-th row, and every n-th column of each range
//
// Two ranges of columns, west piece first, make a box across the 180 degree meridian;
// they must not overlap. GRID is a condensed file with LF line ends.

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

constexpr int kFirstDataYear = 1901;
constexpr int kMonthsPerYear = 12;
constexpr int kRows = 360;
constexpr std::size_t kFieldWidth = 5;
constexpr std::size_t kLineSize = 3601;
constexpr int kMissing = -999;

struct Texts {
  const char* OutputPrefix;
  const char* TitleText;
  const char* RFMT;
};

struct Range {
  int first;
  int last;
};

struct Extraction {
  Texts texts{};
  std::string grid_name;
  std::string output_folder;
  Range rows{};
  Range years{};
  int factor = 1;
  std::vector<Range> columns;
};

using File = std::unique_ptr<std::FILE, int (*)(std::FILE*)>;

// The values of one row: for each month of the years, January of the first year first,
// all columns.
using RowOfMonths = std::vector<std::vector<int>>;

Texts texts_of(const std::string& variable) {
  const char* const one_decimal = "RFMT=(1x,i4,12f6.1)";
  const char* const two_decimals = "RFMT=(1x,i4,12f6.2)";
  const std::map<std::string, Texts> all{
      {"pre", {"CRUts4.01ppt.", "glo.pre. mm", one_decimal}},
      {"tmp", {"CRUts4.01tmp.", "glo.tmp. degC*10", one_decimal}},
      {"dtr", {"CRUts4.01dtr.", "glo.dtr. degC*10", one_decimal}},
      {"tmn", {"CRUts4.01tmn.", "glo.tmn. degC*10", one_decimal}},
      {"tmx", {"CRUts4.01tmx.", "glo.tmx. degC*10", one_decimal}},
      {"vap", {"CRUts4.01vap.", "glo.vap.hPa*10", one_decimal}},
      {"pet", {"CRUts4.01pet.", "", one_decimal}},
      {"cld", {"CRUts4.01cld.", "glo.cld. %*10", one_decimal}},
      {"frs", {"CRUts4.01frs.", "glo.frs.days*100", two_decimals}},
      {"wet", {"CRUts4.01wet.", "", one_decimal}},
  };
  return all.at(variable);
}

Range parse_range(const std::string& text) {
  const std::size_t dash = text.find('-');
  if (dash == std::string::npos) {
    throw std::runtime_error(text + " is not FIRST-LAST");
  }
  return {std::stoi(text.substr(0, dash)), std::stoi(text.substr(dash + 1))};
}

std::string read_line(std::ifstream& grid, std::size_t line_number) {
  std::string line(kLineSize, ' ');
  grid.seekg(static_cast<std::streamoff>((line_number - 1) * kLineSize));
  if (!grid.read(line.data(), static_cast<std::streamsize>(line.size())) ||
      line.back() != '\n') {
    throw std::runtime_error("line " + std::to_string(line_number) +
                             " is not there or has another length");
  }
  return line;
}

RowOfMonths read_row(std::ifstream& grid, const Extraction& wanted, int row) {
  RowOfMonths values;
  for (int year = wanted.years.first; year <= wanted.years.last; ++year) {
    for (int month = 1; month <= kMonthsPerYear; ++month) {
      const int line_number =
          ((year - kFirstDataYear) * kMonthsPerYear + month - 1) * kRows + row;
      const std::string line = read_line(grid, static_cast<std::size_t>(line_number));
      std::vector<int> fields;
      for (std::size_t place = 0; place + kFieldWidth < line.size();
           place += kFieldWidth) {
        const int value = std::stoi(line.substr(place, kFieldWidth));
        fields.push_back(static_cast<std::int16_t>(value));  // kept in 16 bits
      }
      values.push_back(fields);
    }
  }
  return values;
}

void write_cell(const Extraction& wanted, const RowOfMonths& values, int row,
                int column, std::FILE* time_series, std::FILE* cell_list) {
  const double longitude = -179.75 + 0.5 * (column - 1);
  const double latitude = -89.75 + 0.5 * (row - 1);
  const char* const gap = wanted.columns.size() > 1 ? "" : "   ";
  std::fprintf(cell_list, " %9.3f%9.3f    %-13s%s%-27s\n", longitude, latitude,
               wanted.texts.OutputPrefix, gap, wanted.texts.TitleText);
  std::fprintf(time_series, " %9.3f%9.3f    %-13s%-27s%-65s\n", longitude, latitude,
               wanted.texts.OutputPrefix, wanted.texts.TitleText, wanted.texts.RFMT);
  const auto field = static_cast<std::size_t>(column - 1);
  for (std::size_t month = 0; month < values.size(); ++month) {
    if (month % kMonthsPerYear == 0) {
      const int year = wanted.years.first + static_cast<int>(month / kMonthsPerYear);
      std::fprintf(time_series, " %4d", year);
    }
    std::fprintf(time_series, "%6d", values[month][field]);
    if (month % kMonthsPerYear == kMonthsPerYear - 1) {
      std::fprintf(time_series, "\n");
    }
  }
}

void write_row(const Extraction& wanted, const RowOfMonths& values, int row,
               std::FILE* time_series, std::FILE* cell_list) {
  for (const Range& columns : wanted.columns) {
    for (int column = columns.first; column <= columns.last; column += wanted.factor) {
      const int first_january = values[0][static_cast<std::size_t>(column - 1)];
      if (first_january != kMissing) {
        write_cell(wanted, values, row, column, time_series, cell_list);
      }
    }
  }
}

File open_output(const std::string& name) {
  File file(std::fopen(name.c_str(), "w"), &std::fclose);
  if (!file) {
    throw std::runtime_error("cannot open " + name);
  }
  return file;
}

void finish(const File& file) {
  if (std::fflush(file.get()) != 0 || std::ferror(file.get()) != 0) {
    throw std::runtime_error("cannot write the outputs");
  }
}

void extract(const Extraction& wanted) {
  std::ifstream grid(wanted.grid_name, std::ios::binary);
  const std::string name = std::filesystem::path(wanted.grid_name).filename().string();
  const std::string TsfName = name + ".TSF";
  const File time_series = open_output(wanted.output_folder + "/" + TsfName);
  const File cell_list = open_output(wanted.output_folder + "/" + name + ".XY");
  std::fprintf(cell_list.get(), " #   Lon.     Lat.      %-65s\n", TsfName.c_str());
  for (int row = wanted.rows.first; row <= wanted.rows.last; row += wanted.factor) {
    const RowOfMonths values = read_row(grid, wanted, row);
    write_row(wanted, values, row, time_series.get(), cell_list.get());
  }
  finish(time_series);
  finish(cell_list);
}

void run(const std::vector<std::string>& arguments) {
  if (arguments.size() != 7 && arguments.size() != 8) {
    throw std::runtime_error(
        "usage: plain_extract VARIABLE GRID OUTPUT ROWS YEARS FACTOR COLUMNS "
        "[COLUMNS]");
  }
  Extraction wanted;
  wanted.texts = texts_of(arguments[0]);
  wanted.grid_name = arguments[1];
  wanted.output_folder = arguments[2];
  wanted.rows = parse_range(arguments[3]);
  wanted.years = parse_range(arguments[4]);
  wanted.factor = std::stoi(arguments[5]);
  for (std::size_t i = 6; i < arguments.size(); ++i) {
    wanted.columns.push_back(parse_range(arguments[i]));
  }
  extract(wanted);
}

}  // namespace

int main(int argc, char** argv) {
  try {
    run({argv + 1, argv + argc});
  } catch (const std::exception& failure) {
    std::cerr << "plain_extract: " << failure.what() << '\n';
    return EXIT_FAILURE;
  }
  return EXIT_SUCCESS;
}
