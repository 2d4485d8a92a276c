#pragma once

#include "platform/base/GDataGroup.h"
#include "platform/base/GDataGroupEntity.h"

#include <vtkSmartPointer.h>
#include <vtkVoidArray.h>

#include <cstddef>
#include <memory>
#include <vector>

// The two ends of a membership. They know each other, so that joining and leaving take constant time however many
// members a group has, and either end may die first.

struct GDataGroup::Private {
  /// In order of joining; a member that left leaves a null behind until `close_gaps`.
  std::vector<GDataGroupEntity*> members;
  std::size_t gaps = 0;
  bool marked = false;
  GDataGroup* above = nullptr;
  std::vector<GDataGroup*> below;
  /// Expires with the group: lets a walk that calls out notice its death.
  std::shared_ptr<char> life = std::make_shared<char>();

  void close_gaps(const GDataGroup* self);
};

struct GDataGroupEntity::Private {
  struct Link {
    GDataGroup* group;
    std::size_t slot;
  };
  /// The groups that this entity is in; few.
  std::vector<Link> links;
  /// What back pointers refer to: its one value is the entity, and null once the entity is gone. A class of VTK's, so
  /// that data objects may outlive this library.
  vtkSmartPointer<vtkVoidArray> mark;

  Link* find(const GDataGroup* group);
};
