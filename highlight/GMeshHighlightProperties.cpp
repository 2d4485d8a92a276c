#include "highlight/GMeshHighlightProperties.h"

#include "platform/util/TovanColorTable.h"

#include <vtkProperty.h>

namespace {

constexpr float default_line_width = 3.0f;
constexpr float default_point_size = 6.0f;
constexpr std::uint32_t default_preselect_color = 0xff0000ffu; // opaque red

void set_color(vtkProperty* property, TovanColor color) {
  double rgb[3];
  color.to_rgb(rgb);
  property->SetColor(rgb);
}

// Flat full colour, edges only.
void set_unlit_wireframe(vtkProperty* property) {
  property->SetRepresentationToWireframe();
  property->SetAmbient(1.0);
  property->SetDiffuse(0.0);
  property->SetSpecular(0.0);
}

} // namespace

GMeshHighlightProperties::GMeshHighlightProperties()
    : highlight_property_(vtkProperty::New()), edge_highlight_property_(vtkProperty::New()),
      pre_select_property_(vtkProperty::New()) {
  set_highlight_color(TovanColor());
  set_highlight_line_width(default_line_width);
  set_highlight_point_size(default_point_size);
  set_preselect_color(TovanColor());
  set_unlit_wireframe(edge_highlight_property_);
  pre_select_property_->SetLineWidth(default_line_width);
  pre_select_property_->SetPointSize(default_point_size);
  set_unlit_wireframe(pre_select_property_);
}

GMeshHighlightProperties::~GMeshHighlightProperties() {
  highlight_property_->Delete();
  edge_highlight_property_->Delete();
  pre_select_property_->Delete();
}

GMeshHighlightProperties& GMeshHighlightProperties::operator=(const GMeshHighlightProperties& other) = default;

void GMeshHighlightProperties::set_highlight_color(TovanColor color) {
  highlight_color_ = color == TovanColor() ? TovanColorTable::get_highlight_color() : color;
  set_color(highlight_property_, highlight_color_);
  set_color(edge_highlight_property_, highlight_color_);
}

void GMeshHighlightProperties::set_preselect_color(TovanColor color) {
  preselect_color_ = color == TovanColor() ? TovanColor(default_preselect_color) : color;
  set_color(pre_select_property_, preselect_color_);
}

void GMeshHighlightProperties::set_highlight_line_width(float width) {
  highlight_property_->SetLineWidth(width);
  edge_highlight_property_->SetLineWidth(width);
}

void GMeshHighlightProperties::set_highlight_point_size(float size) {
  highlight_property_->SetPointSize(size);
  edge_highlight_property_->SetPointSize(size);
}

vtkProperty* GMeshHighlightProperties::highlight_property() { return highlight_property_; }

vtkProperty* GMeshHighlightProperties::edge_highlight_property() { return edge_highlight_property_; }

vtkProperty* GMeshHighlightProperties::pre_select_property() { return pre_select_property_; }
