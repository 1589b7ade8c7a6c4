// The name under which a library writes a file that must appear only when it is
// complete.

#ifndef VELDMARK_EXTRACT_PART_NAME_H_
#define VELDMARK_EXTRACT_PART_NAME_H_

#include <string>

namespace veldmark::extract {

// For what can't be written through a PartFile: NAME.part is written and closed by
// somebody else, and gets its name here. Unless that has happened, the destructor
// removes it.
class PartName {
 public:
  // Makes an empty NAME.part; what stood there is removed, so that nothing is written
  // through a link in its place. Throws Failure when that fails, and when `name` is
  // something other than a regular file, because the renaming would put a file in the
  // place of a device.
  explicit PartName(std::string name);
  ~PartName();
  PartName(const PartName&) = delete;
  PartName& operator=(const PartName&) = delete;
  PartName(PartName&&) = delete;
  PartName& operator=(PartName&&) = delete;

  [[nodiscard]] const std::string& text() const { return part_name_; }

  // Waits until the closed file is on the disk and gives it its name. Throws Failure.
  void complete();

 private:
  std::string name_;
  std::string part_name_;
  bool complete_ = false;
};

}  // namespace veldmark::extract

#endif  // VELDMARK_EXTRACT_PART_NAME_H_
