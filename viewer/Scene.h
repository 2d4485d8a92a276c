#pragma once

#include "mesh/MeshVector.h"
#include "mesh/database/SMeshOwnerType.h"
#include "platform/util/TovanColor.h"
#include "viewer/Options.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

class GMeshModel;
class vtkPoints;
namespace Tarn {
class MeshDatabase;
}

namespace viewer {

/// An owner of the mesh, as the scene shows it.
struct SceneOwner {
  Tarn::SMeshOwnerType* handle; ///< the database's
  std::string name;             ///< not always unique
  TovanColor color;             ///< under `ColorBy::Owner`
  bool starts_visible;          ///< false where it lies on elements of a higher dimension
};

/// A mesh database on display: its owners, and the model that draws them in every open view.
class Scene {
public:
  /// Shows the owners that start visible. `database` is borrowed and must outlive the scene. Views are opened after it.
  Scene(Tarn::MeshDatabase& database, const DisplayOptions& display);
  ~Scene();
  Scene(const Scene&) = delete;
  Scene& operator=(const Scene&) = delete;

  Tarn::MeshDatabase& database() const;
  GMeshModel& model();
  /// In the database's order; those without entities too, though they draw nothing.
  const std::vector<SceneOwner>& owners() const;

  /// How the mesh is drawn. `background` is the view's business.
  void set_display(const DisplayOptions& display);
  const DisplayOptions& display() const;

  /// Shows and hides owners by name, starting from how they were at the start. Gives the first name that no owner has,
  /// and then changes nothing; "" when all went well.
  std::string show_owners(const OwnerOptions& options);
  /// Shows and hides the owners, one flag each.
  void set_visible(const std::vector<bool>& wanted);
  /// Which owners are shown, one flag each.
  std::vector<bool> visible() const;
  bool is_visible(std::size_t index) const;

  /// The points of everything that is drawn, one set per visible owner that draws any. Borrowed until the next change.
  std::vector<vtkPoints*> visible_points();
  /// "" where anything is drawn; else a line that says why nothing is.
  std::string why_nothing_shows();
  /// xmin, xmax, ymin ... of what one owner draws when it is visible; false when that is nothing.
  bool owner_bounds(std::size_t index, std::array<double, 6>& bounds);

private:
  void apply(const DisplayOptions& display);
  void add_owner(const SceneOwner& owner, const MeshVector& mesh, bool visible);
  void color_by(ColorBy source);
  void shrink(double factor);
  void label(const LabelOptions& labels);
  void set_label_flags(const LabelOptions& labels);
  void clip(const std::optional<ClipPlane>& plane);

  Tarn::MeshDatabase& database_;
  std::unique_ptr<GMeshModel> model_;
  std::vector<SceneOwner> owners_;
  DisplayOptions display_;
};

} // namespace viewer
