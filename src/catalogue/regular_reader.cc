#include "catalogue/regular_reader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/row_format.h"
#include "catalogue/row_plan.h"
#include "util/piece_size.h"

namespace veldmark {
namespace {

// The line ending and size of a regular file, from which the offset of a line follows.
struct LineLayout {
  std::string_view line_ending;
  std::int64_t file_size;

  [[nodiscard]] std::size_t line_size() const {
    return kLineLength + line_ending.size();
  }
};

// Returns the line layout; nullopt if the file's size is not that of a whole number of
// lines, or if there are fewer than `lines`.
std::optional<LineLayout> find_line_layout(const GridFile& file, std::int64_t lines) {
  const std::int64_t size = file.size();
  char first_end{};
  const bool has_carriage_returns =
      file.read_at(kLineLength, &first_end, 1) && first_end == '\r';
  const LineLayout layout{has_carriage_returns ? "\r\n" : "\n", size};
  const auto line_size = static_cast<std::int64_t>(layout.line_size());
  const auto line_end_size = static_cast<std::int64_t>(layout.line_ending.size());
  const bool whole_lines =
      size % line_size == 0 || (size + line_end_size) % line_size == 0;
  if (!whole_lines || size + line_end_size < lines * line_size) {
    return std::nullopt;
  }
  return layout;
}

// Reads the months of a block in their order.
class RegularReader {
 public:
  RegularReader(const GridFile& file, const BlockRequest& request, LineLayout layout)
      : file_(file),
        request_(request),
        layout_(layout),
        groups_(field_groups(request.ranges)),
        first_row_(std::max(request.ranges.FirstRow, 1)),
        last_row_(request.ranges.LastRow),
        buffer_(kPieceSize + layout.line_size()),
        missing_(missing_line(request.MissingCode)) {}

  std::optional<GridValues> read() {
    const std::int32_t first_month = request_.years.SkipLines() / kGridRows;
    for (std::int32_t month = 0; month < first_month; ++month) {
      if (!check_skipped_month(month)) {
        return std::nullopt;
      }
    }
    GridValuesBuilder values(request_.ranges, request_.years.YearCount(),
                             request_.MissingCode);
    if (!read_january(first_month, values)) {
      return std::nullopt;
    }
    values.allocate();
    for (std::int32_t GridY = first_row_; GridY <= last_row_; ++GridY) {
      plans_.push_back(plan_row(groups_, values.data_columns(GridY)));
    }
    for (std::size_t month = 1; month < values.month_count(); ++month) {
      if (!read_month(first_month + static_cast<std::int32_t>(month), month, values)) {
        return std::nullopt;
      }
    }
    return std::move(values).finish();
  }

 private:
  bool read_january(std::int32_t file_month, GridValuesBuilder& values) {
    return for_each_requested_line(
        file_month, [&](std::int32_t /*GridY*/, std::string_view line) {
          if (contains_newline(line) || !read_row(line, groups_, row_values_)) {
            return false;
          }
          values.add_row(row_values_);
          return true;
        });
  }

  bool read_month(std::int32_t file_month, std::size_t month,
                  GridValuesBuilder& values) {
    return for_each_requested_line(
        file_month, [&](std::int32_t GridY, std::string_view line) {
          const RowPlan& plan = plans_[static_cast<std::size_t>(GridY - first_row_)];
          return read_by_plan(line, plan, missing_,
                              values.month_of_row(month, GridY).data());
        });
  }

  // Reads the requested lines of a month of the file (0 is January 1901) and calls
  // `use_line` with each, without its line ending. Returns false as soon as a line is
  // not delimited or `use_line` returns false. A month without requested lines is
  // checked like a skipped one.
  template <typename UseLine>
  bool for_each_requested_line(std::int32_t file_month, UseLine use_line) {
    if (first_row_ > last_row_) {
      return check_skipped_month(file_month);
    }
    const auto lines_per_piece =
        static_cast<std::int32_t>(kPieceSize / layout_.line_size());
    for (std::int32_t GridY = first_row_; GridY <= last_row_;
         GridY += lines_per_piece) {
      const std::int32_t count = std::min(lines_per_piece, last_row_ - GridY + 1);
      if (!read_lines(file_month, GridY, count)) {
        return false;
      }
      for (std::int32_t i = 0; i < count; ++i) {
        if (!is_delimited(i) || !use_line(GridY + i, line(i))) {
          return false;
        }
      }
    }
    return true;
  }

  // Returns whether the first line of a month of the file is delimited and has no
  // newline inside.
  bool check_skipped_month(std::int32_t file_month) {
    return read_lines(file_month, 1, 1) && is_delimited(0) &&
           !contains_newline(line(0));
  }

  // Reads `count` lines, starting with row `GridY` of a month, into the buffer, after
  // the line ending of the line before them.
  bool read_lines(std::int32_t file_month, std::int32_t GridY, std::int32_t count) {
    const std::size_t end_size = layout_.line_ending.size();
    const std::int64_t lines_before = std::int64_t{file_month} * kGridRows + GridY - 1;
    const auto begin = lines_before * static_cast<std::int64_t>(layout_.line_size());
    const std::size_t size = static_cast<std::size_t>(count) * layout_.line_size();
    if (lines_before == 0) {
      layout_.line_ending.copy(buffer_.data(), end_size);
      return read_to_line_ending(begin, buffer_.data() + end_size, size);
    }
    return read_to_line_ending(begin - static_cast<std::int64_t>(end_size),
                               buffer_.data(), size + end_size);
  }

  // Reads `size` bytes that end with a line ending. If that is missing at the end of
  // the file, it is added.
  bool read_to_line_ending(std::int64_t begin, char* buffer, std::size_t size) const {
    const std::size_t end_size = layout_.line_ending.size();
    const bool to_the_end = begin + static_cast<std::int64_t>(size) > layout_.file_size;
    if (!to_the_end) {
      return file_.read_at(begin, buffer, size);
    }
    layout_.line_ending.copy(buffer + size - end_size, end_size);
    return file_.read_at(begin, buffer, size - end_size);
  }

  // Returns line `index` of the buffer, counted from 0, without its line ending.
  [[nodiscard]] std::string_view line(std::int32_t index) const {
    const std::size_t begin = layout_.line_ending.size() +
                              static_cast<std::size_t>(index) * layout_.line_size();
    return {buffer_.data() + begin, kLineLength};
  }

  // Returns whether line `index` of the buffer has a line ending before and after it.
  [[nodiscard]] bool is_delimited(std::int32_t index) const {
    const char* begin = line(index).data();
    const std::size_t end_size = layout_.line_ending.size();
    return std::string_view(begin - end_size, end_size) == layout_.line_ending &&
           std::string_view(begin + kLineLength, end_size) == layout_.line_ending;
  }

  const GridFile& file_;
  const BlockRequest& request_;
  LineLayout layout_;
  FieldGroups groups_;
  std::int32_t first_row_;
  std::int32_t last_row_;
  std::vector<char> buffer_;
  std::string missing_;         // a line with the missing code in every field
  std::vector<RowPlan> plans_;  // one for each requested row
  RowValues row_values_{};
};

}  // namespace

std::optional<GridValues> read_regular(const GridFile& file,
                                       const BlockRequest& request) {
  const std::int64_t lines = std::int64_t{request.years.SkipLines()} +
                             std::int64_t{request.years.YearCount()} * kLinesPerYear;
  const std::optional<LineLayout> layout = find_line_layout(file, lines);
  if (!layout) {
    return std::nullopt;
  }
  return RegularReader(file, request, *layout).read();
}

}  // namespace veldmark
