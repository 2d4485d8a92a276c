#include "viewer/CommandLine.h"

#include "mesh/orbel_mesh_version.h"
#include "viewer/OptionValues.h"

#include <CLI/CLI.hpp>
#include <vtkVersion.h>

#include <algorithm>
#include <cstring>

namespace viewer {
namespace {

constexpr auto description =
    "Shows finite-element meshes: in a window, or, with --output, --info or one of --pick..., without one.";

constexpr auto footer = R"(
Results go to standard output, everything else to standard error. Coordinates have no units but the file's own.
Exit status: 0 done; 1 could not, and one line says what, which file and why; 2 wrong usage.

Owners are the blocks, sets, zones, parts or geometry entities of a file; --info lists them. Several FILEs are shown
together, their owners named file/owner. Owners that lie wholly on elements of a higher dimension (side sets, boundary
surfaces) start hidden.

Picking: a record has kind (Node or Element), type, id, global_id, handle, owner (null for edges of faces and solids),
distance (smaller is nearer), exact (hit, not only nearly) and point (null for regions). Where a file has edge elements,
edges of faces and solids are picked too; --filter=Hex and so on keeps them out. The same pick prints the same bytes
every time. Names for --filter:
Hex, Tet, Pyramid, Wedge, Knife, Superelement, Face (quadrilaterals), Tri, Edge, Node, ThreeDimElement, TwoDimElement,
and Element: nodes stand for their own elements, and only elements with a global id count. KIND for --select and
--labels: node, edge, tri, quad, tet, hex, wedge, pyramid, superelement, or element for any; plurals do as well.

In the window: drag left to rotate, middle or Shift+left to pan, wheel or right to zoom. Click to pick, Ctrl adds, Shift
removes; click again for what lies below, twice for a new centre. B, O, C begin a box, polygon or circle; / finds by id;
H shows every key. Each change of what is picked is one line on standard output, in the form that --select takes.

Examples:
  orbel_view bridge.vtk                                   open a window
  orbel_view --output=bridge.png --view=+x bridge.vtk     write a picture, seen from +x
  orbel_view --info bridge.vtk                            nodes, elements, owners and bounds as JSON
  orbel_view --clip=1,0,0,2.5 --shrink=0.8 bridge.vtk     keep what has x >= 2.5, draw elements apart
  orbel_view --only=deck --color-by=kind bridge.vtk       one owner, coloured by kind of element
  orbel_view --pick=640,360 --filter=Node bridge.vtk      the nodes under the middle of the picture
  orbel_view --pick-box=0,0,640,720 --whole bridge.vtk    the visible elements in its left half
  orbel_view --labels=nodes:local,quads:global bridge.vtk ids beside nodes and quadrilaterals
  orbel_view --select=hex:1-4 --output=a.png bridge.vtk   a picture with four elements highlighted)";

// "--name=VALUE", the way in which the options are written everywhere else.
class HelpFormatter : public CLI::Formatter {
public:
  HelpFormatter() {
    column_width(34);
    label("Positionals", "Mesh files");
  }
  // One blank line between groups, not two.
  std::string make_group(std::string group, bool is_positional,
                         std::vector<const CLI::Option*> options) const override {
    const std::string text = CLI::Formatter::make_group(group, is_positional, options);
    return is_positional ? text + "\n" : text.substr(1);
  }
  std::string make_option_opts(const CLI::Option* option) const override {
    if (option->get_positional()) return "...";
    const bool is_flag = option->get_expected_min() == 0;
    return is_flag ? "" : "=" + option->get_type_name();
  }
  std::string make_usage(const CLI::App*, std::string) const override {
    return "Usage: orbel_view [OPTIONS] FILE...\n";
  }
};

// Options with a value: text in, `BadValue` out as the parser's own error, the last one given counts.
class OptionAdder {
public:
  explicit OptionAdder(CLI::App& app) : app_(app) {}

  void group(const std::string& name) { group_ = name; }

  template <class Store>
  void value(const std::string& name, const std::string& form, const std::string& text, Store store) {
    const auto parse = [name, store](const std::string& given) {
      try {
        store(given);
      } catch (const BadValue& bad) {
        throw CLI::ValidationError(name, bad.what());
      }
    };
    app_.add_option_function<std::string>(name, parse, text)->type_name(form)->take_last()->group(group_);
  }

  // As `value`, but every one given counts.
  template <class Store>
  void every_value(const std::string& name, const std::string& form, const std::string& text, Store store) {
    const auto parse = [name, store](const std::vector<std::string>& all) {
      try {
        for (const std::string& given : all)
          store(given);
      } catch (const BadValue& bad) {
        throw CLI::ValidationError(name, bad.what());
      }
    };
    app_.add_option_function<std::vector<std::string>>(name, parse, text)
        ->type_name(form)
        ->allow_extra_args(false)
        ->group(group_);
  }

  void names(const std::string& name, std::vector<std::string>& list, const std::string& text) {
    app_.add_option(name, list, text)->type_name("NAME")->allow_extra_args(false)->group(group_);
  }

