// The input files of a run, which no output may overwrite.

#ifndef VELDMARK_COMPANION_INPUTS_H_
#define VELDMARK_COMPANION_INPUTS_H_

#include <optional>
#include <string>
#include <vector>

#include "util/file_identity.h"

namespace veldmark::companion {

// Files are compared by identity, not by name: links to an input are recognised.
class Inputs {
 public:
  // Adds a file; nullopt (no regular file) adds nothing.
  //
  //   shown_name    the name for messages
  void add(std::string shown_name, const std::optional<FileIdentity>& file);

  // Throws Failure if `output`, or the part file it is written to, is one of the
  // inputs.
  void require_not_an_input(const std::string& output) const;

 private:
  struct Input {
    std::string shown_name;
    FileIdentity file;
  };

  std::vector<Input> inputs_;
};

}  // namespace veldmark::companion

#endif  // VELDMARK_COMPANION_INPUTS_H_
