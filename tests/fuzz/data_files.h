// Data files in memory, and edits to them.

#ifndef VELDMARK_TESTS_FUZZ_DATA_FILES_H_
#define VELDMARK_TESTS_FUZZ_DATA_FILES_H_

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "catalogue/row_format.h"
#include "require.h"
#include "selection/grid_geometry.h"
#include "selection/search_region.h"
#include "util/fixed_field.h"

namespace veldmark::fuzz {

// A file in memory with a name that can be opened.
class MemoryFile {
 public:
  MemoryFile() : descriptor_(::memfd_create("grid", MFD_CLOEXEC)) {
    require(descriptor_ >= 0, "a file in memory can be made");
  }
  ~MemoryFile() { ::close(descriptor_); }
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;

  [[nodiscard]] std::string name() const {
    return "/proc/self/fd/" + std::to_string(descriptor_);
  }

  void resize(std::int64_t size) const {
    require(::ftruncate(descriptor_, size) == 0, "a file in memory can be cut");
  }

  void write(std::int64_t place, std::string_view bytes) const {
    require(::pwrite(descriptor_, bytes.data(), bytes.size(), place) ==
                static_cast<ssize_t>(bytes.size()),
            "a file in memory can be written");
  }

 private:
  int descriptor_;
};

inline std::string make_line(std::int64_t number) {
  std::string line;
  for (std::int64_t column = 0; column < kGridColumns; ++column) {
    const bool sea = (column / 5 + number) % 3 == 0;
    const std::int64_t value = (column * 31 + number * 7) % 12000 - 1500;
    line += sea || value % 41 == 0 ? " -999" : fixed_integer(value, 5);
  }
  return line;
}

// A line of the unedited files, by its index: cells with data and runs of cells
// without. A few different lines are enough, if rows differ from month to month.
inline const std::string& usual_line(std::int64_t number) {
  static constexpr std::size_t kDifferent = 397;
  static const std::vector<std::string> lines = [] {
    std::vector<std::string> made;
    while (made.size() < kDifferent) {
      made.push_back(make_line(static_cast<std::int64_t>(made.size())));
    }
    return made;
  }();
  return lines[static_cast<std::size_t>(number) % kDifferent];
}

// A file of whole years, whose edits can be undone.
class RegularFile {
 public:
  RegularFile(int years, std::string line_end) : line_end_(std::move(line_end)) {
    std::string month;
    for (std::int64_t number = 0; number < years * kLinesPerYear; ++number) {
      month += usual_line(number) + line_end_;
      if (month.size() < 1'000'000 && number + 1 < years * kLinesPerYear) continue;
      file_.write(size_, month);
      size_ += static_cast<std::int64_t>(month.size());
      month.clear();
    }
    current_size_ = size_;
  }

  [[nodiscard]] std::string name() const { return file_.name(); }
  [[nodiscard]] std::int64_t size() const { return size_; }
  [[nodiscard]] std::int64_t line_size() const {
    return static_cast<std::int64_t>(kLineLength + line_end_.size());
  }

  // The original character at `place`.
  [[nodiscard]] char character(std::int64_t place) const {
    const std::string line = usual_line(place / line_size()) + line_end_;
    return line[static_cast<std::size_t>(place % line_size())];
  }

  // Does nothing beyond the end of a truncated file.
  void put(std::int64_t place, char character) {
    if (place >= current_size_) return;
    file_.write(place, {&character, 1});
    changed_.push_back(place);
  }

  // Makes the file longer or a few lines shorter, once only: lines that were cut off
  // would come back as zeros.
  void resize(std::int64_t size) {
    if (current_size_ != size_) return;
    file_.resize(size);
    current_size_ = size;
  }

  void take_edits_back() {
    if (current_size_ != size_) {
      file_.resize(size_ - kMostCut * line_size());
      for (std::int64_t i = kMostCut; i > 0; --i) {
        const std::int64_t place = size_ - i * line_size();
        file_.write(place, usual_line(place / line_size()) + line_end_);
      }
    }
    for (const std::int64_t place : changed_) {
      if (place < size_) file_.write(place, std::string(1, character(place)));
    }
    changed_.clear();
    current_size_ = size_;
  }

  static constexpr std::int64_t kMostCut = 4;  // lines

 private:
  MemoryFile file_;
  std::string line_end_;
  std::int64_t size_ = 0;
  std::vector<std::int64_t> changed_;
  std::int64_t current_size_ = 0;
};

}  // namespace veldmark::fuzz

#endif  // VELDMARK_TESTS_FUZZ_DATA_FILES_H_
