// The one question of tersify, asked where the command line names no file.

#ifndef VELDMARK_TERSIFY_ASK_FOR_LIST_H_
#define VELDMARK_TERSIFY_ASK_FOR_LIST_H_

#include <string>

#include "companion/inputs.h"
#include "companion/run.h"

namespace veldmark::tersify {

// Asks for the list file. Returns the name that was entered, without blanks at its end.
//
//   inputs    gets the file that the answer was read from, if it is a regular one
//
// Throws UsageError when there is no answer, or an empty one.
std::string ask_for_list(const companion::Environment& environment,
                         companion::Inputs& inputs);

}  // namespace veldmark::tersify

#endif  // VELDMARK_TERSIFY_ASK_FOR_LIST_H_
