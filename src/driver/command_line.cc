#include "driver/command_line.h"

#include <algorithm>
#include <string_view>

#include "util/in_quotes.h"

namespace veldmark {
namespace {

constexpr int kSuccess = 0;
constexpr int kWrongUsage = 2;
constexpr int kRunTimeError = 255;

constexpr std::string_view kVersionLine = "veldmark " VELDMARK_VERSION "\n";

constexpr std::string_view kUsage = R"(Usage: veldmark
       veldmark --help | --version
)";

constexpr std::string_view kHelp = R"(
Cuts monthly climate series out of condensed CRU TS 4.01 grid files. Without arguments
it asks for a variable, a region and a span of years. Start it in the folder that holds
the grid files:

  cru_ts4.01.1901.2016.VAR.dat.new
                    VAR is one of pre tmp dtr tmn tmx vap pet cld frs wet
  scPDSI.3.25_bamsGLOBAL.1901.2016.dat.new
                    the drought index

The extract is written beside the grid file: its name and .TSF (the series), .XY (the
cells) and .ftst (the variance report, where it is asked for).

  --help     show this text
  --version  show the version

Exit status: 0 when the session was ended by an answer or by a fault in the grid file
that the screen tells of, 2 for a wrong command line, 255 after a run-time error.
)";

bool is_known(std::string_view argument) {
  return argument == "--help" || argument == "--version";
}

}  // namespace

std::optional<int> answer_command_line(std::span<const std::string> arguments,
                                       std::ostream& output, std::ostream& errors) {
  if (arguments.empty()) {
    return std::nullopt;
  }
  const auto unknown = std::find_if_not(arguments.begin(), arguments.end(), is_known);
  if (unknown != arguments.end()) {
    errors << "veldmark: unexpected argument " << in_quotes(*unknown) << "\n" << kUsage;
    return kWrongUsage;
  }
  if (arguments.front() == "--help") {
    output << kUsage << kHelp;
  } else {
    output << kVersionLine;
  }
  output.flush();
  if (!output) {
    errors << "veldmark: standard output cannot be written\n";
    return kRunTimeError;
  }
  return kSuccess;
}

}  // namespace veldmark
