#pragma once

class vtkProp;

/// Makes the relative polygon offset of the prop's mapper act in full. VTK 9.1 applies the units of an offset but not
/// its factor, and a constant that hides no gap at a grazing angle would let hidden edges through elsewhere: the depth
/// of a surface must give way by its slope. Nothing for props without an offset.
void add_slope_offset(vtkProp* prop);
