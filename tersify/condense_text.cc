#include "tersify/condense_text.h"

#include <vector>

#include "tersify/condense_line.h"
#include "tersify/condensed_output.h"
#include "tersify/disk_space.h"
#include "tersify/first_line.h"
#include "util/in_quotes.h"
#include "util/part_file.h"

namespace veldmark::tersify {
namespace {

using companion::LineBuffer;

[[noreturn]] void fail(const std::string& name, std::int64_t line,
                       const LineBuffer::Line& text, const LineFault& fault) {
  std::string hint;
  if (text.text.size() == kCondensedLine) {
    hint = " (is the file condensed already?)";
  } else if (text.end == LineBuffer::End::kFileEnd) {
    hint = " (the file ends in this line)";
  }
  throw TextFault(in_quotes(name) + ": line " + std::to_string(line) + ", field " +
                  std::to_string(fault.field) + ": " + fault.reason + hint);
}

// Condenses line `number`; see condense_line for `output`.
void condense_or_fail(const std::string& name, std::int64_t number,
                      const LineBuffer::Line& line, char* output) {
  if (line.end == LineBuffer::End::kTooLong) {
    throw TextFault(in_quotes(name) + ": line " + std::to_string(number) +
                    ", field 1: the line is longer than " +
                    std::to_string(companion::kLongestLine) + " characters");
  }
  if (const auto fault = condense_line(line.text, output)) {
    fail(name, number, line, *fault);
  }
}

// Throws TextFault if the first line isn't that of a published file. Call it before the
// check of the disk space: only the lines of a published file tell the size of its
// copy.
void expect_published(const std::string& name, const FirstLine& first) {
  if (is_condensed(first.line())) {
    throw TextFault(in_quotes(name) + " is condensed already");
  }
  std::vector<char> output(kCondensedCapacity);
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

// Throws Failure if the copy can't be made: the output is an input, the text is empty
// or not a published one, or the disk has too little free space.
void check_preconditions(const CondenseJob& job, const PublishedText& text,
                         const std::string& output) {
  job.inputs.require_not_an_input(output);
  if (text.beginning.empty()) {
    throw TextFault(in_quotes(job.name) + ": the file is empty");
  }
  expect_published(job.name, FirstLine(text.beginning));
  if (text.size) {
    expect_disk_space(output, expected_size(text.beginning, *text.size),
                      job.free_space);
  }
}

}  // namespace

Condensed condense_text(const CondenseJob& job, const PublishedText& text) {
  Condensed done;
  done.output = job.output.value_or(condensed_name(job.name));
  check_preconditions(job, text, done.output);
  PartFile file(done.output);
  LineBuffer lines(text.read_more);
  CondensedOutput output(file);
  condense_lines(job.name, lines, output, done);
  file.complete();
  done.size_after = file.size();
  return done;
}

}  // namespace veldmark::tersify
