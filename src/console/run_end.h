// How a run ends: one exception, thrown where the end is decided and caught once,
// after the destructors on the way have closed the files.

#ifndef VELDMARK_CONSOLE_RUN_END_H_
#define VELDMARK_CONSOLE_RUN_END_H_

#include <exception>
#include <optional>
#include <string>

namespace veldmark {

// What the program reads and writes, by the numbers that error reports show.
enum class Channel {
  kConsole = 5,
  kGridFile = 13,
  kTimeSeries = 14,
  kCellList = 15,
  kVarianceReport = 16,
};

// What could not be done, as error reports name it.
enum class Operation { kOpen, kRead, kWrite };

// Messages of error reports that several places give.
constexpr const char* kIllegalCharacter = "Illegal character in numeric input";
constexpr const char* kPastEndOfFile = "Attempt to read past end of file";

class RunEnd : public std::exception {
 public:
  // An end that says nothing of its own: status 0.
  static RunEnd quiet();

  // An end by a run-time error: status 255 and a report on standard error.
  static RunEnd error(std::string message, Operation operation, Channel channel);

  [[nodiscard]] int status() const { return status_; }

  // The report's three lines, each with its line end; empty for a quiet end.
  [[nodiscard]] const std::string& report() const { return report_; }

 private:
  RunEnd(int status, std::string report);

  int status_;
  std::string report_;
};

// Ends for files: the reason of `error_number` (an errno value) in words.
RunEnd cannot_open(const std::string& name, Channel channel);
RunEnd cannot_read(const std::string& name, int error_number, Channel channel);
RunEnd cannot_write(const std::string& name, int error_number, Operation operation,
                    Channel channel);

// Out of memory, almost always for the block of values.
RunEnd not_enough_memory();

}  // namespace veldmark

#endif  // VELDMARK_CONSOLE_RUN_END_H_
