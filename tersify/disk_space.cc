#include "tersify/disk_space.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <limits>

#include "tersify/condense_line.h"
#include "util/failure.h"
#include "util/in_quotes.h"
#include "util/part_file.h"

namespace veldmark::tersify {
namespace {

constexpr std::int64_t kMaxBytes = std::numeric_limits<std::int64_t>::max();

std::int64_t size_on_disk(const std::string& name) {
  constexpr std::int64_t kBlock = 512;
  struct stat found {};
  return ::lstat(name.c_str(), &found) == 0 ? found.st_blocks * kBlock : 0;
}

}  // namespace

std::optional<std::int64_t> system_free_space(const std::string& folder) {
  struct statvfs system {};
  return ::statvfs(folder.c_str(), &system) == 0 ? free_bytes(system) : std::nullopt;
}

std::optional<std::int64_t> free_bytes(const struct statvfs& system) {
  if (system.f_blocks == 0 || system.f_frsize == 0) {
    return std::nullopt;
  }
  const std::uint64_t block = system.f_frsize;
  const std::uint64_t most_blocks = static_cast<std::uint64_t>(kMaxBytes) / block;
  return static_cast<std::int64_t>(
      std::min<std::uint64_t>(system.f_bavail, most_blocks) * block);
}

std::optional<std::int64_t> expected_size(std::string_view beginning,
                                          std::int64_t size) {
  const std::size_t last_end = beginning.rfind('\n');
  if (last_end == std::string_view::npos) {
    return std::nullopt;
  }
  const auto lines = std::count(beginning.begin(), beginning.end(), '\n');
  const double line_length =
      static_cast<double>(last_end + 1) / static_cast<double>(lines);
  return static_cast<std::int64_t>(static_cast<double>(size) / line_length *
                                   static_cast<double>(kCondensedLine + 1));
}

void expect_disk_space(const std::string& output,
                       const std::optional<std::int64_t>& needed,
                       const FreeSpace& free_space) {
  const std::filesystem::path folder = std::filesystem::path(output).parent_path();
  const std::optional<std::int64_t> unused =
      free_space(folder.empty() ? "." : folder.string());
  if (!needed || !unused) {
    return;
  }
  const std::int64_t abandoned = size_on_disk(PartFile::part_name(output));
  const std::int64_t available = *unused + std::min(abandoned, kMaxBytes - *unused);
  if (available >= *needed) {
    return;
  }
  throw Failure("not enough disk space for " + in_quotes(output) + ": it takes about " +
                std::to_string(*needed) + " bytes, and " + std::to_string(available) +
                " are free");
}

}  // namespace veldmark::tersify
