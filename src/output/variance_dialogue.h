// The variance test on the console: its offer, its heading and its notices.

#ifndef VELDMARK_OUTPUT_VARIANCE_DIALOGUE_H_
#define VELDMARK_OUTPUT_VARIANCE_DIALOGUE_H_

#include <cstdint>
#include <optional>

#include "console/console_dialogue.h"
#include "output/variance_report_file.h"
#include "selection/search_region.h"

namespace veldmark {

// Offers the variance test. Returns the cutoff year, any 32-bit integer; nullopt when
// the user declines.
std::optional<std::int32_t> ask_cutoff_year(ConsoleDialogue& console,
                                            const YearSpan& years);

// Tells which periods `report` compares.
void show_periods(ConsoleDialogue& console, const VarianceReportFile& report);

// Returns what tells the user of the tests that fail; `console` must outlive it.
VarianceNotices console_notices(ConsoleDialogue& console);

}  // namespace veldmark

#endif  // VELDMARK_OUTPUT_VARIANCE_DIALOGUE_H_
