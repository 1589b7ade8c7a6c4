// The two hot loops, each compared with its plain definition: fields to values while
// reading, values to fields of six characters while writing. The benchmark's items are
// values.

#include <benchmark/benchmark.h>

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/field_conversion.h"
#include "output/value_text.h"
#include "util/fixed_field.h"

namespace veldmark {
namespace {

constexpr std::size_t kLine = 720;  // values of a line of the grid file
constexpr std::size_t kValues = 64 * kLine;
constexpr int kSixColumns = 6;

// Values of one to five characters, mixed as on land, and too many for the branch
// predictor to learn.
std::vector<std::int16_t> land_values() {
  constexpr std::uint32_t kSeed = 1901;
  std::mt19937 random(kSeed);
  std::vector<std::int16_t> values(kValues);
  for (std::int16_t& value : values) {
    const auto bits = static_cast<std::uint32_t>(random());
    const auto temperature = static_cast<std::int32_t>(bits % 951) - 580;
    const bool tenfold = (bits >> 16U) % 4 == 0;
    value = static_cast<std::int16_t>(tenfold ? temperature * 10 : temperature);
  }
  return values;
}

std::string fields_of(const std::vector<std::int16_t>& values) {
  std::string fields;
  for (const std::int16_t value : values) {
    fields += fixed_integer(value, static_cast<int>(kFieldWidth));
  }
  return fields;
}

void count_values(benchmark::State& state, std::size_t values) {
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(values));
}

// Measures a function that converts fields as convert_fields does.
template <typename Convert>
void measure_conversion(benchmark::State& state, Convert convert) {
  const std::string fields = fields_of(land_values());
  std::vector<std::int16_t> values(kValues);
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(convert(std::string_view(fields), values.data()));
    benchmark::ClobberMemory();
  }
  if (values != land_values()) {
    state.SkipWithError("wrong values");
  }
  count_values(state, kValues);
}

bool convert_plainly(std::string_view fields, std::int16_t* values) {
  for (std::size_t i = 0; i < fields.size() / kFieldWidth; ++i) {
    const auto value = parse_integer(fields.substr(i * kFieldWidth, kFieldWidth));
    if (!value) {
      return false;
    }
    values[i] = static_cast<std::int16_t>(*value);
  }
  return true;
}

// A line of cells without data in which one field differs from the missing code, as for
// a cell that lacks only the first January.
std::string fields_without_data() {
  constexpr std::size_t kWithData = 100;
  std::vector<std::int16_t> values(kLine, -999);
  values[kWithData] = 12;
  return fields_of(values);
}

template <typename Check>
void measure_check(benchmark::State& state, Check check) {
  const std::string fields = fields_without_data();
  const std::string missing = fields_of(std::vector<std::int16_t>(kLine, -999));
  bool integers = false;
  while (state.KeepRunning()) {
    integers = check(std::string_view(fields), std::string_view(missing));
    benchmark::DoNotOptimize(integers);
  }
  if (!integers) {
    state.SkipWithError("wrong answer");
  }
  count_values(state, kLine);
}

bool check_plainly(std::string_view fields, std::string_view /*missing*/) {
  bool integers = true;
  for (; !fields.empty(); fields.remove_prefix(kFieldWidth)) {
    integers = integers && parse_integer(fields.substr(0, kFieldWidth)).has_value();
  }
  return integers;
}

std::string write_plainly(const std::vector<std::int16_t>& values) {
  std::string text;
  for (const std::int16_t value : values) {
    text += fixed_integer(value, kSixColumns);
  }
  return text;
}

void write_by_table(benchmark::State& state) {
  const ValueText value_text;
  const std::vector<std::int16_t> values = land_values();
  std::string text(kValues * ValueText::kWidth + ValueText::kCopySize, ' ');
  char* end = nullptr;
  while (state.KeepRunning()) {
    end = text.data();
    for (const std::int16_t value : values) {
      end = value_text.write(value, end);
    }
    benchmark::DoNotOptimize(end);
    benchmark::ClobberMemory();
  }
  if (std::string_view(text.data(), end) != write_plainly(values)) {
    state.SkipWithError("wrong text");
  }
  count_values(state, kValues);
}

void write_by_fixed_integer(benchmark::State& state) {
  const std::vector<std::int16_t> values = land_values();
  while (state.KeepRunning()) {
    benchmark::DoNotOptimize(write_plainly(values));
  }
  count_values(state, kValues);
}

BENCHMARK_CAPTURE(measure_conversion, convert_fields, convert_fields);
BENCHMARK_CAPTURE(measure_conversion, by_tables, convert_fields_by_tables);
BENCHMARK_CAPTURE(measure_conversion, parse_integer, convert_plainly);
BENCHMARK_CAPTURE(measure_check, are_integers, are_integers);
BENCHMARK_CAPTURE(measure_check, parse_integer, check_plainly);
BENCHMARK(write_by_table);
BENCHMARK(write_by_fixed_integer);

}  // namespace
}  // namespace veldmark

BENCHMARK_MAIN();
