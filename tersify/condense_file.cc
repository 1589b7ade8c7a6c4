#include "tersify/condense_file.h"

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "companion/input_file.h"
#include "companion/line_buffer.h"
#include "tersify/condense_line.h"
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

constexpr std::size_t kWrittenAtATime = std::size_t{256} * 1024;
constexpr std::size_t kBytesPerLine = kCondensedLine + 1;  // and LF

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

// Collects condensed lines and writes them many at a time.
class CondensedOutput {
 public:
  explicit CondensedOutput(PartFile& file) : file_(file), buffer_(kBufferSize) {}

  // Returns where the next line goes; room for kCondensedRoom characters.
  [[nodiscard]] char* next_line() { return buffer_.data() + size_; }

  // The next line is there; ends it.
  void end_line() {
    buffer_[size_ + kCondensedLine] = '\n';
    size_ += kBytesPerLine;
    if (size_ >= kWrittenAtATime) {
      flush();
    }
  }

  void flush() {
    file_.write(std::string_view(buffer_.data(), size_));
    size_ = 0;
  }

 private:
  static constexpr std::size_t kBufferSize =
      kWrittenAtATime + kBytesPerLine + kCondensedRoom;
  PartFile& file_;
  std::vector<char> buffer_;
  std::size_t size_ = 0;
};

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
void expect_prospects(const std::string& name, const InputFile& input,
                      const FreeSpace& free_space, const companion::Inputs& others) {
  const std::string output = condensed_name(name);
  companion::Inputs own;
  own.add(input.shown_name(), input.identity());
  own.expect_apart_from(output);
  others.expect_apart_from(output);
  if (input.size() == 0) {
    throw Failure(in_quotes(name) + ": the file is empty");
  }
  const FirstLine first(input);
  expect_published(name, first);
  expect_room(output, expected_size(first.beginning(), input.size()), free_space);
}

}  // namespace

std::string condensed_name(const std::string& name) { return name + ".new"; }

Condensed condense_file(const std::string& name, const FreeSpace& free_space,
                        const companion::ProgressLine::Screen& screen,
                        const companion::Inputs& inputs) {
  const InputFile input = open_text_file(name, InputFile::Kind::kRegular);
  expect_prospects(name, input, free_space, inputs);

  PartFile file(condensed_name(name));
  companion::ProgressLine progress(screen, in_quotes(name), input.size());
  Condensed done;
  LineBuffer lines([&](char* buffer, std::size_t size) {
    InterruptWatch::obey();
    const std::size_t count = input.read(buffer, size);
    done.size_before += static_cast<std::int64_t>(count);
    progress.add(static_cast<std::int64_t>(count));
    return count;
  });
  CondensedOutput output(file);
  condense_lines(name, lines, output, done);
  if (done.size_before < input.size()) {
    input.fail_shorter();
  }
  file.complete();
  done.size_after = file.size();
  return done;
}

}  // namespace veldmark::tersify
