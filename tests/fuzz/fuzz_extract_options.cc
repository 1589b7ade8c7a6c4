// The command line of veldmark-extract: each line of the input is an argument. The
// whole program runs in a folder that holds only small grid files and tables.

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "extract/run.h"
#include "grid/grid_layout.h"
#include "plain_tersify.h"
#include "reached.h"
#include "require.h"
#include "support/scratch_folder.h"
#include "util/file_descriptor.h"

namespace veldmark::fuzz {
namespace {

using testing::InFolder;
using testing::ScratchFolder;
using testing::write_file;

// A year with data in a few cells of rows 200 and 201 only.
std::string grid_text() {
  std::string sea;
  for (int column = 0; column < kGridColumns; ++column) sea += " -999";
  std::string text;
  for (int month = 0; month < 12; ++month) {
    for (int row = 1; row <= kGridRows; ++row) {
      const std::size_t begin = text.size();
      text += sea + "\n";
      for (std::size_t column = 100; row / 2 == 100 && column < 110; ++column) {
        text.replace(begin + column * 5, 5, "   " + std::to_string(10 + month));
      }
    }
  }
  return text;
}

// What must not change of a file that is only read.
struct Kept {
  std::int64_t size;
  std::int64_t seconds;
  std::int64_t nanoseconds;
  ino_t inode;

  bool operator==(const Kept&) const = default;
};

using Files = std::map<std::string, Kept>;

Files files_of_folder() {
  Files files;
  for (const auto& entry : std::filesystem::directory_iterator(".")) {
    struct stat found {};
    require(::lstat(entry.path().c_str(), &found) == 0, "an entry can be looked at");
    files[entry.path().filename().string()] = {found.st_size, found.st_mtim.tv_sec,
                                               found.st_mtim.tv_nsec, found.st_ino};
  }
  return files;
}

const ScratchFolder& folder() {
  static const ScratchFolder the_folder;
  return the_folder;
}

void write_tables() {
  write_file("s", "name,lat,lon\nA,10,-129.9\nB,10.3,-100\n");
  write_file("t", "no table\n");
}

Files& prepared_files() {
  static Files files = [] {
    write_file("c.1901.1901.tmp.x", grid_text());
    // The same file under the name that a short name stands for, and under a name that
    // tells neither variable nor years.
    std::filesystem::create_symlink("c.1901.1901.tmp.x",
                                    "cru_ts4.01.1901.2016.tmp.dat.new");
    std::filesystem::create_symlink("c.1901.1901.tmp.x", "g");
    write_tables();
    return files_of_folder();
  }();
  return files;
}

// Redirects descriptor 1, which gets the series without --output, to /dev/null.
class NoStandardOutput {
 public:
  NoStandardOutput() : before_(::dup(STDOUT_FILENO)) {
    const FileDescriptor nowhere("/dev/null", O_WRONLY);
    ::dup2(nowhere.get(), STDOUT_FILENO);
  }
  ~NoStandardOutput() {
    ::dup2(before_, STDOUT_FILENO);
    ::close(before_);
  }
  NoStandardOutput(const NoStandardOutput&) = delete;
  NoStandardOutput& operator=(const NoStandardOutput&) = delete;

 private:
  int before_;
};

struct Outcome {
  int status;
  std::string output;
  std::string messages;
};

Outcome run(const std::vector<std::string>& arguments) {
  const NoStandardOutput nowhere;
  std::ostringstream output;
  std::ostringstream messages;
  const int status = extract::run_extract(
      arguments, {.input = -1, .output = output, .messages = {.stream = messages}});
  return {status, output.str(), messages.str()};
}

// Removes the files that the run has made and restores the tables. Returns the names of
// the removed files.
std::vector<std::string> take_new_files(bool may_replace, const std::string& text) {
  std::vector<std::string> made;
  for (const auto& [name, kept] : files_of_folder()) {
    const auto before = prepared_files().find(name);
    if (before == prepared_files().end()) {
      std::filesystem::remove(name);
    } else if (before->second == kept) {
      continue;
    }
    const bool is_table = name == "s" || name == "t";
    require(before == prepared_files().end() || (may_replace && is_table),
            "what was there is kept", text);
    made.push_back(name);
  }
  write_tables();
  prepared_files() = files_of_folder();
  return made;
}

void check_outcome(const Outcome& outcome, const std::vector<std::string>& made,
                   const std::string& text) {
  const std::string_view said = outcome.messages;
  require(0 <= outcome.status && outcome.status <= 3, "the status is 0 to 3", text);
  reached("status " + std::to_string(outcome.status));
  if (outcome.status != 0) {
    require(said.starts_with("veldmark-extract: ") && said.ends_with("\n"),
            "a failure is told", said);
    require(made.empty(), "a failure leaves no file", text);
    require(outcome.output.empty(), "a failure shows nothing", outcome.output);
  }
  const bool hint = said.ends_with(
      "Try 'veldmark-extract --help' for more "
      "information.\n");
  require(hint == (outcome.status == 2), "a wrong command line has its hint", said);
  require(made.size() <= 2, "at most two files are made", text);
  for (const std::string& name : made) {
    require(!name.ends_with(".part") || text.find(".part") != std::string::npos,
            "no part is left", text);
  }
  reached("files written", made.size());
}

void check(const std::string& text) {
  std::vector<std::string> arguments = plain_lines(text);
  // Keeps all names inside the folder: nothing else may be read or written.
  for (std::string& argument : arguments) {
    std::replace(argument.begin(), argument.end(), '/', '_');
    std::replace(argument.begin(), argument.end(), '\0', '_');
  }
  const InFolder in_folder(folder().path());
  prepared_files();
  const bool may_replace = text.find("overwrite") != std::string::npos;
  const Outcome outcome = run(arguments);
  check_outcome(outcome, take_new_files(may_replace, text), text);
}

}  // namespace
}  // namespace veldmark::fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  veldmark::fuzz::check(std::string(reinterpret_cast<const char*>(data), size));
  return 0;
}
