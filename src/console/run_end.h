// The exception that ends a run. It is caught in one place, by run_program; until then
// destructors have closed the files.

#ifndef VELDMARK_CONSOLE_RUN_END_H_
#define VELDMARK_CONSOLE_RUN_END_H_

#include <exception>
#include <optional>
#include <string>

namespace veldmark {

// What the program reads and writes. The values are the unit numbers in error reports.
enum class Channel {
  kConsole = 5,
  kGridFile = 13,
  kTimeSeries = 14,
  kCellList = 15,
  kVarianceReport = 16,
};

// The operation that failed, as error reports name it.
enum class Operation { kOpen, kRead, kWrite };

// Messages of error reports that are used in several places.
constexpr const char* kIllegalCharacter = "Illegal character in numeric input";
constexpr const char* kPastEndOfFile = "Attempt to read past end of file";

class RunEnd : public std::exception {
 public:
  // Returns an end without an error report: status 0.
  static RunEnd quiet();

  // Returns an end by a run-time error: status 255 and a report on standard error.
  static RunEnd error(std::string message, Operation operation, Channel channel);

  [[nodiscard]] int status() const { return status_; }

  // Returns the three lines of the report, each with a newline; empty for a quiet end.
  [[nodiscard]] const std::string& report() const { return report_; }

 private:
  RunEnd(int status, std::string report);

  int status_;
  std::string report_;
};

// Return the ends for file `name`; `error_number`, an errno value, is reported in
// words.
RunEnd cannot_open(const std::string& name, Channel channel);
RunEnd cannot_read(const std::string& name, int error_number, Channel channel);
RunEnd cannot_write(const std::string& name, int error_number, Operation operation,
                    Channel channel);

// Returns the end for lack of memory, almost always for the block of values.
RunEnd not_enough_memory();

}  // namespace veldmark

#endif  // VELDMARK_CONSOLE_RUN_END_H_
