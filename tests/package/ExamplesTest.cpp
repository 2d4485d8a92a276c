// Runs the examples and looks at what they draw.
#include <gtest/gtest.h>

#include <vtkImageData.h>
#include <vtkNew.h>
#include <vtkPNGReader.h>

#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

// How many of the picture's pixels are white, orange, blue and grey, in percent.
struct Shares {
  double white = 0, orange = 0, blue = 0, grey = 0;
};

Shares shares_of(const std::string& path) {
  vtkNew<vtkPNGReader> reader;
  reader->SetFileName(path.c_str());
  reader->Update();
  vtkImageData* picture = reader->GetOutput();
  const int* size = picture->GetDimensions();
  Shares shares;
  const double percent = 100.0 / (size[0] * size[1]);
  for (int y = 0; y < size[1]; ++y)
    for (int x = 0; x < size[0]; ++x) {
      const auto* rgb = static_cast<const unsigned char*>(picture->GetScalarPointer(x, y, 0));
      if (rgb[0] == 255 && rgb[1] == 255 && rgb[2] == 255)
        shares.white += percent;
      else if (rgb[0] > rgb[2] + 40)
        shares.orange += percent;
      else if (rgb[2] > rgb[0] + 40)
        shares.blue += percent;
      else if (rgb[0] > 40 && std::abs(rgb[0] - rgb[2]) < 3)
        shares.grey += percent;
    }
  return shares;
}

TEST(OwnDatabase, GivenAFileName_WhenRun_ThenThePictureShowsTheThreeParts) {
  const std::string path = ::testing::TempDir() + "/own_database.png";
  std::remove(path.c_str());
  ASSERT_EQ(std::system((std::string(OWN_DATABASE) + " " + path).c_str()), 0);
  const Shares shares = shares_of(path);
  EXPECT_GT(shares.white, 40);
  EXPECT_LT(shares.white, 90);
  EXPECT_GT(shares.orange, 0.5) << "foot";
  EXPECT_GT(shares.blue, 3) << "bar";
  EXPECT_GT(shares.grey, 3) << "plate";
}

TEST(OwnDatabase, GivenAFolderThatDoesNotExist_WhenRun_ThenItSaysSoAndFails) {
  EXPECT_NE(std::system((std::string(OWN_DATABASE) + " /nowhere/picture.png 2> /dev/null").c_str()), 0);
}

} // namespace
