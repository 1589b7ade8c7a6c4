#include "tersify/condense_file.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "companion/input_file.h"
#include "companion/line_buffer.h"
#include "tersify/condense_line.h"
#include "tersify/condense_netcdf.h"
#include "tersify/condensed_output.h"
#include "tersify/first_line.h"
#include "tersify/text_file.h"
#include "util/failure.h"
#include "util/in_quotes.h"
#include "util/interrupt_watch.h"
#include "util/part_file.h"

namespace veldmark::tersify {
namespace {

using companion::InputFile;
using companion::LineBuffer;

[[noreturn]] void fail(const std::string& name, std::int64_t line,
                       const LineBuffer::Line& text, const LineFault& fault) {
  std::string hint;
  if (text.text.size() == kCondensedLine) {
    hint = " (is the file condensed already?)";
  } else if (text.end == LineBuffer::End::kFileEnd) {
    hint = " (the file ends in this line)";
  }
  throw Failure(in_quotes(name) + ": line " + std::to_string(line) + ", field " +
                std::to_string(fault.field) + ": " + fault.reason + hint);
}

// Condenses line `number`; see condense_line for `output`.
void condense_or_fail(const std::string& name, std::int64_t number,
                      const LineBuffer::Line& line, char* output) {
  if (line.end == LineBuffer::End::kTooLong) {
    throw Failure(in_quotes(name) + ": line " + std::to_string(number) +
                  ", field 1: the line is longer than " +
                  std::to_string(companion::kLongestLine) + " characters");
  }
  if (const auto fault = condense_line(line.text, output)) {
    fail(name, number, line, *fault);
  }
}

// A file that is no published one is told so before anything else: its size and its
// lines say nothing of the room that a copy takes.
void expect_published(const std::string& name, const FirstLine& first) {
  if (is_condensed(first.line())) {
    throw Failure(in_quotes(name) + " is condensed already");
  }
  std::vector<char> output(kCondensedRoom);
  condense_or_fail(name, 1, first.line(), output.data());
}

// Condenses all lines of `name`.
void condense_lines(const std::string& name, LineBuffer& lines, CondensedOutput& output,
                    Condensed& done) {
  while (const std::optional<LineBuffer::Line> line = lines.next()) {
    ++done.lines;
    condense_or_fail(name, done.lines, *line, output.next_line());
    output.end_line();
    done.last_line_ended = line->end == LineBuffer::End::kLineEnd;
  }
  output.flush();
}

// Throws Failure when there is no use in beginning.
void expect_prospects(const CondenseJob& job, const InputFile& input,
                      const std::string& output) {
  companion::Inputs own;
  own.add(input.shown_name(), input.identity());
  own.expect_apart_from(output);
  job.inputs.expect_apart_from(output);
  if (input.size() == 0) {
    throw Failure(in_quotes(job.name) + ": the file is empty");
  }
  const FirstLine first(input);
  expect_published(job.name, first);
  expect_room(output, expected_size(first.beginning(), input.size()), job.free_space);
}

// Condenses a file of text.
Condensed condense_text(const CondenseJob& job) {
  const InputFile input = open_text_file(job.name, InputFile::Kind::kRegular);
  Condensed done;
  done.output = job.output.value_or(condensed_name(job.name));
  expect_prospects(job, input, done.output);

  PartFile file(done.output);
  companion::ProgressLine progress(job.screen, in_quotes(job.name), input.size());
  LineBuffer lines([&](char* buffer, std::size_t size) {
    InterruptWatch::obey();
    const std::size_t count = input.read(buffer, size);
    done.size_before += static_cast<std::int64_t>(count);
    progress.add(static_cast<std::int64_t>(count));
    return count;
  });
  CondensedOutput output(file);
  condense_lines(job.name, lines, output, done);
  if (done.size_before < input.size()) {
    input.fail_shorter();
  }
  file.complete();
  done.size_after = file.size();
  return done;
}

// Is it netCDF, in the classic format or on HDF5?
bool is_netcdf(std::string_view first_bytes) {
  return first_bytes.starts_with("CDF") || first_bytes.starts_with("\x89HDF");
}

}  // namespace

Condensed condense_file(const CondenseJob& job) {
  constexpr std::size_t kLongestMark = 4;
  const std::string first_bytes =
      InputFile(job.name, InputFile::Kind::kRegular).beginning(kLongestMark);
  if (is_netcdf(first_bytes)) {
    return condense_netcdf(job.name, job);
  }
  return condense_text(job);
}

}  // namespace veldmark::tersify
