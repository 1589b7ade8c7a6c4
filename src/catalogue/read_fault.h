// Thrown by the core if the content of a grid file is not what a search needs; the
// front end writes the message. Lines are counted from 1. A read that fails is a
// FileFault.

#ifndef VELDMARK_CATALOGUE_READ_FAULT_H_
#define VELDMARK_CATALOGUE_READ_FAULT_H_

#include <cstdint>
#include <exception>
#include <string>
#include <utility>
#include <variant>

namespace veldmark {

// A requested field is not an integer, or missing because its line is too short.
struct BadField {
  std::int64_t line;
  std::int32_t field;  // 1..720, from the left
};

// The file ends before a requested line, or inside it.
struct EndAtRequestedLine {
  std::int64_t line;
};

// The file ends before a line that is skipped.
struct EndAtSkippedLine {
  std::int64_t line;
};

class ReadFault : public std::exception {
 public:
  using Fact = std::variant<BadField, EndAtRequestedLine, EndAtSkippedLine>;

  ReadFault(std::string name, Fact fact) : name_(std::move(name)), fact_(fact) {}

  // Returns the name of the grid file.
  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] const Fact& fact() const { return fact_; }
  [[nodiscard]] const char* what() const noexcept override { return name_.c_str(); }

 private:
  std::string name_;
  Fact fact_;
};

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_READ_FAULT_H_
