#include "catalogue/grid_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <optional>
#include <utility>

#include "catalogue/line_reader.h"
#include "catalogue/row_format.h"
#include "util/text_field.h"

namespace veldmark {
namespace {

constexpr int kMargin = 1;
constexpr std::size_t kFileNameFieldWidth = 65;

bool is_folder(const FileDescriptor& file) {
  struct stat status {};
  return ::fstat(file.get(), &status) == 0 && S_ISDIR(status.st_mode);
}

[[noreturn]] void end_by_bad_line(ConsoleDialogue& console, bool CrossesDateLine) {
  console.blank_line();
  console.write_line(kMargin, CrossesDateLine ? "Error Reading Grid Values: R2"
                                              : "Error Reading Grid Values: R1");
  console.write_line(kMargin, "Program Terminating Without Completion");
  console.write_line(kMargin,
                     "Try re-entering your search criteria again being sure to");
  console.write_line(kMargin, "enter values as real numbers");
  throw RunEnd::quiet();
}

[[noreturn]] void end_by_end_of_file(ConsoleDialogue& console,
                                     const std::string& name) {
  console.blank_line();
  console.write_line(kMargin, "End Of File Reached Prematurely :" +
                                  text_field(name, kFileNameFieldWidth));
  console.write_line(kMargin,
                     "This should not happen.  Check file for complete content");
  console.write_line(kMargin, "Program Terminating ");
  console.blank_line();
  throw RunEnd::quiet();
}

// Reads a search's block line by line, which works for files of any shape.
class BlockReader {
 public:
  BlockReader(ConsoleDialogue& console, GridFile& file, const GridRanges& ranges)
      : console_(console),
        file_(file),
        ranges_(ranges),
        format_(row_format(ranges)),
        lines_(
            [&file](char* buffer, std::size_t size) { return file.read(buffer, size); },
            kLineLength) {}

  void skip_lines(std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
      if (!lines_.skip()) {
        throw RunEnd::error(kPastEndOfFile, Operation::kRead, Channel::kGridFile);
      }
    }
  }

  void read_month(GridValues& values, std::int32_t year, std::int32_t month) {
    for (std::int32_t row = 1; row <= kGridRows; ++row) {
      if (ranges_.FirstRow <= row && row <= ranges_.LastRow) {
        read_wanted_line();
        values.store_row(year, month, row, row_values_);
      } else {
        skip_lines(1);
      }
    }
  }

 private:
  void read_wanted_line() {
    const std::optional<LineReader::Line> line = lines_.next();
    const bool cut_off = line && !line->has_line_end && line->text.size() < kLineLength;
    if (!line || cut_off) {
      end_by_end_of_file(console_, file_.name());
    }
    if (!read_row(line->text, format_, row_values_)) {
      end_by_bad_line(console_, ranges_.CrossesDateLine);
    }
  }

  ConsoleDialogue& console_;
  GridFile& file_;
  const GridRanges& ranges_;
  RowFormat format_;
  LineReader lines_;
  RowValues row_values_{};
};

}  // namespace

GridFile::GridFile(std::string name) : name_(std::move(name)), file_(name_, O_RDONLY) {
  if (!file_.is_open() || is_folder(file_)) {
    throw cannot_open(name_, Channel::kGridFile);
  }
}

std::size_t GridFile::read(char* buffer, std::size_t size) {
  const std::ptrdiff_t count = file_.read(buffer, size);
  if (count < 0) {
    throw cannot_read(name_, errno, Channel::kGridFile);
  }
  return static_cast<std::size_t>(count);
}

GridValues read_block(ConsoleDialogue& console, GridFile file, const YearSpan& years,
                      const GridRanges& ranges) {
  GridValues values(ranges, years.YearCount());
  BlockReader reader(console, file, ranges);
  const std::int32_t SkipLines = (years.FYOD - kFirstDataYear) * kLinesPerYear;
  reader.skip_lines(SkipLines);
  for (std::int32_t year = 1; year <= years.YearCount(); ++year) {
    for (std::int32_t month = 1; month <= kMonthsPerYear; ++month) {
      reader.read_month(values, year, month);
    }
  }
  return values;
}

}  // namespace veldmark
