#include "reference/base/view/CompositeMapper.h"

#include <vtkCompositePolyDataMapper.h>
#include <vtkVersion.h>

#if VTK_VERSION_NUMBER >= VTK_VERSION_CHECK(9, 2, 20220823)

vtkSmartPointer<vtkMapper> make_composite_mapper() { return vtkSmartPointer<vtkCompositePolyDataMapper>::New(); }

#else

#include <vtkCompositePolyDataMapper2.h>

#include <dlfcn.h>

// Before VTK 9.3 the fast mapper has no object factory and lives in VTK's OpenGL library, which registers a factory of
// its own when it is loaded. Loading our library must register nothing, so that one is not linked: it is looked up when
// the first mapper is made. A program that draws has loaded it by then.
namespace {

using MakeMapper = vtkCompositePolyDataMapper2* (*)();

MakeMapper find_fast_mapper() {
  void* const library = dlopen(ORBEL_BASE_VTK_OPENGL_LIBRARY, RTLD_LAZY);
  return reinterpret_cast<MakeMapper>(
      dlsym(library ? library : RTLD_DEFAULT, "_ZN27vtkCompositePolyDataMapper23NewEv"));
}

} // namespace

vtkSmartPointer<vtkMapper> make_composite_mapper() {
  static const MakeMapper make_fast_mapper = find_fast_mapper();
  if (make_fast_mapper) return vtkSmartPointer<vtkMapper>::Take(make_fast_mapper());
  // Draws the same, block by block.
  return vtkSmartPointer<vtkCompositePolyDataMapper>::New();
}

#endif
