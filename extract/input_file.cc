#include "extract/input_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include "extract/file_kind.h"
#include "extract/read_failure.h"
#include "grid/grid_layout.h"
#include "util/failure.h"
#include "util/in_quotes.h"

namespace veldmark::extract {
namespace {

// The file and the variable that the input names.
struct ResolvedInput {
  const VariableEntry* entry;
  std::string file_name;
  bool by_short_name;
};

ResolvedInput resolve_input(const Options& options) {
  const VariableEntry* by_name = find_by_short_name(options.input);
  ResolvedInput named{
      .entry = by_name != nullptr ? by_name : find_by_file_name(options.input),
      .file_name = by_name != nullptr ? std::string(by_name->DataFileName.trimmed())
                                      : options.input,
      .by_short_name = by_name != nullptr};
  if (options.variable) {
    named.entry = find_by_short_name(*options.variable);
    if (named.entry == nullptr) {
      throw UsageError("--variable " + in_quotes(*options.variable) +
                       ": the variables are " + short_names());
    }
  }
  return named;
}

// O_NONBLOCK: if the file is a pipe, opening it must not wait for a writer.
FileDescriptor open_file(const ResolvedInput& named) {
  FileDescriptor file(named.file_name, O_RDONLY | O_NONBLOCK);
  if (file.is_open()) {
    return file;
  }
  std::string reason = std::generic_category().message(errno);
  if (named.by_short_name && errno == ENOENT) {
    throw Failure(in_quotes(named.file_name) + ", the file of " +
                  std::string(named.entry->short_name) +
                  ", is not in the current folder");
  }
  if (errno == ENOENT && named.file_name.find_first_of("./") == std::string::npos) {
    reason += "; the variables are " + short_names();  // it looks like one
  }
  throw Failure("cannot open " + in_quotes(named.file_name) + ": " + reason);
}

std::int64_t size_of(const ResolvedInput& named, const FileDescriptor& file) {
  struct stat status {};
  if (::fstat(file.get(), &status) != 0) {
    fail_to_read(named.file_name, errno);
  }
  if (S_ISDIR(status.st_mode)) {
    throw Failure(in_quotes(named.file_name) + " is a folder");
  }
  if (!S_ISREG(status.st_mode)) {
    throw Failure(in_quotes(named.file_name) +
                  " is no regular file: its lines can't be addressed");
  }
  return status.st_size;
}

// Returns the size of the line ends. Throws Failure if the first line is not one of a
// condensed grid file.
std::size_t find_line_end(const std::string& name, const FileDescriptor& file,
                          std::int64_t size) {
  constexpr std::int64_t kHeadSize = 16384;
  std::string head;
  head.resize(static_cast<std::size_t>(std::min(size, kHeadSize)));
  errno = 0;  // stays 0 if the file ends early
  if (!file.read_at(0, head.data(), head.size())) {
    fail_to_read(name, errno);
  }
  const std::string_view text(head);
  const std::size_t line_end = text.find('\n');
  if (line_end == kLineLength) {
    return 1;
  }
  if (line_end == kLineLength + 1 && text[kLineLength] == '\r') {
    return 2;
  }
  throw Failure(describe_other_file(name, head));
}

// Returns the number of years in the file. Throws Failure if it ends inside a year.
std::int64_t count_years(const std::string& name, std::int64_t size,
                         std::size_t line_end_size) {
  const auto line_end = static_cast<std::int64_t>(line_end_size);
  const std::int64_t line_size = static_cast<std::int64_t>(kLineLength) + line_end;
  const std::int64_t year_size = kLinesPerYear * line_size;
  const bool without_last_end = (size + line_end) % year_size == 0;
  const std::int64_t padded = without_last_end ? size + line_end : size;
  if (padded % year_size != 0) {
    throw Failure(in_quotes(name) + " is cut or damaged: after " +
                  std::to_string(size / year_size) + " whole years it has " +
                  std::to_string(size % year_size) + " bytes more, and a year has " +
                  std::to_string(year_size) + "; tersify --check tells more");
  }
  return padded / year_size;
}

Years years_of_file(const Options& options, const std::string& name,
                    std::int64_t year_count) {
  const auto count = static_cast<std::int32_t>(year_count);
  if (options.first_year) {
    return {.first = *options.first_year, .last = *options.first_year + count - 1};
  }
  const std::optional<Years> named = companion::years_in_name(name);
  if (!named) {
    throw UsageError(in_quotes(name) +
                     " does not tell its years in its name: give --first-year");
  }
  const Years found{.first = named->first, .last = named->first + count - 1};
  if (found.last != named->last) {
    throw Failure(in_quotes(name) + ": the name says " + years_text(*named) +
                  ", but the file holds " + std::to_string(count) +
                  (count == 1 ? " year" : " years") + "; with --first-year " +
                  std::to_string(found.first) + " it is taken as " + years_text(found));
  }
  return found;
}

}  // namespace

InputFile open_input(const Options& options) {
  const ResolvedInput named = resolve_input(options);
  FileDescriptor file = open_file(named);
  const std::int64_t size = size_of(named, file);
  const std::size_t line_end_size = find_line_end(named.file_name, file, size);
  if (named.entry == nullptr) {
    throw UsageError(
        in_quotes(named.file_name) +
        " does not tell its variable in its name: give --variable, one of " +
        short_names());
  }
  const std::int64_t year_count = count_years(named.file_name, size, line_end_size);
  const Years years = years_of_file(options, named.file_name, year_count);
  return {.name = named.file_name,
          .entry = *named.entry,
          .file = std::move(file),
          .size = size,
          .line_end_size = line_end_size,
          .years = years};
}

}  // namespace veldmark::extract
