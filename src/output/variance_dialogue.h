// The console part of the variance test: its questions, its heading and its notices.

#ifndef VELDMARK_OUTPUT_VARIANCE_DIALOGUE_H_
#define VELDMARK_OUTPUT_VARIANCE_DIALOGUE_H_

#include <cstdint>
#include <optional>

#include "console/console_dialogue.h"
#include "output/variance_report_file.h"
#include "selection/search_region.h"

namespace veldmark {

// Offers the variance test. Returns the cutoff year, which can be any 32-bit integer;
// nullopt if the user declines.
std::optional<std::int32_t> ask_cutoff_year(ConsoleDialogue& console,
                                            const YearSpan& years);

// Shows the periods that `report` compares.
void show_periods(ConsoleDialogue& console, const VarianceReportFile& report);

// Returns callbacks that show failed tests on `console`, which must outlive them.
VarianceNotices console_notices(ConsoleDialogue& console);

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_VARIANCE_DIALOGUE_H_