  void flag(const std::string& name, bool& set, const std::string& text, bool value_when_given = true) {
    app_.add_flag_callback(
            name, [&set, value_when_given] { set = value_when_given; }, text)
        ->group(group_);
  }

private:
  CLI::App& app_;
  std::string group_;
};

void add_output_options(OptionAdder& add, Options& options) {
  add.group("What to do");
  add.value("--output", "FILE.png", "Write a picture; no window opens.",
            [&](const std::string& text) { options.output = parse_picture_path(text); });
  add.value("--resolution", "W,H", "Size of picture or window in pixels (1280,720).",
            [&](const std::string& text) { options.resolution = parse_resolution(text); });
  add.flag("--info", options.info, "Describe the mesh as JSON; no window opens, no display is needed.");
  add.flag("--sample", options.sample, "Show the built-in sample, every kind of element, instead of a FILE.");
  add.flag("--verbose", options.verbose, "Tell on standard error what is being done, and how long it took.");
}

// Not in --help: for scripts that start the viewer and do not know its other options.
void add_options_of_scripts(OptionAdder& add, Options& options, bool& sample_if_no_file) {
  add.group("");
  add.flag("--sample-if-no-file", sample_if_no_file, "As --sample where there is no FILE.");
  add.value("--picture-if-no-display", "FILE.png", "As --output where a window was asked for and cannot open.",
            [&](const std::string& text) { options.picture_if_no_display = parse_picture_path(text); });
}

void add_owner_options(OptionAdder& add, Options& options) {
  add.group("Owners (the last three may be repeated)");
  add.value("--group-by", "owner|none", "Owners from the file (owner), or everything under one (none).",
            [&](const std::string& text) { options.group_by = parse_group_by(text); });
  add.names("--only", options.owners.only, "Show these owners and no others.");
  add.names("--show", options.owners.show, "Show an owner that starts hidden.");
  add.names("--hide", options.owners.hide, "Hide an owner.");
}

void add_display_options(OptionAdder& add, DisplayOptions& display, bool& opacity_given, bool& mode_given) {
  add.group("Display");
  add.value("--render-mode", "MODE", "wireframe, hidden-line, dimmed, shaded (default) or translucent.",
            [&](const std::string& text) {
              display.render_mode = parse_render_mode(text);
              mode_given = true;
            });
  add.value("--opacity", "F", "Of translucent surfaces, 0 to 1 (0.5); alone it makes them translucent.",
            [&](const std::string& text) {
              display.opacity = parse_number(text, 0, 1);
              opacity_given = true;
            });
  add.value("--color-by", "owner|kind", "Colour elements by owner (default) or by kind.",
            [&](const std::string& text) { display.color_by = parse_color_by(text); });
  add.value("--labels", "KIND:SOURCE[,...]",
            "Write ids: local or global, for example hexes:global; nodes:element for own elements.",
            [&](const std::string& text) { display.labels = parse_labels(text); });
  add.flag("--no-edges", display.edges, "Leave out element edges.", false);
  add.flag("--nodes", display.nodes, "Draw all nodes.");
  add.value("--line-width", "F", "Of edges, in pixels, 0.1 to 50 (1).",
            [&](const std::string& text) { display.line_width = parse_number(text, 0.1, 50); });
  add.value("--point-size", "F", "Of nodes, in pixels, 0.1 to 100 (6).",
            [&](const std::string& text) { display.point_size = parse_number(text, 0.1, 100); });
  add.value("--line-color", "#RRGGBB", "Of edges and nodes (#000000).",
            [&](const std::string& text) { display.line_color = parse_color(text); });
  add.value("--background", "#RRGGBB", "Behind the mesh (#FFFFFF).",
            [&](const std::string& text) { display.background = parse_color(text); });
  add.value("--shrink", "F", "Shrink each element about its centre, 0.1 to 1 (1).",
            [&](const std::string& text) { display.shrink = parse_number(text, 0.1, 1); });
  add.value("--clip", "NX,NY,NZ,D", "Keep the half space NX x + NY y + NZ z >= D; elements stay whole.",
            [&](const std::string& text) { display.clip = parse_clip(text); });
}

void add_pick_options(OptionAdder& add, PickOptions& picking, std::vector<std::string>& pick_names) {
  add.group("Picking (pixels of the picture, origin at the lower left; no window opens)");
  using Shape = PickRequest::Shape;
  const auto pick = [&](const std::string& name, const std::string& form, const std::string& text, Shape shape) {
    add.value(name, form, text, [&picking, &pick_names, name, shape](const std::string& given) {
      picking.request = parse_pick(shape, given);
      if (std::find(pick_names.begin(), pick_names.end(), name) == pick_names.end()) pick_names.push_back(name);
    });
  };
  pick("--pick", "X,Y", "Print what lies under a point as a JSON list of records, nearest first.", Shape::Point);
  pick("--pick-box", "X0,Y0,X1,Y1", "Print what lies in a box, visible entities only.", Shape::Box);
  pick("--pick-circle", "X,Y,R", "The same for a circle.", Shape::Circle);
  pick("--pick-polygon", "X0,Y0,...", "The same for a polygon of three corners or more.", Shape::Polygon);
  add.group("What is picked, also in the window");
  add.value("--filter", "NAME[,...]", "What can be picked (names below); default: the kinds of element there are.",
            [&](const std::string& text) { picking.filter = parse_filter(text); });
  add.flag("--through", picking.through, "Regions take hidden entities too.");
  add.flag("--whole", picking.whole, "Regions take only entities that are wholly inside.");
  add.every_value("--select", "KIND:IDS", "Pick by id: hex:1,5,9-12 or hex@global:7 (below). May be repeated.",
                  [&](const std::string& text) { picking.select.push_back(parse_selection(text)); });
}

// "" when pick options go together, else why not.
std::string pick_clash(const Options& options, const std::vector<std::string>& pick_names) {
  const PickOptions& picking = options.picking;
  if (pick_names.size() > 1) return pick_names[0] + " and " + pick_names[1] + " exclude each other";
  if (!picking.request || picking.request->shape != PickRequest::Shape::Point) return "";
  // Options that change nothing would look like a fault.
  if (picking.through) return "--through is for regions, not for --pick";
  if (picking.whole) return "--whole is for regions, not for --pick";
  const auto& at = picking.request->numbers;
  const auto& size = options.resolution;
  if (at[0] >= 0 && at[1] >= 0 && at[0] < size[0] && at[1] < size[1]) return "";
  return "--pick: the point lies outside the picture of " + std::to_string(size[0]) + " x " + std::to_string(size[1]);
}

void add_camera_options(OptionAdder& add, CameraOptions& camera) {
  add.group("Camera (the whole visible mesh first)");
  add.value("--view", "FROM", "iso (default), +x, -x, +y, -y, +z or -z: where it is seen from.",
            [&](const std::string& text) { camera.view = parse_view(text); });
  add.value("--zoom", "F", "Magnify, 0.001 to 100000 (1).",
            [&](const std::string& text) { camera.zoom = parse_number(text, 0.001, 100000); });
  add.flag("--parallel", camera.parallel, "Parallel projection instead of perspective.");
}

std::string version_text() {
  return std::string("orbel_view ") + ORBEL_MESH_VERSION + " (VTK " + vtkVersion::GetVTKVersion() + ")\n";
}

std::string readers_text() {
  std::string text;
  for (const auto& format : readers::formats()) {
    text += format.name + ":";
    for (const auto& extension : format.extensions)
      text += " " + extension;
    text += "\n";
  }
  return text;
}

std::string first_line(const std::string& text) { return text.substr(0, text.find('\n')); }

CommandLine::Ending wrong_usage(const std::string& message) {
  return {WrongUsage, "", "orbel_view: " + first_line(message) + " (see orbel_view --help)\n"};
}

} // namespace

