// What a process sees when it loads and unloads the library.
#include <gtest/gtest.h>

#include <vtkObjectFactory.h>
#include <vtkObjectFactoryCollection.h>

#include <dlfcn.h>

#include <fstream>
#include <string>
#include <vector>

namespace {

const std::vector<std::string> our_libraries = {"liborbel_mesh.so", "liborbel_base.so", "libtovan_tarn.so",
                                                "libtovan_util.so"};

std::vector<std::string> mapped_libraries() {
  std::ifstream maps("/proc/self/maps");
  const std::string text((std::istreambuf_iterator<char>(maps)), std::istreambuf_iterator<char>());
  std::vector<std::string> found;
  for (const auto& library : our_libraries)
    if (text.find("/" + library) != std::string::npos) found.push_back(library);
  return found;
}

// Names and addresses of what VTK's factories make, in order.
std::vector<std::string> registered_factories() {
  std::vector<std::string> names;
  vtkObjectFactoryCollection* factories = vtkObjectFactory::GetRegisteredFactories();
  factories->InitTraversal();
  while (vtkObjectFactory* factory = factories->GetNextItem())
    names.emplace_back(factory->GetDescription());
  return names;
}

class Loaded {
public:
  explicit Loaded(const char* path) : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL)) {
    if (!handle_) ADD_FAILURE() << dlerror();
  }
  ~Loaded() {
    if (handle_ && dlclose(handle_) != 0) ADD_FAILURE() << dlerror();
  }
  Loaded(const Loaded&) = delete;
  Loaded& operator=(const Loaded&) = delete;

  template <class Function> Function* function(const char* name) const {
    return reinterpret_cast<Function*>(dlsym(handle_, name));
  }

private:
  void* handle_;
};

TEST(Loading, GivenAFreshProcess_WhenNothingIsLoaded_ThenNoneOfTheLibrariesIsMapped) {
  EXPECT_EQ(mapped_libraries(), std::vector<std::string>());
}

TEST(Loading, GivenTheLibrary_WhenLoaded_ThenAllFourAreMappedAndNoFactoryIsRegistered) {
  const auto before = registered_factories();
  const Loaded library(ORBEL_MESH_LIBRARY);
  EXPECT_EQ(mapped_libraries(), our_libraries);
  EXPECT_EQ(registered_factories(), before);
}

TEST(Loading, GivenTheLibrary_WhenLoadedAndUnloadedRepeatedly_ThenItIsGoneEachTime) {
  for (int round = 0; round < 5; ++round) {
    {
      const Loaded library(ORBEL_MESH_LIBRARY);
      ASSERT_EQ(mapped_libraries(), our_libraries) << "round " << round;
    }
    ASSERT_EQ(mapped_libraries(), std::vector<std::string>()) << "round " << round;
  }
}

TEST(Loading, GivenObjectsOfAllFour_WhenUsedAndUnloadedRepeatedly_ThenTheyAreGoneEachTime) {
  for (int round = 0; round < 5; ++round) {
    {
      const Loaded host(LOADED_HOST);
      const auto use_objects = host.function<int()>("use_objects");
      ASSERT_NE(use_objects, nullptr);
      EXPECT_EQ(use_objects(), 6 + 12);
      ASSERT_EQ(mapped_libraries(), our_libraries) << "round " << round;
    }
    ASSERT_EQ(mapped_libraries(), std::vector<std::string>()) << "round " << round;
  }
}

} // namespace
