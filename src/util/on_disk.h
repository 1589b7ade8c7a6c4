// Makes written data durable.

#ifndef VELDMARK_UTIL_ON_DISK_H_
#define VELDMARK_UTIL_ON_DISK_H_

#include <string>

#include "util/file_descriptor.h"

namespace veldmark {

// Syncs the content to the disk. Returns false with errno set on failure; true also
// where the file system cannot sync. Throws Interrupted if an InterruptWatch has caught
// a signal.
bool sync_to_disk(const FileDescriptor& file);

// Hands the content to the file system without waiting for the disk. Returns false with
// errno set on failure. Network file systems report a failed write only when a
// descriptor is closed, so a duplicate of it is closed; the file stays open.
bool flush(const FileDescriptor& file);

// Makes the rename to `name` durable, which takes a sync of the folder. The file itself
// is already on the disk, so that a failure loses nothing and is ignored.
void sync_folder_of(const std::string& name);

}  // namespace veldmark

#endif  // VELDMARK_UTIL_ON_DISK_H_
