// The introduction: what the program does, how to make its data files and which files
// it expects.

#ifndef VELDMARK_DRIVER_INTRODUCTION_SCREENS_H_
#define VELDMARK_DRIVER_INTRODUCTION_SCREENS_H_

#include "console/console_dialogue.h"

namespace veldmark {

// The pause after a screen of the introduction.
constexpr const char* kHitReturnToContinue = " Hit RETURN to CONTINUE";

// Shows the introduction, with one pause between its two screens.
void show_introduction(ConsoleDialogue& console);

}  // namespace veldmark

#endif  // VELDMARK_DRIVER_INTRODUCTION_SCREENS_H_
