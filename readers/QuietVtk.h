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

  /// The first error in one line, without source file, class and address; empty when there was none.
  std::string first_error() const;

private:
  vtkSmartPointer<vtkOutputWindow> before_;
  vtkSmartPointer<vtkOutputWindow> listener_;
};

} // namespace readers
