#include "catalogue/regular_reader.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "catalogue/field_conversion.h"
#include "catalogue/row_format.h"
#include "util/fixed_field.h"

namespace veldmark {
namespace {

// Pieces of this size are read from the page cache as fast as any larger ones, and stay
// in the second-level cache until they are converted.
constexpr std::size_t kPieceSize = std::size_t{256} * 1024;

// Where the lines of a regular file are.
struct LineFrame {
  std::string_view line_end;
  std::int64_t file_size = 0;

  [[nodiscard]] std::size_t line_size() const { return kLineLength + line_end.size(); }
};

// Finds out how the lines of the file end and whether its size is that of whole lines,
// at least `lines` of them.
std::optional<LineFrame> find_frame(const GridFile& file, std::int64_t lines) {
  const std::optional<std::int64_t> size = file.size();
  char first_end = 0;
  if (!size || !file.read_at(kLineLength, &first_end, 1)) {
    return std::nullopt;
  }
  const LineFrame frame{first_end == '\r' ? "\r\n" : "\n", *size};
  const auto line_size = static_cast<std::int64_t>(frame.line_size());
  const auto line_end_size = static_cast<std::int64_t>(frame.line_end.size());
  const bool whole_lines =
      *size % line_size == 0 || (*size + line_end_size) % line_size == 0;
  if (!whole_lines || *size + line_end_size < lines * line_size) {
    return std::nullopt;
  }
  return frame;
}

// Neighbouring fields of a line of which all have data, or none.
struct FieldRun {
  std::int32_t first_field;
  std::int32_t count;
  bool has_data;
};

// What a row's line is read for after January of FYOD: its wanted fields in order.
struct RowPlan {
  std::vector<FieldRun> runs;
  std::size_t blank_fields = 0;  // cells with data whose fields lie beyond the line
};

// Adds the fields of a group to a plan, but for those that are not on the line.
//
//   end_column   columns from here on get their values from another group
void add_group(const FieldGroup& group, std::int32_t end_column,
               std::span<const std::int32_t> data_columns, RowPlan& plan) {
  for (std::int32_t i = 0; i < group.count; ++i) {
    const std::int32_t field = group.first_field + i;
    const std::int32_t column = group.first_column + i;
    const bool has_data =
        column < end_column &&
        std::binary_search(data_columns.begin(), data_columns.end(), column);
    if (field < 1) {
      continue;
    }
    if (field > kGridColumns) {
      plan.blank_fields += has_data ? 1 : 0;
    } else if (!plan.runs.empty() && plan.runs.back().has_data == has_data &&
               plan.runs.back().first_field + plan.runs.back().count == field) {
      ++plan.runs.back().count;
    } else {
      plan.runs.push_back({field, 1, has_data});
    }
  }
}

RowPlan plan_row(const RowFormat& format, std::span<const std::int32_t> data_columns) {
  RowPlan plan;
  const bool two_groups = format.second.count > 0;
  const std::int32_t end_of_first =
      two_groups ? format.second.first_column : kGridColumns + 1;
  add_group(format.first, end_of_first, data_columns, plan);
  add_group(format.second, kGridColumns + 1, data_columns, plan);
  return plan;
}

// Reads the months of a block one after another.
class RegularPass {
 public:
  RegularPass(const GridFile& file, const BlockRequest& request, LineFrame frame)
      : file_(file),
        request_(request),
        frame_(frame),
        format_(row_format(request.ranges)),
        first_row_(std::max(request.ranges.FirstRow, 1)),
        last_row_(request.ranges.LastRow),
        buffer_(kPieceSize + frame.line_size()) {
    const std::string missing_field = fixed_integer(request.MissingCode, 5);
    for (std::int32_t column = 1; column <= kGridColumns; ++column) {
      missing_line_ += missing_field;
    }
  }

  std::optional<GridValues> read() {
    const std::int32_t first_month = request_.years.SkipLines() / kGridRows;
    for (std::int32_t month = 0; month < first_month; ++month) {
      if (!is_skipped_month_framed(month)) {
        return std::nullopt;
      }
    }
    GridValues values(request_.ranges, request_.years.YearCount(),
                      request_.MissingCode);
    if (!read_january(first_month, values)) {
      return std::nullopt;
    }
    values.lay_out();
    for (std::int32_t row = first_row_; row <= last_row_; ++row) {
      plans_.push_back(plan_row(format_, values.data_columns(row)));
    }
    for (std::size_t month = 1; month < values.month_count(); ++month) {
      if (!read_month(first_month + static_cast<std::int32_t>(month), month, values)) {
        return std::nullopt;
      }
    }
    return values;
  }

 private:
  bool read_january(std::int32_t file_month, GridValues& values) {
    return for_each_wanted_line(
        file_month, [&](std::int32_t row, std::string_view line) {
          if (has_line_end(line) || !read_row(line, format_, row_values_)) {
            return false;
          }
          values.open_row(row, row_values_);
          return true;
        });
  }

  bool read_month(std::int32_t file_month, std::size_t month, GridValues& values) {
    return for_each_wanted_line(
        file_month, [&](std::int32_t row, std::string_view line) {
          const RowPlan& plan = plans_[static_cast<std::size_t>(row - first_row_)];
          return read_by_plan(line, plan, values.month_of_row(month, row).data());
        });
  }

