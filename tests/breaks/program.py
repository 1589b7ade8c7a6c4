"""Breaks of veldmark itself."""

from catchers import faults, program, transcripts, unit
from definition import Break
from edits import Append, Change

DRIVER = "src/driver/program_driver.cc"
CHOICE = "src/driver/variable_choice.cc"
REGULAR = "src/catalogue/regular_reader.cc"
REPORT = "src/output/variance_report_file.cc"
LATTICE = "src/selection/lattice.cc"
FIND_RANGES = "  state.ranges = find_ranges(state.region, state.entry.row_order, state.ranges);\n"

CONVERSATION = [
    Break(
        "an answer is read without a flush",
        transcripts("exit-at-first-menu"),
        Change("src/console/console_dialogue.cc", "  flush();\n  std::string line;\n",
               "  std::string line;\n"),
    ),
    Break(
        "a shell command runs before what was shown",
        unit("ConsoleDialogue.*"),
        Change("src/console/console_dialogue.cc", "  flush();\n  run_command_(command);\n",
               "  run_command_(command);\n  flush();\n"),
    ),
    Break(
        "the third search keeps the years of the second",
        transcripts("three-searches-with-new-years"),
        Change(DRIVER, "  state.years = ask_year_span(console, state.LastDataYear);\n",
               "  static int searches = 0;\n"
               "  const YearSpan years = ask_year_span(console, state.LastDataYear);\n"
               "  if (++searches < 3) {\n    state.years = years;\n  }\n"),
    ),
    Break(
        "rows of unchanged parameters are not recomputed for the other row order",
        transcripts("drought-index-after-cru-ts"),
        Change(DRIVER, FIND_RANGES, "  if (state.ChangeSearch) {\n" + FIND_RANGES + "  }\n"),
    ),
    Break(
        "rows of unchanged parameters are not recomputed in the third search",
        transcripts("same-parameters-in-the-third-search"),
        Change(DRIVER, FIND_RANGES,
               "  static int searches = 0;\n"
               "  if (++searches < 3 || state.ChangeSearch) {\n" + FIND_RANGES + "  }\n"),
    ),
    Break(
        "CrossesDateLine is reset two searches later",
        transcripts("across-the-meridian-then-two-ordinary"),
        Change(DRIVER, FIND_RANGES,
               "  static int after_crossing = 0;\n"
               "  if (state.ranges.CrossesDateLine && ++after_crossing > 1) {\n"
               "    state.ranges.CrossesDateLine = false;\n  }\n" + FIND_RANGES),
    ),
    Break(
        "a search of the drought index reverses the latitudes of later searches",
        transcripts("drought-index-after-cru-ts"),
        Change(DRIVER, "  return save_cells(values, lattice, state.entry.row_order, sinks);\n",
               "  static RowOrder order = RowOrder::kSouthFirst;\n"
               "  if (state.entry.row_order == RowOrder::kNorthFirst) {\n"
               "    order = RowOrder::kNorthFirst;\n  }\n"
               "  return save_cells(values, lattice, order, sinks);\n"),
    ),
    Break(
        "drought index after CRU TS keeps -999 as its missing code",
        transcripts("drought-index-after-cru-ts"),
        Change(CHOICE, "    state.MissingCode = chosen->MissingCode;\n",
               "    if (state.MissingCode != kCruTsMissingCode) {\n"
               "      state.MissingCode = chosen->MissingCode;\n    }\n"),
    ),
    Break(
        "the scale of frost days is reset at the next variable",
        transcripts("variance-frost-days-then-another"),
        Change(CHOICE, "chosen.SampleScale.value_or(state.SampleScale);",
               "chosen.SampleScale.value_or(0.0F);"),
    ),
    Break(
        "grid file is never closed, one descriptor per search",
        program("ManySearches.*"),
        Change(CHOICE, "      return GridFile(std::string(state.entry.DataFileName.trimmed()));\n",
               "      const auto* first = new GridFile(\n"
               "          std::string(state.entry.DataFileName.trimmed()));\n"
               "      return GridFile(first->name());\n"),
    ),
    Break(
        "the screen is not flushed before the report of a run-time error",
        program("Program.*"),
        Change(DRIVER, "    console.flush();\n  } catch (const RunEnd& output_failure) {",
               "    if (end.report().empty()) {\n      console.flush();\n    }\n"
               "  } catch (const RunEnd& output_failure) {"),
    ),
    Break(
        "the screen is not flushed after a failed write of the series",
        faults("EveryCallOfASessionFailsOnce"),
        Change(DRIVER, "    console.flush();\n  } catch (const RunEnd& output_failure) {",
               '    if (end.report().find(".TSF: ") == std::string::npos) {\n'
               "      console.flush();\n    }\n"
               "  } catch (const RunEnd& output_failure) {"),
    ),
    Break(
        "minimum longitude is asked before maximum longitude",
        transcripts("first-row"),
        Change("src/selection/region_dialogue.cc",
               "    region.maxLon = ask_max_longitude(console);\n"
               "    region.minLon = ask_min_longitude(console, min_lon_test);\n",
               "    region.minLon = ask_min_longitude(console, min_lon_test);\n"
               "    region.maxLon = ask_max_longitude(console);\n"),
    ),
]

