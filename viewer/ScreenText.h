#pragma once

#include <string>
#include <vector>

class vtkRenderer;
class vtkTextActor;

/// What all texts over the picture share: one font, in which every letter has the same width, and its measures.
namespace viewer {

/// How much larger than on a screen of 96 dots per inch texts are.
double screen_scale(vtkRenderer* renderer);
/// Pixels from letter to letter of a text of that size.
double letter_width(double text_size);
/// Pixels from line to line.
double line_height(double text_size);

/// Dark letters on a white ground of the opacity; places are pixels of the window.
void style_text(vtkTextActor* actor, double opacity);
/// The text with what is no UTF-8 replaced: names from files may hold any bytes, the text renderer takes UTF-8 only.
std::string drawable(const std::string& text);
/// How many letters wide the text is drawn.
int column_count(const std::string& text);
/// The text in so many letters; what is too long ends in "...".
std::string shortened(const std::string& text, int columns);
/// The same, but what is too long loses its middle.
std::string shortened_amid(const std::string& text, int columns);

/// The text in lines of so many letters, broken at blanks where there are any, all but the first indented.
std::vector<std::string> wrapped(const std::string& text, int columns, int indent);

} // namespace viewer
