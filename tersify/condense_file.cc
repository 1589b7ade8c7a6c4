#include "tersify/condense_file.h"

#include <sys/stat.h>
#include <sys/statvfs.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <string_view>
#include <vector>

#include "tersify/condense_line.h"
#include "tersify/input_file.h"
#include "tersify/line_buffer.h"
#include "util/failure.h"
#include "util/interrupt_watch.h"

namespace veldmark::tersify {
namespace {

constexpr std::size_t kWrittenAtATime = std::size_t{256} * 1024;
constexpr std::size_t kBytesPerLine = kCondensedLine + 1;  // and LF

std::string part_name(const std::string& output) { return output + ".part"; }

// Guesses the size of the condensed copy from the length of the first lines; nothing
// when they are too long for that.
std::optional<std::int64_t> expected_size(const InputFile& input) {
  const std::string beginning = input.beginning(kLongestLine);
  const std::size_t last_end = beginning.rfind('\n');
  if (last_end == std::string::npos) return std::nullopt;
  const auto lines = std::count(beginning.begin(), beginning.end(), '\n');
  const double line_length =
      static_cast<double>(last_end + 1) / static_cast<double>(lines);
  return static_cast<std::int64_t>(static_cast<double>(input.size()) / line_length *
                                   static_cast<double>(kBytesPerLine));
}

// What an abandoned part occupies is free as soon as it is written anew.
std::int64_t size_on_disk(const std::string& name) {
  constexpr std::int64_t kBlock = 512;
  struct stat found {};
  return ::stat(name.c_str(), &found) == 0 ? found.st_blocks * kBlock : 0;
}

// Errors: Failure when the disk has too little room, as far as the system can tell.
void expect_room(const InputFile& input, const std::string& output, const Disk& disk) {
  const std::optional<std::int64_t> needed = expected_size(input);
  const std::filesystem::path folder = std::filesystem::path(output).parent_path();
  const std::optional<std::int64_t> unused =
      disk.free_space(folder.empty() ? "." : folder.string());
  if (!needed || !unused) return;
  const std::int64_t room = *unused + size_on_disk(part_name(output));
  if (room >= *needed) return;
  throw Failure("not enough room for " + output + ": it takes about " +
                std::to_string(*needed) + " bytes, and " + std::to_string(room) +
                " are free");
}

// Errors: Failure when writing `output` would destroy the input.
void expect_another_file(const InputFile& input, const std::string& name,
                         const std::string& output) {
  if (!input.is_same_file(output)) return;
  throw Failure(output + " is the same file as " + name + "; nothing was written");
}

[[noreturn]] void fail(const std::string& name, std::int64_t line,
                       const LineBuffer::Line& text, const LineFault& fault) {
  std::string hint;
  if (text.text.size() == kCondensedLine) {
    hint = " (is the file condensed already?)";
  } else if (text.end == LineBuffer::End::kFileEnd) {
    hint = " (the file ends in this line)";
  }
  throw Failure(name + ": line " + std::to_string(line) + ", field " +
                std::to_string(fault.field) + ": " + fault.reason + hint);
}

// Collects condensed lines and writes them many at a time.
class CondensedOutput {
 public:
  explicit CondensedOutput(PartFile& file) : file_(file), buffer_(kBufferSize) {}

  // Where the next line goes; room for kCondensedRoom characters.
  [[nodiscard]] char* next_line() { return buffer_.data() + size_; }

  // The next line is there; ends it.
  void end_line() {
    buffer_[size_ + kCondensedLine] = '\n';
    size_ += kBytesPerLine;
    if (size_ >= kWrittenAtATime) flush();
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
    if (line->end == LineBuffer::End::kTooLong) {
      throw Failure(name + ": line " + std::to_string(done.lines) +
                    ", field 1: the line is longer than " +
                    std::to_string(kLongestLine) + " characters");
    }
    if (const auto fault = condense_line(line->text, output.next_line())) {
      fail(name, done.lines, *line, *fault);
    }
    output.end_line();
    done.last_line_ended = line->end == LineBuffer::End::kLineEnd;
  }
  output.flush();
}

}  // namespace

std::string condensed_name(const std::string& name) { return name + ".new"; }

std::optional<std::int64_t> system_free_space(const std::string& folder) {
  struct statvfs system {};
  if (::statvfs(folder.c_str(), &system) != 0) return std::nullopt;
  return static_cast<std::int64_t>(system.f_bavail * system.f_frsize);
}

Condensed condense_file(const std::string& name, const Disk& disk,
                        const ProgressLine::Screen& screen) {
  InputFile input(name);
  const std::string output_name = condensed_name(name);
  expect_another_file(input, name, output_name);
  expect_another_file(input, name, part_name(output_name));
  if (input.size() == 0) throw Failure(name + ": the file is empty");
  expect_room(input, output_name, disk);

  PartFile file(output_name, disk.calls);
  ProgressLine progress(screen, name, input.size());
  Condensed done;
  LineBuffer lines([&](char* buffer, std::size_t size) {
    if (InterruptWatch::signal_caught() != 0) throw Interrupted();
    const std::size_t count = input.read(buffer, size);
    done.size_before += static_cast<std::int64_t>(count);
    progress.add(static_cast<std::int64_t>(count));
    return count;
  });
  CondensedOutput output(file);
  condense_lines(name, lines, output, done);
  if (done.size_before < input.size()) input.fail_shorter();
  file.complete();
  done.size_after = file.size();
  return done;
}

}  // namespace veldmark::tersify
