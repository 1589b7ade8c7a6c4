// Faults that the core throws, as texts to compare.

#ifndef VELDMARK_TESTS_SUPPORT_FAULT_OF_H_
#define VELDMARK_TESTS_SUPPORT_FAULT_OF_H_

#include <cstring>
#include <functional>
#include <string>
#include <variant>

#include "catalogue/read_fault.h"
#include "util/file_fault.h"

namespace veldmark::testing {

// Returns "bad field 3 of line 362", "end at requested line 1" or "end at skipped line
// 1".
inline std::string text_of(const ReadFault& fault) {
  struct Text {
    std::string operator()(const BadField& bad) const {
      return "bad field " + std::to_string(bad.field) + " of line " +
             std::to_string(bad.line);
    }
    std::string operator()(const EndAtRequestedLine& end) const {
      return "end at requested line " + std::to_string(end.line);
    }
    std::string operator()(const EndAtSkippedLine& end) const {
      return "end at skipped line " + std::to_string(end.line);
    }
  };
  return std::visit(Text{}, fault.fact());
}

// Returns "not opened: NAME: reason"; without a reason if the error number is 0.
inline std::string text_of(const FileFault& fault) {
  std::string text;
  switch (fault.kind()) {
    case FileFault::Kind::kNotOpened:
      text = "not opened: ";
      break;
    case FileFault::Kind::kWrittenByAnotherRun:
      text = "written by another run: ";
      break;
    case FileFault::Kind::kNotRead:
      text = "not read: ";
      break;
    case FileFault::Kind::kNotWritten:
      text = "not written: ";
      break;
  }
  text += fault.name();
  if (fault.error_number() != 0) {
    text += std::string(": ") + std::strerror(fault.error_number());
  }
  return text;
}

// Returns the fault that `action` throws; "no fault" if it does not.
inline std::string fault_of(const std::function<void()>& action) {
  try {
    action();
  } catch (const ReadFault& fault) {
    return text_of(fault);
  } catch (const FileFault& fault) {
    return text_of(fault);
  }
  return "no fault";
}

}  // namespace veldmark::testing

#endif  // VELDMARK_TESTS_SUPPORT_FAULT_OF_H_
