#pragma once

#include <vtkSmartPointer.h>

#include <string>

class vtkOutputWindow;

namespace readers {

/// Keeps what VTK has to say to itself while it lives: nothing is printed, and the first error is kept.
class QuietVtk {
public:
  QuietVtk();
  ~QuietVtk();
  QuietVtk(const QuietVtk&) = delete;
  QuietVtk& operator=(const QuietVtk&) = delete;

  /// Throws `Refusal` with the first error, if there was one: one line, without VTK's source file, class and address
  /// and without the path of the file, which the line begins with anyway.
  void refuse_errors(const std::string& path) const;

private:
  vtkSmartPointer<vtkOutputWindow> before_;
  vtkSmartPointer<vtkOutputWindow> listener_;
};

} // namespace readers
