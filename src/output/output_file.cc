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
      file_(name_, O_WRONLY | O_CREAT | O_TRUNC),
      buffer_(kBufferSize) {
  if (!file_.is_open()) {
    throw cannot_open(name_, channel_);
  }
}

OutputFile::~OutputFile() {
  if (file_.is_open()) {
    // The run is ending for another reason, which its report names.
    [[maybe_unused]] const bool written = file_.write_all({buffer_.data(), used_});
  }
}

void OutputFile::write(std::string_view text) {
  while (!text.empty()) {
    const std::string_view piece = text.substr(0, kMostRoom);
    piece.copy(room(piece.size()), piece.size());
    keep(piece.size());
    text.remove_prefix(piece.size());
  }
}

char* OutputFile::room(std::size_t size) {
  if (used_ + size > buffer_.size()) {
    write_out();
  }
  return buffer_.data() + used_;
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
  const bool written = file_.write_all({buffer_.data(), used_});
  used_ = 0;
  if (!written) {
    throw cannot_write(name_, errno, Operation::kWrite, channel_);
  }
}

}  // namespace veldmark
