#include "catalogue/line_by_line_reader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "catalogue/line_reader.h"
#include "catalogue/row_format.h"
#include "console/run_end.h"
#include "util/text_field.h"

namespace veldmark {
namespace {

constexpr int kMargin = 1;
constexpr std::size_t kFileNameFieldWidth = 65;

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

// Passes through the lines of a file once.
class LinePass {
 public:
  LinePass(ConsoleDialogue& console, const GridFile& file, const GridRanges& ranges)
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

  // Passes the 360 lines of a month and hands the values of each wanted row to
  // `keep_row`.
  template <typename KeepRow>
  void read_month(KeepRow keep_row) {
    for (std::int32_t row = 1; row <= kGridRows; ++row) {
      if (ranges_.FirstRow <= row && row <= ranges_.LastRow) {
        read_wanted_line();
        keep_row(row, row_values_);
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
  const GridFile& file_;
  const GridRanges& ranges_;
  RowFormat format_;
  LineReader lines_;
  RowValues row_values_{};
};

}  // namespace

GridValues read_line_by_line(ConsoleDialogue& console, const GridFile& file,
                             const BlockRequest& request) {
  GridValues values(request.ranges, request.years.YearCount(), request.MissingCode);
  LinePass pass(console, file, request.ranges);
  pass.skip_lines(request.years.SkipLines());
  pass.read_month([&](std::int32_t /*row*/, const RowValues& row_values) {
    values.open_next_row(row_values);
  });
  values.lay_out();
  for (std::size_t month = 1; month < values.month_count(); ++month) {
    pass.read_month([&](std::int32_t row, const RowValues& row_values) {
      values.store_row(month, row, row_values);
    });
  }
  return values;
}

}  // namespace veldmark
