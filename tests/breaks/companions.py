"""Breaks of tersify and series_to_grid, and of what they share."""

from catchers import companion, faults, tersify, tools
from definition import Break
from edits import Change

GRID_WRITER = "tools/series_to_grid/grid_writer.cc"
BYTES = "tersify/file_bytes.cc"
TERSIFY = "tersify/tersify.cc"

TERSIFY_BREAKS = [
    Break(
        "a value of six characters is accepted",
        tersify("CondenseLine.*"),
        Change("tersify/condense_line.cc", "zero_too_many | sixes) != 0",
               "zero_too_many | (sixes & leading_zeros)) != 0"),
    ),
    Break(
        "tersify --check a b: the status is that of b",
        tersify("Tersify.*"),
        Change(TERSIFY, "      if (verdict.fault) {\n        status = kFailed;\n      }\n",
               "      status = verdict.fault ? kFailed : kSuccess;\n"),
    ),
    Break(
        "tersify shows progress where there is no terminal",
        tersify("Progress.*"),
        Change(TERSIFY, "    return {.name = name,\n",
               "    static const companion::ProgressLine::Screen screen{\n"
               "        environment_.messages.stream, true};\n"
               "    return {.name = name,\n"),
        Change(TERSIFY, "            .screen = environment_.messages,\n",
               "            .screen = screen,\n"),
    ),
    Break(
        "tersify never shows progress",
        tersify("Progress.*"),
        Change(BYTES, "  progress_.add(static_cast<std::int64_t>(size_read));\n",
               "  progress_.add(0 * static_cast<std::int64_t>(size_read));\n"),
    ),
    Break(
        "a file that grows is condensed up to its first size",
        tersify("CondenseFile.*"),
        Change(BYTES, "  const std::size_t size_read = file_.read(buffer, size);\n",
               "  const auto left = static_cast<std::size_t>(file_.size() - count_);\n"
               "  const std::size_t size_read = file_.read(buffer, left < size ? left : size);\n"),
    ),
    Break(
        "the copy is made in the current folder, wherever the file is",
        tersify("CondenseFile.*:Tersify.*:DiskSpace.*"),
        Change("tersify/condense_job.cc", 'std::string_view stem = name;',
               'std::string_view stem = name;\n'
               '  stem.remove_prefix(stem.rfind(\'/\') + 1);'),
    ),
    Break(
        "the abandoned part is not counted as free disk space",
        tersify("DiskSpace.*"),
        Change("tersify/disk_space.cc", "*unused + std::min(abandoned, kMaxBytes - *unused)",
               "*unused + std::min<std::int64_t>(abandoned, 0)"),
    ),
    Break(
        "tersify --help: exit statuses exchanged",
        tersify("TersifyCommandLine.*"),
        Change("tersify/command_line.cc", "1 when a file failed, 2 for a wrong command line,",
               "2 when a file failed, 1 for a wrong command line,"),
    ),
    Break(
        "an empty line ends the list of names",
        tersify("NameList.*"),
        Change("tersify/name_list.cc",
               "    if (!name.empty()) {\n      names.push_back(std::move(name));\n    }\n",
               "    if (name.empty()) {\n      break;\n    }\n"
               "    names.push_back(std::move(name));\n"),
    ),
]

SHARED = [
    Break(
        "the part file stays after a failure",
        companion("PartFile.*"),
        Change("src/util/part_file.cc", "  if (file_.is_open() && names_open_file(part_name_, file_)) {",
               "  if (!file_.is_open() && names_open_file(part_name_, file_)) {"),
    ),
    Break(
        "SIGHUP is not handled",
        companion("InterruptWatch.*"),
        Change("src/util/interrupt_watch.h", "SIGINT,  SIGTERM, SIGHUP,",
               "SIGINT,  SIGTERM, SIGUSR1,"),
    ),
    Break(
        "a part is renamed before it is on the disk",
        faults("EveryCallOfTersifyFailsOnce"),
        Change("src/util/part_file.cc",
               "durability == Durability::kSynced ? sync_to_disk(file_) : flush(file_);\n",
               "durability == Durability::kSynced || flush(file_);\n"),
        Change("src/util/part_file.cc", "    sync_folder_of(name_);\n",
               "    if (!sync_to_disk(file_)) {\n      fail_with_errno(part_name_);\n    }\n"
               "    sync_folder_of(name_);\n"),
    ),
    Break(
        "a message overtakes earlier output",
        tersify("TersifyProgram.*:Tersify.*"),
        Change("companion/run.cc",
               "  environment.output << std::flush;  // a terminal shows both in their order\n",
               ""),
    ),
]

SERIES_TO_GRID = [
    Break(
        "rows are reversed in both orders",
        tools("MonthText.*"),
        Change(GRID_WRITER, "form_.north_first ? kGridRows + 1 - south_row : south_row;",
               "kGridRows + 1 - south_row;"),
    ),
    Break(
        "years before the first requested one are filled",
        tools("MakeGrid.*"),
        Change(GRID_WRITER, "count_grid_months(std::max(years.first, series.first_year) - 1);",
               "count_grid_months(std::max(kFirstDataYear, series.first_year) - 1);"),
    ),
    Break(
        "missing months of scPDSI cells keep the code of the series",
        tools("MakeGrid.*"),
        Change(GRID_WRITER, "value == kSeriesMissing ? MissingCode : value;",
               "value == kSeriesMissing ? std::max(MissingCode, kSeriesMissing) : value;"),
    ),
    Break(
        "longitudes count from 0 to 360 degrees",
        tools("ReadSeries.*"),
        Change("tools/series_to_grid/series_file.cc", ".GridX = *column,",
               ".GridX = (*column + 359) % kGridColumns + 1,"),
    ),
    Break(
        "series_to_grid shows progress in a file",
        tersify("Progress.*"),
        Change("tools/series_to_grid/main.cc",
               "        return series_to_grid::run_series_to_grid(arguments, environment);\n",
               "        return series_to_grid::run_series_to_grid(\n"
               "            arguments,\n"
               "            {environment.input, environment.output,\n"
               "             {environment.messages.stream, true}});\n"),
    ),
    Break(
        "series_to_grid never shows progress",
        tersify("Progress.*"),
        Change("tools/series_to_grid/series_to_grid.cc",
               "    progress.add(static_cast<std::int64_t>(month.size()));\n",
               "    progress.add(0 * static_cast<std::int64_t>(month.size()));\n"),
    ),
    Break(
        "series_to_grid --help: 51.6 MB a year",
        tools("CommandLine.*"),
        Change("tools/series_to_grid/command_line.cc", "(15.6 MB a year)", "(51.6 MB a year)"),
    ),
]

BREAKS = TERSIFY_BREAKS + SHARED + SERIES_TO_GRID
