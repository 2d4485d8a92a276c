#pragma once

#include <stdexcept>
#include <string>

namespace readers {

/// Why a file is not read: what is wrong and where, one line, without the file's name. Thrown inside `readers/` only;
/// `read_mesh` turns it into the report's error.
class Refusal : public std::runtime_error {
public:
  explicit Refusal(const std::string& what) : std::runtime_error(what) {}
};

} // namespace readers