READING = [
    Break(
        "row 360 of later months is not read (line by line)",
        transcripts("last-row"),
        Change("src/catalogue/line_by_line_reader.cc",
               "      values.store_row(month, GridY, row_values);\n",
               "      if (GridY < kGridRows) {\n"
               "        values.store_row(month, GridY, row_values);\n      }\n"),
    ),
    Break(
        "skipped months are not checked",
        unit("RegularReader.*"),
        Change(REGULAR, "      if (!check_skipped_month(month)) {\n",
               "      if (month < 0 && !check_skipped_month(month)) {\n"),
    ),
    Break(
        "the row plan of the first row is used for all rows from year 4 on",
        program("SampleSession.*"),
        Change(REGULAR, "plans_[static_cast<std::size_t>(GridY - first_row_)];",
               "plans_[month < 36 ? static_cast<std::size_t>(GridY - first_row_) : 0];"),
    ),
    Break(
        "regular file with CR LF: row 1 comes from row 2 after the first month",
        unit("RegularReader.*"),
        Change(REGULAR, "!use_line(GridY + i, line(i))",
               "!use_line(GridY + i, line(GridY + i == 1 && count > 1 && file_month > 0 &&\n"
               "                                  layout_.line_ending.size() == 2 ? 1 : i))"),
    ),
    Break(
        "regular file without last line end: its last value is wrong",
        unit("*WholeFile.*"),
        Change(REGULAR, "    return file_.read_at(begin, buffer, size - end_size);\n",
               "    const bool read = file_.read_at(begin, buffer, size - end_size);\n"
               "    buffer[size - end_size - 1] = '7';\n    return read;\n"),
    ),
    Break(
        "first year 2000 or later: all values are a year early",
        unit("*WholeFile.*"),
        Change(REGULAR, "first_month = request_.years.SkipLines() / kGridRows;\n",
               "first_month = request_.years.SkipLines() / kGridRows -\n"
               "                                     (request_.years.FYOD < 2000 ? 0 : 12);\n"),
    ),
    Break(
        "offsets wrap at 1 GB: 1970 reads 1901",
        unit("*WholeFile.*"),
        Change(REGULAR,
               "begin = lines_before * static_cast<std::int64_t>(layout_.line_size());\n",
               "begin = lines_before % (std::int64_t{69} * kLinesPerYear) *\n"
               "                       static_cast<std::int64_t>(layout_.line_size());\n"),
    ),
    Break(
        "files of minimum and maximum temperature are swapped",
        unit("VariableCatalogue.*"),
        Change("src/catalogue/variable_catalogue.cc", "cru_ts4.01.1901.2016.tmn.dat.new",
               "cru_ts4.01.1901.2016.TMP.dat.new"),
        Change("src/catalogue/variable_catalogue.cc", "cru_ts4.01.1901.2016.tmx.dat.new",
               "cru_ts4.01.1901.2016.tmn.dat.new"),
        Change("src/catalogue/variable_catalogue.cc", "cru_ts4.01.1901.2016.TMP.dat.new",
               "cru_ts4.01.1901.2016.tmx.dat.new"),
    ),
    Break(
        "data file is inherited by shell commands",
        unit("FileDescriptor.*"),
        Change("src/util/file_descriptor.cc", "flags | O_CLOEXEC, kCreationMode", "flags, kCreationMode"),
    ),
]

