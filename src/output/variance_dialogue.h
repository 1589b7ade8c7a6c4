// The console part of the variance test: its questions, its heading and its notices.

#ifndef VELDMARK_OUTPUT_VARIANCE_DIALOGUE_H_
#define VELDMARK_OUTPUT_VARIANCE_DIALOGUE_H_

#include <cstdint>
#include <optional>

#include "console/console_dialogue.h"
#include "output/variance_report_file.h"
#include "selection/search_region.h"

namespace veldmark {

// Offers the variance test and asks for the cutoff year. The question shows `years`,
// but the answer is not checked against them.
//
// Returns the cutoff year, any 32-bit integer; nullopt if the user declines the test.
// Throws RunEnd for an answer that is not an integer, and at the end of the input.
std::optional<std::int32_t> ask_cutoff_year(ConsoleDialogue& console,
                                            const YearSpan& years);

// Shows the periods that `report` compares.
void show_periods(ConsoleDialogue& console, const VarianceReportFile& report);

// Returns callbacks for tests that fail: they show a message on `console`, which must
// outlive them, and pause after a bad argument.
VarianceNotices console_notices(ConsoleDialogue& console);

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_VARIANCE_DIALOGUE_H_
