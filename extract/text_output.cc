#include "extract/text_output.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>

#include "companion/wait_until_ready.h"
#include "util/failure.h"
#include "util/interrupt_watch.h"
#include "util/piece_size.h"

namespace veldmark::extract {
namespace {

// Standard output may be non-blocking: another program that shares it can set that.
void write_to_standard_output(std::string_view text) {
  while (!text.empty()) {
    InterruptWatch::throw_if_caught();  // the reader may never read on
    const ssize_t count = ::write(STDOUT_FILENO, text.data(), text.size());
    if (count != -1) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (errno == EAGAIN) {
      companion::wait_until_ready(STDOUT_FILENO, POLLOUT);
    } else if (errno != EINTR) {
      throw Failure("cannot write to standard output: " +
                    std::generic_category().message(errno));
    }
  }
}

}  // namespace

TextOutput::TextOutput(const std::optional<std::string>& name,
                       PartFile::IfExists if_exists)
    : buffer_(kPieceSize) {
  if (name) {
    file_.emplace(*name, if_exists);
  }
}

void TextOutput::write(std::string_view text) {
  while (!text.empty()) {
    const std::string_view piece = text.substr(0, kPieceSize);
    piece.copy(reserve(piece.size()), piece.size());
    commit(piece.size());
    text.remove_prefix(piece.size());
  }
}

char* TextOutput::reserve(std::size_t size) {
  if (used_ + size > buffer_.size()) {
    write_out();
  }
  buffer_.resize(std::max(buffer_.size(), size));
  return buffer_.data() + used_;
}

void TextOutput::complete() {
  write_out();
  if (file_) {
    file_->complete(PartFile::Durability::kUnsynced);
  }
}

void TextOutput::write_out() {
  const std::string_view text(buffer_.data(), used_);
  used_ = 0;
  if (file_) {
    file_->write(text);
  } else {
    write_to_standard_output(text);
  }
}

}  // namespace veldmark::extract
