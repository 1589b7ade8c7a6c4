#include "catalogue/line_by_line_reader.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>

#include "catalogue/line_reader.h"
#include "catalogue/read_fault.h"
#include "catalogue/row_format.h"

namespace veldmark {
namespace {

// Reads the lines of a file in their order, once.
class LineByLineReader {
 public:
  LineByLineReader(const GridFile& file, const GridRanges& ranges)
      : file_(file),
        ranges_(ranges),
        groups_(field_groups(ranges)),
        lines_(
            [&file](char* buffer, std::size_t size) { return file.read(buffer, size); },
            kLineLength) {}

  void skip_lines(std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
      ++line_;
      if (!lines_.skip()) {
        throw ReadFault(file_.name(), EndAtSkippedLine{line_});
      }
    }
  }

  // Reads or skips the 360 lines of a month and calls `use_row` with the values of each
  // requested row.
  template <typename UseRow>
  void read_month(UseRow use_row) {
    for (std::int32_t GridY = 1; GridY <= kGridRows; ++GridY) {
      if (ranges_.FirstRow <= GridY && GridY <= ranges_.LastRow) {
        read_requested_line();
        use_row(GridY, row_values_);
      } else {
        skip_lines(1);
      }
    }
  }

 private:
  void read_requested_line() {
    ++line_;
    const std::optional<LineReader::Line> line = lines_.next();
    const bool truncated =
        line && !line->has_newline && line->text.size() < kLineLength;
    if (!line || truncated) {
      throw ReadFault(file_.name(), EndAtRequestedLine{line_});
    }
    if (!read_row(line->text, groups_, row_values_)) {
      throw ReadFault(file_.name(),
                      BadField{line_, first_bad_field(line->text, groups_)});
    }
  }

  const GridFile& file_;
  const GridRanges& ranges_;
  FieldGroups groups_;
  LineReader lines_;
  std::int64_t line_ = 0;  // the number of the last line that was read or skipped
  RowValues row_values_{};
};

}  // namespace

GridValues read_line_by_line(const GridFile& file, const BlockRequest& request) {
  GridValuesBuilder values(request.ranges, request.years.YearCount(),
                           request.MissingCode);
  LineByLineReader reader(file, request.ranges);
  reader.skip_lines(request.years.SkipLines());
  reader.read_month([&](std::int32_t /*GridY*/, const RowValues& row_values) {
    values.add_row(row_values);
  });
  values.allocate();
  for (std::size_t month = 1; month < values.month_count(); ++month) {
    reader.read_month([&](std::int32_t GridY, const RowValues& row_values) {
      values.store_row(month, GridY, row_values);
    });
  }
  return std::move(values).finish();
}

}  // namespace veldmark