CommandLine parse_command_line(int argc, const char* const* argv) {
  CommandLine line;
  Options& options = line.options;
  bool list_readers = false;
  bool sample_if_no_file = false;
  bool opacity_given = false;
  bool mode_given = false;
  std::vector<std::string> pick_names;

  CLI::App app(description, "orbel_view");
  app.formatter(std::make_shared<HelpFormatter>());
  app.footer(footer);
  app.add_option("FILE", options.files, "A mesh file; its format is told by its extension (see --list-readers).");
  OptionAdder add(app);
  add_output_options(add, options);
  add_owner_options(add, options);
  add_display_options(add, options.display, opacity_given, mode_given);
  add_camera_options(add, options.camera);
  add_pick_options(add, options.picking, pick_names);
  add_options_of_scripts(add, options, sample_if_no_file);
  app.set_help_flag("--help,-h", "Print this text.")->group("About");
  app.set_version_flag("--version", version_text, "Print the version.")->group("About");
  app.add_flag("--list-readers", list_readers, "List the file formats and their extensions.")->group("About");

  // The parser would take the next argument for the value, a FILE say.
  for (int i = 1; i < argc && std::strcmp(argv[i], "--") != 0; ++i) {
    const std::string argument = argv[i];
    if (argument.size() < 4 || argument.compare(0, 2, "--") != 0 || argument.back() != '=') continue;
    line.ending = wrong_usage(argument.substr(0, argument.size() - 1) + ": no value after =");
    return line;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    line.ending = CommandLine::Ending{Done, app.help(), ""};
    return line;
  } catch (const CLI::CallForVersion&) {
    line.ending = CommandLine::Ending{Done, version_text(), ""};
    return line;
  } catch (const CLI::ParseError& error) {
    line.ending = wrong_usage(error.what());
    return line;
  }

  if (sample_if_no_file && options.files.empty()) options.sample = true;
  if (list_readers)
    line.ending = CommandLine::Ending{Done, readers_text(), ""};
  else if (options.files.empty() && !options.sample)
    line.ending = wrong_usage("no FILE given");
  else if (!options.files.empty() && options.sample)
    line.ending = wrong_usage("--sample takes no FILE");
  else if (const std::string clash = pick_clash(options, pick_names); !clash.empty())
    line.ending = wrong_usage(clash);
  // An opacity that changes nothing would look like a fault.
  if (opacity_given && !mode_given) options.display.render_mode = OBUtil::Translucent;
  return line;
}

} // namespace viewer
