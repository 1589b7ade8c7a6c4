#include "extract/block_reader.h"

#include <algorithm>
#include <mutex>
#include <utility>
#include <vector>

#include "catalogue/transpose.h"
#include "extract/months_reader.h"
#include "extract/parallel_parts.h"
#include "grid/grid_layout.h"

namespace veldmark::extract {
namespace {

// Thrown to end a part whose result is no longer needed. run_parts drops it.
struct PartCancelled {};

}  // namespace

class BlockReader {
 public:
  BlockReader(const InputFile& input, const CellSet& cells, const Years& years,
              const Progress& progress)
      : input_(input),
        cells_(cells),
        years_(years),
        progress_(progress),
        part_count_(
            parts_for(static_cast<std::size_t>(bytes_to_read(input, cells, years)))) {}

  SeriesBlock read() {
    BlockLayout& layout = block_.layout_;
    layout = MonthsReader(input_, cells_, years_, progress_).find_cells();
    layout.month_count = static_cast<std::size_t>(years_.count()) * kMonthsPerYear;
    block_.values_ = make_large_buffer(layout.columns.size() * layout.month_count);
    std::vector<LateStarts> late_starts(part_count_);
    run_parts(part_count_,
              [&](const Part& part) { late_starts[part.index()] = read_months(part); });
    for (const LateStarts& cells : late_starts) {
      add_late_starts(cells);
    }
    run_parts(part_count_, [&](const Part& part) { transpose_rows(part); });
    return std::move(block_);
  }

 private:
  LateStarts read_months(const Part& part) {
    const Progress progress = [&](std::int64_t count) {
      if (part.is_cancelled()) {
        throw PartCancelled();
      }
      const std::lock_guard lock(progress_mutex_);
      if (progress_) {
        progress_(count);
      }
    };
    const std::size_t months = block_.layout_.month_count;
    return MonthsReader(input_, cells_, years_, progress)
        .read(block_.layout_, part.begin(months), part.end(months),
              block_.values_.data());
  }

  // Merges the late starts of one part. Their series hold the missing code in the
  // months of the other parts.
  void add_late_starts(const LateStarts& cells) {
    for (const auto& [cell, series] : cells) {
      std::vector<std::int16_t>& all = block_.late_starts_[cell];
      all.resize(series.size(), static_cast<std::int16_t>(input_.entry.MissingCode));
      for (std::size_t month = 0; month < series.size(); ++month) {
        if (series[month] != input_.entry.MissingCode) {
          all[month] = series[month];
        }
      }
    }
  }

  // Transposes the rows of a part from [month][cell] to [cell][month].
  void transpose_rows(const Part& part) {
    const BlockLayout& layout = block_.layout_;
    const std::size_t months = layout.month_count;
    const std::size_t end = part.end(layout.rows.size());
    LargeBuffer by_month = make_large_buffer(kGridColumns * months);
    for (std::size_t index = part.begin(layout.rows.size()); index < end; ++index) {
      const std::size_t cells = layout.columns_of_row(index).size();
      std::int16_t* row = block_.values_.data() + layout.begin[index] * months;
      std::copy_n(row, cells * months, by_month.data());
      transpose(by_month.data(), months, cells, row);
    }
  }

  const InputFile& input_;
  const CellSet& cells_;
  const Years& years_;
  const Progress& progress_;
  std::size_t part_count_;
  std::mutex progress_mutex_;  // for progress_
  SeriesBlock block_;
};

SeriesBlock read_cells(const InputFile& input, const CellSet& cells, const Years& years,
                       const Progress& progress) {
  return BlockReader(input, cells, years, progress).read();
}

std::int64_t bytes_to_read(const InputFile& input, const CellSet& cells,
                           const Years& years) {
  const std::int64_t months = std::int64_t{years.count()} * kMonthsPerYear;
  // The first month is read twice, the first time by find_cells.
  const auto lines = static_cast<std::int64_t>(cells.rows().size()) * (months + 1);
  return lines * static_cast<std::int64_t>(kLineLength + input.line_end_size);
}

}  // namespace veldmark::extract
