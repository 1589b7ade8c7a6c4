#include "extract/part_name.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <system_error>
#include <utility>

#include "util/failure.h"
#include "util/file_descriptor.h"
#include "util/in_quotes.h"

namespace veldmark::extract {

PartName::PartName(std::string name)
    : name_(std::move(name)), part_name_(name_ + ".part") {
  struct stat found {};
  if (::stat(name_.c_str(), &found) == 0 && !S_ISREG(found.st_mode)) {
    throw Failure("cannot write " + in_quotes(name_) +
                  ": it exists and is not a regular file");
  }
  ::unlink(part_name_.c_str());
  if (!FileDescriptor(part_name_, O_WRONLY | O_CREAT | O_EXCL).is_open()) {
    throw Failure("cannot write " + in_quotes(part_name_) + ": " +
                  std::generic_category().message(errno));
  }
}

PartName::~PartName() {
  if (!complete_) {
    ::unlink(part_name_.c_str());
  }
}

void PartName::complete() {
  const FileDescriptor part(part_name_, O_RDONLY);
  if (!part.is_open() || ::fsync(part.get()) != 0 ||
      std::rename(part_name_.c_str(), name_.c_str()) != 0) {
    throw Failure("cannot write " + in_quotes(name_) + ": " +
                  std::generic_category().message(errno));
  }
  complete_ = true;
}

}  // namespace veldmark::extract