  // Reads the wanted fields of a line. No line end can hide in them; elsewhere it is
  // looked for.
  [[nodiscard]] bool read_by_plan(std::string_view line, const RowPlan& plan,
                                  std::int16_t* cells) const {
    std::size_t checked = 0;
    for (const FieldRun& run : plan.runs) {
      const std::size_t begin =
          static_cast<std::size_t>(run.first_field - 1) * kFieldWidth;
      const std::size_t size = static_cast<std::size_t>(run.count) * kFieldWidth;
      if (has_line_end(line.substr(checked, begin - checked))) {
        return false;
      }
      const std::string_view fields = line.substr(begin, size);
      if (!run.has_data) {
        if (!are_integers(fields, std::string_view(missing_line_).substr(0, size))) {
          return false;
        }
      } else {
        if (!convert_fields(fields, cells)) {
          return false;
        }
        cells += run.count;
      }
      checked = begin + size;
    }
    std::fill_n(cells, plan.blank_fields, std::int16_t{0});
    return !has_line_end(line.substr(checked));
  }

  static bool has_line_end(std::string_view text) {
    return text.find('\n') != std::string_view::npos;
  }

  // Reads the wanted lines of a month of the file (0 is January 1901) and hands each to
  // `use_line` without its line end. False as soon as a line is not framed or
  // `use_line` says so. A month without wanted lines is a skipped one.
  template <typename UseLine>
  bool for_each_wanted_line(std::int32_t file_month, UseLine use_line) {
    if (first_row_ > last_row_) {
      return is_skipped_month_framed(file_month);
    }
    const auto lines_per_piece =
        static_cast<std::int32_t>(kPieceSize / frame_.line_size());
    for (std::int32_t row = first_row_; row <= last_row_; row += lines_per_piece) {
      const std::int32_t count = std::min(lines_per_piece, last_row_ - row + 1);
      if (!read_lines(file_month, row, count)) {
        return false;
      }
      for (std::int32_t i = 0; i < count; ++i) {
        if (!is_framed(i) || !use_line(row + i, line(i))) {
          return false;
        }
      }
    }
    return true;
  }

  bool is_skipped_month_framed(std::int32_t file_month) {
    return read_lines(file_month, 1, 1) && is_framed(0) && !has_line_end(line(0));
  }

  // Puts `count` lines from `row` of a month into the buffer, behind the line end of
  // the line before them.
  bool read_lines(std::int32_t file_month, std::int32_t row, std::int32_t count) {
    const std::size_t end_size = frame_.line_end.size();
    const std::int64_t line_number = std::int64_t{file_month} * kGridRows + row - 1;
    const auto begin = line_number * static_cast<std::int64_t>(frame_.line_size());
    const std::size_t size = static_cast<std::size_t>(count) * frame_.line_size();
    if (line_number == 0) {
      frame_.line_end.copy(buffer_.data(), end_size);
      return read_to_line_end(begin, buffer_.data() + end_size, size);
    }
    return read_to_line_end(begin - static_cast<std::int64_t>(end_size), buffer_.data(),
                            size + end_size);
  }

  // Reads bytes that end with a line end, which the last line of the file may lack.
  bool read_to_line_end(std::int64_t begin, char* buffer, std::size_t size) const {
    const std::size_t end_size = frame_.line_end.size();
    const bool to_the_end = begin + static_cast<std::int64_t>(size) > frame_.file_size;
    if (!to_the_end) {
      return file_.read_at(begin, buffer, size);
    }
    frame_.line_end.copy(buffer + size - end_size, end_size);
    return file_.read_at(begin, buffer, size - end_size);
  }

  // The buffer's line `index`, counted from 0.
  [[nodiscard]] std::string_view line(std::int32_t index) const {
    const std::size_t begin =
        frame_.line_end.size() + static_cast<std::size_t>(index) * frame_.line_size();
    return {buffer_.data() + begin, kLineLength};
  }

  [[nodiscard]] bool is_framed(std::int32_t index) const {
    const char* begin = line(index).data();
    const std::size_t end_size = frame_.line_end.size();
    return std::string_view(begin - end_size, end_size) == frame_.line_end &&
           std::string_view(begin + kLineLength, end_size) == frame_.line_end;
  }

  const GridFile& file_;
  const BlockRequest& request_;
  LineFrame frame_;
  RowFormat format_;
  std::int32_t first_row_;
  std::int32_t last_row_;
  std::vector<char> buffer_;
  std::string missing_line_;
  std::vector<RowPlan> plans_;  // of the wanted rows
  RowValues row_values_{};
};

}  // namespace

std::optional<GridValues> read_regular(const GridFile& file,
                                       const BlockRequest& request) {
  const std::int64_t lines = std::int64_t{request.years.SkipLines()} +
                             std::int64_t{request.years.YearCount()} * kLinesPerYear;
  const std::optional<LineFrame> frame = find_frame(file, lines);
  if (!frame) {
    return std::nullopt;
  }
  return RegularPass(file, request, *frame).read();
}

}  // namespace veldmark
