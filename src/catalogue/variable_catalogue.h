// The fixed table of the eleven data sets, and the setting up of the one chosen.

#ifndef VELDMARK_CATALOGUE_VARIABLE_CATALOGUE_H_
#define VELDMARK_CATALOGUE_VARIABLE_CATALOGUE_H_

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "catalogue/grid_file.h"
#include "console/console_dialogue.h"
#include "selection/grid_geometry.h"
#include "util/text_field.h"

namespace veldmark {

constexpr std::int32_t kFirstVariable = 1;
constexpr std::int32_t kFrostDays = 9;
constexpr std::int32_t kDroughtIndex = 11;  // scPDSI
constexpr std::int32_t kLastVariable = 11;

// The values that mark a cell without data.
constexpr std::int32_t kCruMissingCode = -999;
constexpr std::int32_t kDroughtMissingCode = -9999;

constexpr std::size_t kOutputPrefixWidth = 13;
constexpr std::size_t kTitleWidth = 27;
constexpr std::size_t kRowFormatTextWidth = 65;
constexpr std::size_t kFileNameWidth = 65;

// The working copy of a row of the catalogue. Its texts are fields of fixed width,
// padded with blanks, and are written with their full width; a fresh entry is blank.
struct VariableEntry {
  std::string OutputPrefix = text_field("", kOutputPrefixWidth);
  std::string TitleText = text_field("", kTitleWidth);
  std::string RFMT = text_field("", kRowFormatTextWidth);  // layout of the year lines
  std::string DataFileName = text_field("", kFileNameWidth);
};

// The row order of the file of variable `MenuChoice`: scPDSI runs north to south,
// everything else south to north.
RowOrder row_order(std::int32_t MenuChoice);

// Gives row `MenuChoice` (1..11) of the catalogue.
VariableEntry catalogue_entry(std::int32_t MenuChoice);

// Writes the menu's twelve lines, "[1]" to "[11]" and "[0]".
void write_menu_lines(ConsoleDialogue& console);

// Write how the data are to be cited, without a pause.
void write_cru_citation(ConsoleDialogue& console);
void write_drought_citation(ConsoleDialogue& console);

// Opens the data file of variable `MenuChoice` (1..11), named by `entry`, in the
// current folder.
//
// Result     the open file, or nothing after telling the user that there is no such
//            file and a pause.
// Errors     a file that exists but can't be opened ends the run (RunEnd).
std::optional<GridFile> open_data_file(ConsoleDialogue& console,
                                       std::int32_t MenuChoice,
                                       const VariableEntry& entry);

}  // namespace veldmark

#endif  // VELDMARK_CATALOGUE_VARIABLE_CATALOGUE_H_