SAVING = [
    Break(
        "east range before west range",
        transcripts("across-the-meridian"),
        Change(LATTICE, "  for (const ColumnRange& columns : ranges.columns()) {\n",
               "  const auto [west, east] = ranges.columns();\n"
               "  for (const ColumnRange& columns : {east, west}) {\n"),
    ),
    Break(
        "thinning continues across the date line",
        transcripts("thinning-across-the-meridian"),
        Change(LATTICE,
               "  for (const ColumnRange& columns : ranges.columns()) {\n"
               "    append_stride(lattice.columns, columns.first, columns.last, ThinningFactor);\n",
               "  std::int32_t first = 0;  // of a range, counted from its start\n"
               "  for (const ColumnRange& columns : ranges.columns()) {\n"
               "    append_stride(lattice.columns, columns.first + first, columns.last,\n"
               "                  ThinningFactor);\n"
               "    const std::int32_t left = columns.last - columns.first + 1 - first;\n"
               "    first = (ThinningFactor - left % ThinningFactor) % ThinningFactor;\n"),
    ),
    Break(
        "gap in the cell list is lost from the third search on",
        transcripts("three-searches-with-new-years"),
        Change("src/output/cell_list_file.cc",
               "  rest += CrossesDateLine ? \"\" : \"   \";\n",
               "  static int searches = 0;\n"
               "  rest += CrossesDateLine || ++searches > 2 ? \"\" : \"   \";\n"),
    ),
    Break(
        "series and cell list are written into each other's file",
        transcripts("first-row"),
        Change("src/output/search_outputs.cc",
               "  return {std::move(time_series), std::move(cell_list)};\n",
               "  return {std::move(cell_list), std::move(time_series)};\n"),
    ),
    Break(
        "a year begins in October",
        transcripts("first-row"),
        Change("src/output/time_series_file.cc",
               "      out = value_text_.write(*value, out);\n      ++value;\n    }\n",
               "      out = value_text_.write(value[(month + 9) % kMonthsPerYear], out);\n    }\n"
               "    value += kMonthsPerYear;\n"),
    ),
    Break(
        "outputs are truncated when they are opened, even if they are in use",
        unit("OutputFile.*"),
        Change("src/output/output_file.cc", "FileDescriptor file(name, O_WRONLY | O_CREAT);",
               "FileDescriptor file(name, O_WRONLY | O_CREAT | O_TRUNC);"),
    ),
    Break(
        "an output above 200 KiB loses a byte",
        unit("OutputFile.*"),
        Change("src/output/output_file.cc",
               "  const bool written = file_.write_all({buffer_.data(), used_});\n  used_ = 0;\n",
               "  const std::size_t lost = used_ > std::size_t{200} * 1024 ? 1 : 0;\n"
               "  const bool written = file_.write_all({buffer_.data(), used_ - lost});\n"
               "  used_ = 0;\n"),
    ),
    Break(
        "summary before the files are closed",
        program("Program.*"),
        Change(DRIVER, "  // The files must be complete before the summary says so.\n",
               "  write_summary(console, state.ranges.CellCount(), CellsSaved, state.TsfName);\n"),
        Change(DRIVER,
               "    variance_report->close();\n  }\n"
               "  write_summary(console, state.ranges.CellCount(), CellsSaved, state.TsfName);\n",
               "    variance_report->close();\n  }\n"),
    ),
    Break(
        "the report is closed by its destructor only",
        faults("FullDisksClosedStreamsAndLostTerminals"),
        Change(DRIVER, "  if (state.FtestChosen) {\n    variance_report->close();\n  }\n", ""),
    ),
]

TESTING_VARIANCE = [
    Break(
        "avevar sums in 64 bits",
        unit("Avevar.*"),
        Change("src/stats/avevar.cc",
               "  float sum = 0.0F;\n  for (const float value : sample) {\n    sum += value;\n  }\n"
               "  ave = sum / count;\n",
               "  double sum = 0.0;\n  for (const float value : sample) {\n"
               "    sum += static_cast<double>(value);\n  }\n"
               "  ave = static_cast<float>(sum) / count;\n"),
    ),
    Break(
        "statistics with fused multiplications and additions",
        unit("Avevar.*:Ftest*.*"),
        Append("src/CMakeLists.txt",
               "\nset_source_files_properties(stats/avevar.cc stats/ftest.cc PROPERTIES\n"
               '                            COMPILE_OPTIONS "-ffp-contract=fast;-mfma")\n'),
    ),
    Break(
        "first sample includes the cutoff year",
        transcripts("variance-cutoff-in-the-middle"),
        Change(REPORT, "{.first = kFirstYear, .last = CutoffOffset}",
               "{.first = kFirstYear, .last = CutoffOffset + 1}"),
    ),
    Break(
        "second sample includes that of the previous cell",
        transcripts("variance-frost-days-then-another"),
        Change(REPORT, "  after_.clear();\n", ""),
    ),
    Break(
        "cell whose f is NaN is missing in the time series",
        transcripts("variance-of-another-variable"),
        Change(REPORT, "    notices_.not_a_number();\n    return;\n",
               "    notices_.not_a_number();\n    throw 0;\n"),
        Change("src/output/save_cells.cc",
               "      for (CellSink* const sink : sinks) {\n        sink->add(cell);\n      }\n",
               "      try {\n        for (CellSink* const sink : sinks) {\n"
               "          sink->add(cell);\n        }\n      } catch (int) {\n"
               "        continue;\n      }\n"),
    ),
    Break(
        "prob is off by 3e-4 for adjusted counts above 3000",
        unit("Ftest*.*"),
        Change("src/stats/ftest.cc", "  prob = 2.0F * one_sided;\n",
               "  prob = 2.0F * one_sided * (n1 > 3000 ? 1.0003F : 1.0F);\n"),
    ),
    Break(
        "report may be the file that another output is written to",
        program("OutputsThatAreLinks.*"),
        Change(DRIVER, "console_notices(console), in_use);", "console_notices(console),\n"
               "                                           (static_cast<void>(in_use), FilesInUse()));"),
    ),
]

BREAKS = CONVERSATION + READING + SAVING + TESTING_VARIANCE
