#include "support/series.h"

#include <gtest/gtest.h>
#include <stdio.h>

#include <cmath>
#include <sstream>

namespace veldmark::testing {
namespace {

std::string output_of(const std::string& command) {
  std::string output;
  FILE* pipe = ::popen(command.c_str(), "r");
  if (pipe == nullptr) {
    ADD_FAILURE() << "cannot run " << command;
    return output;
  }
  char buffer[65536];
  for (std::size_t count = 1; count > 0;) {
    count = fread(buffer, 1, sizeof buffer, pipe);
    output.append(buffer, count);
  }
  EXPECT_EQ(::pclose(pipe), 0) << command;
  return output;
}

int hundredths(const std::string& degrees) {
  return static_cast<int>(std::lround(std::stod(degrees) * 100));
}

std::vector<std::string> split(const std::string& line) {
  std::vector<std::string> words;
  std::istringstream stream(line);
  for (std::string word; std::getline(stream, word, ',');) {
    words.push_back(word);
  }
  return words;
}

// The heading of a cell in a time-series file: longitude at positions 2-10, latitude at
// 11-19.
Place place_of_header(const std::string& line) {
  return {hundredths(line.substr(1, 9)), hundredths(line.substr(10, 9))};
}

}  // namespace

std::string sample_path(std::string_view variable) {
  return VELDMARK_SAMPLE_FOLDER "/cru_ts4.01_" + std::string(variable) +
         "_1901_2016.csv.gz";
}

SeriesByPlace sample_series(std::string_view variable) {
  std::istringstream lines(output_of("gzip -dc '" + sample_path(variable) + "'"));
  std::string line;
  std::getline(lines, line);
  EXPECT_TRUE(line.starts_with("lon,lat,1901-01,")) << line.substr(0, 30);
  SeriesByPlace series;
  while (std::getline(lines, line)) {
    const std::vector<std::string> words = split(line);
    std::vector<int>& values =
        series[{hundredths(words.at(0)), hundredths(words.at(1))}];
    for (std::size_t i = 2; i < words.size(); ++i) {
      values.push_back(std::stoi(words[i]));
    }
    EXPECT_EQ(values.size(), 1392U);
  }
  return series;
}

SeriesByPlace read_time_series(const std::string& content, int first_year) {
  SeriesByPlace series;
  std::vector<int>* values = nullptr;
  std::istringstream lines(content);
  for (std::string line; std::getline(lines, line);) {
    if (line.size() == 128) {
      values = &series[place_of_header(line)];
      EXPECT_TRUE(values->empty()) << "a cell twice: " << line;
      continue;
    }
    EXPECT_EQ(line.size(), 77U) << line;
    if (values == nullptr || line.size() != 77) {
      ADD_FAILURE() << "not a line of a time-series file: " << line;
      return series;
    }
    EXPECT_EQ(std::stoi(line.substr(1, 4)),
              first_year + static_cast<int>(values->size()) / 12);
    for (std::size_t month = 0; month < 12; ++month) {
      values->push_back(std::stoi(line.substr(5 + 6 * month, 6)));
    }
  }
  return series;
}

std::vector<int> years_of(const std::vector<int>& series, int first_year,
                          int last_year) {
  return {series.begin() + (first_year - 1901) * 12,
          series.begin() + (last_year - 1900) * 12};
}

int row_of(const Place& place) { return (place.second + 8975) / 50 + 1; }

int column_of(const Place& place) { return (place.first + 17975) / 50 + 1; }

}  // namespace veldmark::testing
