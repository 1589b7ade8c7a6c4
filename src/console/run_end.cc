#include "console/run_end.h"

#include <array>
#include <cstddef>
#include <system_error>
#include <utility>

namespace veldmark {
namespace {

constexpr int kRunTimeErrorStatus = 255;

// Indexed by Operation.
constexpr std::array kOperationNames{"OPEN", "READ", "WRITE"};

}  // namespace

RunEnd::RunEnd(int status, std::string report)
    : status_(status), report_(std::move(report)) {}

RunEnd RunEnd::quiet() { return {0, {}}; }

RunEnd RunEnd::error(std::string message, Operation operation, Channel channel) {
  return {kRunTimeErrorStatus,
          "Run-time error:\n" + std::move(message) + "\n? " +
              kOperationNames[static_cast<std::size_t>(operation)] +
              "(UNIT=" + std::to_string(static_cast<int>(channel)) + ",...\n"};
}

RunEnd cannot_open(const std::string& name, Channel channel) {
  return RunEnd::error("Cannot open file: " + name, Operation::kOpen, channel);
}

RunEnd cannot_read(const std::string& name, int error_number, Channel channel) {
  const std::string reason = std::generic_category().message(error_number);
  return RunEnd::error("Cannot read file: " + name + ": " + reason, Operation::kRead,
                       channel);
}

RunEnd cannot_write(const std::string& name, int error_number, Operation operation,
                    Channel channel) {
  const std::string reason = std::generic_category().message(error_number);
  return RunEnd::error("Cannot write file: " + name + ": " + reason, operation,
                       channel);
}

RunEnd not_enough_memory() {
  return RunEnd::error("Not enough memory", Operation::kRead, Channel::kGridFile);
}

}  // namespace veldmark
