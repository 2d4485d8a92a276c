// Preloaded into a program with an event loop: the loop, instead of waiting for events, looks at the picture in the
// window and ends. The process fails when the picture is blank.
#include <vtkObjectFactory.h>
#include <vtkRenderWindow.h>
#include <vtkRenderWindowInteractor.h>
#include <vtkUnsignedCharArray.h>
#include <vtkVersion.h>

#include <cstdio>
#include <cstdlib>
#include <tuple>

namespace {

class PictureInteractor : public vtkRenderWindowInteractor {
public:
  static PictureInteractor* New();
  vtkTypeMacro(PictureInteractor, vtkRenderWindowInteractor)

  void Start() override {
    const int* size = this->RenderWindow->GetSize();
    vtkNew<vtkUnsignedCharArray> pixels;
    this->RenderWindow->GetPixelData(0, 0, size[0] - 1, size[1] - 1, 1, pixels);
    const auto count = pixels->GetNumberOfTuples();
    const unsigned char* corner = pixels->GetPointer(0);
    vtkIdType drawn = 0, blue = 0;
    for (vtkIdType p = 0; p < count; ++p) {
      const unsigned char* at = pixels->GetPointer(3 * p);
      drawn += std::tie(at[0], at[1], at[2]) != std::tie(corner[0], corner[1], corner[2]);
      blue += at[2] > at[1] + 20 && at[1] > at[0] + 20;
    }
    std::printf("%s %d x %d, %lld pixels drawn, %lld of them blue\n", this->RenderWindow->GetClassName(), size[0],
                size[1], static_cast<long long>(drawn), static_cast<long long>(blue));
    const bool is_right =
        size[0] == 800 && size[1] == 600 && 10 * drawn > count && 10 * drawn < 9 * count && 10 * blue > 8 * drawn;
    if (!is_right) std::exit(1);
    std::puts("the block is seen");
  }
};

vtkStandardNewMacro(PictureInteractor)

class PictureFactory : public vtkObjectFactory {
public:
  static PictureFactory* New();
  vtkTypeMacro(PictureFactory, vtkObjectFactory)
  const char* GetVTKSourceVersion() override { return VTK_SOURCE_VERSION; }
  const char* GetDescription() override { return "looks at the picture instead of waiting for events"; }

protected:
  PictureFactory() {
    this->RegisterOverride("vtkRenderWindowInteractor", "PictureInteractor", "", 1,
                           [] { return static_cast<vtkObject*>(PictureInteractor::New()); });
  }
};

vtkStandardNewMacro(PictureFactory)

// Goes before the back end's factory, whether that is registered already or not.
const bool registered = [] {
  vtkObjectFactory::SetAllEnableFlags(0, "vtkRenderWindowInteractor");
  vtkNew<PictureFactory> factory;
  vtkObjectFactory::RegisterFactory(factory);
  return true;
}();

} // namespace
