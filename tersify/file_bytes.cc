#include "tersify/file_bytes.h"

#include "util/interrupt_watch.h"

namespace veldmark::tersify {

std::size_t FileBytes::read(char* buffer, std::size_t size) {
  InterruptWatch::throw_if_caught();
  const std::size_t size_read = file_.read(buffer, size);
  count_ += static_cast<std::int64_t>(size_read);
  if (size_read == 0 && count_ < file_.size()) {
    file_.fail_shorter();
  }
  progress_.add(static_cast<std::int64_t>(size_read));
  return size_read;
}

}  // namespace veldmark::tersify
