#include "output/output_file.h"

#include <fcntl.h>

#include <cerrno>
#include <cstddef>
#include <utility>

namespace veldmark {
namespace {

constexpr std::size_t kBufferSize = std::size_t{256} * 1024;

}  // namespace

OutputFile::OutputFile(std::string name, Channel channel)
    : name_(std::move(name)),
      channel_(channel),
      file_(name_, O_WRONLY | O_CREAT | O_TRUNC) {
  if (!file_.is_open()) {
    throw cannot_open(name_, channel_);
  }
  buffer_.reserve(kBufferSize);
}

OutputFile::~OutputFile() {
  if (file_.is_open()) {
    // The run is ending for another reason, which its report names.
    [[maybe_unused]] const bool written = file_.write_all(buffer_);
  }
}

void OutputFile::write(std::string_view text) {
  if (buffer_.size() + text.size() > kBufferSize) {
    write_out();
  }
  buffer_ += text;
}

void OutputFile::close() {
  if (!file_.is_open()) {
    return;
  }
  write_out();
  if (!file_.close()) {
    throw cannot_write(name_, errno, Operation::kWrite, channel_);
  }
}

void OutputFile::write_out() {
  const bool written = file_.write_all(buffer_);
  buffer_.clear();
  if (!written) {
    throw cannot_write(name_, errno, Operation::kWrite, channel_);
  }
}

}  // namespace veldmark
