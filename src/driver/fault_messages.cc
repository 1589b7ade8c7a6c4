#include "driver/fault_messages.h"

#include <array>
#include <string>
#include <string_view>
#include <variant>

#include "catalogue/variable_catalogue.h"
#include "util/text_field.h"

namespace veldmark {
namespace {

// Kept on purpose: letter-in-a-requested-field. The message blames the user's answers,
// although the file is wrong.
constexpr auto kAfterBadField = std::to_array<std::string_view>({
    " Program Terminating Without Completion",
    " Try re-entering your search criteria again being sure to",
    " enter values as real numbers",
});

constexpr auto kAfterEndOfFile = std::to_array<std::string_view>({
    " This should not happen.  Check file for complete content",
    " Program Terminating ",
    "",
});

Channel channel_of(std::string_view name) {
  if (name.ends_with(".TSF")) {
    return Channel::kTimeSeries;
  }
  if (name.ends_with(".XY")) {
    return Channel::kCellList;
  }
  return name.ends_with(".ftst") ? Channel::kVarianceReport : Channel::kGridFile;
}

}  // namespace

RunEnd run_end_for(ConsoleDialogue& console, const ReadFault& fault,
                   bool CrossesDateLine) {
  if (std::holds_alternative<EndAtSkippedLine>(fault.fact())) {
    return RunEnd::error(kPastEndOfFile, Operation::kRead, Channel::kGridFile);
  }
  console.blank_line();
  if (std::holds_alternative<BadField>(fault.fact())) {
    console.write_line(CrossesDateLine ? " Error Reading Grid Values: R2"
                                       : " Error Reading Grid Values: R1");
    console.write_lines(kAfterBadField);
  } else {
    console.write_line(
        " End Of File Reached Prematurely :" +
        text_field(fault.name(), decltype(VariableEntry::DataFileName)::kWidth));
    console.write_lines(kAfterEndOfFile);
  }
  return RunEnd::quiet();
}

RunEnd run_end_for(const FileFault& fault) {
  const Channel channel = channel_of(fault.name());
  switch (fault.kind()) {
    case FileFault::Kind::kNotOpened:
      return cannot_open(fault.name(), channel);
    case FileFault::Kind::kWrittenByAnotherRun:
      return cannot_open(fault.name() + ": another run is writing it", channel);
    case FileFault::Kind::kNotRead:
      return cannot_read(fault.name(), fault.error_number(), channel);
    case FileFault::Kind::kNotWritten:
      break;
  }
  return cannot_write(fault.name(), fault.error_number(), Operation::kWrite, channel);
}

}  // namespace veldmark
