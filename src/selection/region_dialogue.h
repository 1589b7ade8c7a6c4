// The dialogue that asks for the region: the world diagram, four coordinates, and the
// box shown back for confirmation.

#ifndef VELDMARK_SELECTION_REGION_DIALOGUE_H_
#define VELDMARK_SELECTION_REGION_DIALOGUE_H_

#include "console/console_dialogue.h"
#include "selection/search_region.h"

namespace veldmark {

// Asks for the region until the user confirms it.
//
//   min_lon_test   whether the minimum longitude must lie in -180..180; the scPDSI
//                  data set takes any
//
// Returns bounds in degrees, all tests inclusive: -90 <= minLat <= maxLat <= 90,
// -180 <= maxLon <= 180. minLon may be greater than maxLon (a box across
// the 180 degree meridian).
// An answer without a full stop or out of range is asked again. An answer with a full
// stop that is no number, or the end of the input, ends the run (RunEnd).
SearchRegion ask_search_region(ConsoleDialogue& console, MinLonTest min_lon_test);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_REGION_DIALOGUE_H_
