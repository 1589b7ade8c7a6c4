#include "tersify/netcdf_classic.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>
#include <vector>

#include "tersify/netcdf_fault.h"

namespace veldmark::tersify {
namespace {

constexpr std::uint64_t kMax = std::numeric_limits<std::uint64_t>::max();
constexpr std::uint64_t kAlignment = 4;

// Sums and products that saturate at kMax instead of overflowing.
std::uint64_t sum(std::uint64_t a, std::uint64_t b) {
  return std::min(a, kMax - b) + b;
}

std::uint64_t product(std::uint64_t a, std::uint64_t b) {
  return b != 0 && a > kMax / b ? kMax : a * b;
}

std::uint64_t aligned(std::uint64_t size) {
  return sum(size, kAlignment - 1) / kAlignment * kAlignment;
}

// Reads the numbers of a header, which are big-endian.
class HeaderReader {
 public:
  explicit HeaderReader(const ReadBytes& read) : read_(read), buffer_(kBufferSize) {}

  // Reads the magic bytes. Returns the version, 1, 2 or 5; 0 for any other file.
  int take_version() {
    std::array<char, kAlignment> mark{};
    for (char& byte : mark) {
      if (refill()) {  // a byte that is missing stays 0, which is no version
        byte = buffer_[place_++];
      }
    }
    const int version = static_cast<unsigned char>(mark.back());
    const bool known = version == 1 || version == 2 || version == 5;
    if (!known || std::string_view(mark.data(), mark.size() - 1) != "CDF") {
      return 0;
    }
    count_width_ = version == 5 ? 8 : 4;
    offset_width_ = version == 1 ? 4 : 8;
    return version;
  }

  std::uint64_t word() { return number(4); }
  std::uint64_t count() { return number(count_width_); }
  std::uint64_t offset() { return number(offset_width_); }

  void skip(std::uint64_t size) {
    while (size > 0) {
      expect_more();
      const std::uint64_t step = std::min<std::uint64_t>(size, end_ - place_);
      place_ += static_cast<std::size_t>(step);
      size -= step;
    }
  }

  void skip_name() { skip(aligned(count())); }

 private:
  static constexpr std::size_t kBufferSize = 4096;

  std::uint64_t number(int width) {
    constexpr unsigned kByte = 8;
    std::uint64_t value = 0;
    for (int i = 0; i < width; ++i) {
      expect_more();
      value = value << kByte | static_cast<unsigned char>(buffer_[place_++]);
    }
    return value;
  }

  bool refill() {
    if (place_ == end_) {
      place_ = 0;
      end_ = read_(buffer_.data(), buffer_.size());
    }
    return place_ < end_;
  }

  void expect_more() {
    if (!refill()) {
      throw NetcdfFault("the file ends in its header");
    }
  }

  const ReadBytes& read_;
  std::vector<char> buffer_;
  std::size_t place_ = 0;
  std::size_t end_ = 0;
  int count_width_{};
  int offset_width_{};
};

[[noreturn]] void refuse_header() { throw NetcdfFault("the file's header is damaged"); }

std::uint64_t size_of_type(std::uint64_t type) {
  // The types are numbered from 1.
  constexpr std::array<std::uint64_t, 11> kSizes{1, 1, 2, 4, 4, 8, 1, 2, 4, 8, 8};
  if (type == 0 || type > kSizes.size()) {
    refuse_header();
  }
  return kSizes.at(type - 1);
}

// A list begins with a tag and the number of its members; the tag of an empty list may
// be 0.
std::uint64_t list_length(HeaderReader& header) {
  header.word();
  return header.count();
}

void skip_attributes(HeaderReader& header) {
  for (std::uint64_t left = list_length(header); left > 0; --left) {
    header.skip_name();
    const std::uint64_t size = size_of_type(header.word());
    header.skip(aligned(product(size, header.count())));
  }
}

std::vector<std::uint64_t> take_dimensions(HeaderReader& header) {
  std::vector<std::uint64_t> lengths;
  for (std::uint64_t left = list_length(header); left > 0; --left) {
    header.skip_name();
    lengths.push_back(header.count());  // 0 for the record dimension
  }
  return lengths;
}

// A variable.
//
//   size    bytes of its values; of one record if it is a record variable
struct Variable {
  std::uint64_t begin{};
  std::uint64_t size{};
  bool has_records = false;
};

Variable take_variable(HeaderReader& header,
                       const std::vector<std::uint64_t>& dimensions) {
  Variable variable{.size = 1};
  header.skip_name();
  const std::uint64_t rank = header.count();
  for (std::uint64_t i = 0; i < rank; ++i) {
    const std::uint64_t dimension = header.count();
    if (dimension >= dimensions.size()) {
      refuse_header();
    }
    const std::uint64_t length = dimensions[static_cast<std::size_t>(dimension)];
    if (i == 0 && length == 0) {
      variable.has_records = true;
    } else {
      variable.size = product(variable.size, length);
    }
  }
  skip_attributes(header);
  variable.size = product(variable.size, size_of_type(header.word()));
  header.count();  // the size again, unusable: large sizes don't fit in this field
  variable.begin = header.offset();
  return variable;
}

// Returns the offset after the last value of all variables.
std::uint64_t end_of(const std::vector<Variable>& variables, std::uint64_t records) {
  const auto with_records =
      std::count_if(variables.begin(), variables.end(),
                    [](const Variable& variable) { return variable.has_records; });
  std::uint64_t record_size = 0;
  for (const Variable& variable : variables) {
    if (variable.has_records) {  // a single record variable is not padded
      record_size =
          sum(record_size, with_records == 1 ? variable.size : aligned(variable.size));
    }
  }
  std::uint64_t end = 0;
  for (const Variable& variable : variables) {
    if (variable.has_records && records == 0) {
      continue;
    }
    const std::uint64_t before =
        variable.has_records ? product(records - 1, record_size) : 0;
    end = std::max(end, sum(sum(variable.begin, before), variable.size));
  }
  return end;
}

}  // namespace

std::uint64_t least_classic_size(const ReadBytes& read) {
  HeaderReader header(read);
  if (header.take_version() == 0) {
    return 0;
  }
  const std::uint64_t records = header.count();
  const std::vector<std::uint64_t> dimensions = take_dimensions(header);
  skip_attributes(header);
  std::vector<Variable> variables;
  for (std::uint64_t left = list_length(header); left > 0; --left) {
    variables.push_back(take_variable(header, dimensions));
  }
  return end_of(variables, records);
}

}  // namespace veldmark::tersify
