// Waits until what was written would survive a power failure.

#ifndef VELDMARK_UTIL_ON_DISK_H_
#define VELDMARK_UTIL_ON_DISK_H_

#include <string>

#include "util/file_descriptor.h"

namespace veldmark {

// Returns true once the file's content is on the disk, and where the file system has
// nothing to wait for; false with errno on failure. Throws Interrupted when an
// InterruptWatch has caught a signal.
bool is_on_disk(const FileDescriptor& file);

// Returns true once the content has been handed to the file system; false with errno on
// failure. Network file systems report a failed write only when a descriptor is closed,
// and the file's own has to stay open: a copy of it is closed.
bool is_flushed(const FileDescriptor& file);

// Waits for the folder of the file `name`: a new name is on the disk when its folder
// is. The file itself is there already, so that a failure loses nothing.
void put_folder_on_disk(const std::string& name);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_ON_DISK_H_
