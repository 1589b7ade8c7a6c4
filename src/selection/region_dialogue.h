// The dialogue that asks for the region: it shows a world diagram, asks for four
// coordinates and shows the box for confirmation.

#ifndef VELDMARK_SELECTION_REGION_DIALOGUE_H_
#define VELDMARK_SELECTION_REGION_DIALOGUE_H_

#include "console/console_dialogue.h"
#include "selection/search_region.h"

namespace veldmark {

// Asks for the region until the user confirms it.
//
//   min_lon_test   whether the minimum longitude must lie in -180..180; the scPDSI
//                  data set accepts any
//
// Returns bounds in degrees: -90 <= minLat <= maxLat <= 90, -180 <= maxLon <= 180. A
// minLon greater than maxLon is a box across the 180 degree meridian. It asks again
// after an answer that has no full stop or is out of range.
//
// Throws RunEnd for an answer that contains a full stop but is not a number, and at the
// end of the input.
SearchRegion ask_search_region(ConsoleDialogue& console, MinLonTest min_lon_test);

}  // namespace veldmark

#endif  // VELDMARK_SELECTION_REGION_DIALOGUE_H_
