#include "platform/base/GDataGroupEntity.h"
#include "platform/base/GModel.h"

#include <gtest/gtest.h>

#include <vtkFieldData.h>
#include <vtkInformation.h>
#include <vtkNew.h>
#include <vtkPolyData.h>
#include <vtkPolyDataNormals.h>
#include <vtkSphereSource.h>

#include <memory>

namespace {

class Entity : public GDataGroupEntity {};

TEST(BackPointer, GivenADataSet_WhenAnEntityIsNoted_ThenItIsAnsweredUntilItIsClearedOrDies) {
  vtkNew<vtkPolyData> data;
  EXPECT_EQ(GModel::get_back_pointer(data), nullptr);
  auto entity = std::make_unique<Entity>();
  Entity other;
  GModel::set_back_pointer(data, entity.get());
  EXPECT_EQ(GModel::get_back_pointer(data), entity.get());
  GModel::set_back_pointer(data, &other);
  EXPECT_EQ(GModel::get_back_pointer(data), &other);
  GModel::set_back_pointer(data, nullptr);
  EXPECT_EQ(GModel::get_back_pointer(data), nullptr);
  GModel::set_back_pointer(data, entity.get());
  entity.reset();
  EXPECT_EQ(GModel::get_back_pointer(data), nullptr);
}

TEST(BackPointer, GivenADataSet_WhenAnEntityIsNoted_ThenNoTimeStampMoves) {
  vtkNew<vtkPolyData> data;
  Entity entity;
  const vtkMTimeType before = data->GetMTime();
  GModel::set_back_pointer(data, &entity);
  GModel::set_back_pointer(data, nullptr);
  EXPECT_EQ(data->GetMTime(), before);
  data->Modified();
  EXPECT_NE(data->GetMTime(), before);
}

TEST(BackPointer, GivenANotedEntity_WhenTheDataAreCopiedOrFiltered_ThenItStaysBehind) {
  vtkNew<vtkSphereSource> sphere;
  sphere->Update();
  vtkNew<vtkPolyData> data;
  data->DeepCopy(sphere->GetOutput());
  Entity entity;
  GModel::set_back_pointer(data, &entity);

  vtkNew<vtkPolyData> shallow, deep;
  shallow->ShallowCopy(data);
  deep->DeepCopy(data);
  vtkNew<vtkPolyDataNormals> normals;
  normals->SetInputData(data);
  normals->Update();
  ASSERT_GT(normals->GetOutput()->GetNumberOfCells(), 0);
  EXPECT_EQ(GModel::get_back_pointer(shallow), nullptr);
  EXPECT_EQ(GModel::get_back_pointer(deep), nullptr);
  EXPECT_EQ(GModel::get_back_pointer(normals->GetOutput()), nullptr);
  EXPECT_EQ(GModel::get_back_pointer(data), &entity);
}

TEST(BackPointer, GivenANotedEntity_WhenOtherDataAreCopiedIntoTheDataSet_ThenItIsStillNoted) {
  vtkNew<vtkSphereSource> sphere;
  sphere->Update();
  vtkNew<vtkPolyData> data;
  Entity entity;
  GModel::set_back_pointer(data, &entity);
  data->ShallowCopy(sphere->GetOutput());
  data->SetFieldData(vtkNew<vtkFieldData>());
  EXPECT_EQ(GModel::get_back_pointer(data), &entity);
}

TEST(BackPointer, GivenNothing_WhenAskedOrNoted_ThenNothingHappens) {
  Entity entity;
  GModel::set_back_pointer(nullptr, &entity);
  EXPECT_EQ(GModel::get_back_pointer(nullptr), nullptr);
}

} // namespace
