// What the core reports of a grid file whose content is not what a search needs; a
// front end words it. Lines are counted from 1. Failures of the system are FileFaults.

#ifndef VELDMARK_CATALOGUE_READ_FAULT_H_
#define VELDMARK_CATALOGUE_READ_FAULT_H_

#include <cstdint>
#include <exception>
#include <string>
#include <utility>
#include <variant>

namespace veldmark {

// A requested field is no integer, or its line is too short for it.
struct BadField {
  std::int64_t line;
  std::int32_t field;  // 1..720, the leftmost is 1

  bool operator==(const BadField&) const = default;
};

// The file ends before a requested line, or inside it.
struct EndAtRequestedLine {
  std::int64_t line;

  bool operator==(const EndAtRequestedLine&) const = default;
};

// The file ends before a line that is skipped.
struct EndAtSkippedLine {
  std::int64_t line;

  bool operator==(const EndAtSkippedLine&) const = default;
};

class ReadFault : public std::exception {
 public:
  // One of the three.
  using Fact = std::variant<BadField, EndAtRequestedLine, EndAtSkippedLine>;

  ReadFault(std::string name, Fact fact) : name_(std::move(name)), fact_(fact) {}

  // The grid file's name.
  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] const Fact& fact() const { return fact_; }
  [[nodiscard]] const char* what() const noexcept override { return name_.c_str(); }

 private:
  std::string name_;
  Fact fact_;
};

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_READ_FAULT_H_
