#pragma once

class vtkActor;
class vtkRenderer;

// Keeps lines and points whole on surfaces that are seen at an angle. A line's pixels lie up to half its width beside
// the line, where a slanting surface may be nearer than the line is: the surface has to be pushed back by its own
// slope. VTK 9.1 takes the factor of a polygon offset but its shaders use the constant part only, so the slope is put
// into the shader here.

// A point's square reaches farther than the surface can be pushed back, so points come nearer besides: as far as a
// slope of `slope_at_points` lets the surface rise under half a square.

/// How many pixels the actor's lines reach to either side, or its points, of which one pixel counts at most; 0 for
/// surfaces and hidden actors.
double reach_of_lines_and_points(vtkActor* actor);

/// Pushes the actor's polygons back by their depth slope over that many pixels, times the factor of its mapper's
/// relative polygon offset. Does nothing to actors whose factor is 0.
void set_slope_offset(vtkActor* actor, double pixels);

/// Draws an actor of points alone nearer to the camera, by `scale` times what its point size asks for; 0 puts it back.
/// Does nothing to actors that draw anything else.
void set_point_lift(vtkActor* actor, vtkRenderer* renderer, double scale);
