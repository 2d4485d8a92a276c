#!/bin/bash
# Draws the pictures of docs/gallery.md and writes that page, each picture with the command that draws it.
# usage: docs/make_gallery.sh [path of orbel_view]
set -euo pipefail
cd "$(dirname "$0")/.."
viewer=${1:-build/release/viewer/orbel_view}
samples=data/samples
more=tests/data
page=docs/gallery.md
size=480,320

mkdir -p docs/gallery
cat > "$page" << 'END'
# Gallery

Real meshes, drawn by the command below each picture, run in the project's root. Where the meshes come from, and their
licences: [data/samples](../data/samples/README.md), [tests/data](../tests/data/README.md). All of this page is made by
[make_gallery.sh](make_gallery.sh).
END

# picture NAME CAPTION OPTION...
picture() {
  local name=$1 caption=$2
  shift 2
  "$viewer" --resolution="$size" --output="docs/gallery/$name.png" "$@" > /dev/null # picks print their records
  local command="./orbel view --output=$name.png"
  local word
  for word in "$@"; do
    case $word in *[\#\ ]*) word="'$word'" ;; esac
    command+=" $word"
  done
  printf '\n## %s\n\n![%s](gallery/%s.png)\n\n```\n%s\n```\n' "$caption" "$caption" "$name" "$command" >> "$page"
}

picture bridge "A bridge deck of hexahedra on beams" --line-width=1.5 $samples/bridge_beams.vtk
picture wheelset "A railway wheel set of 175,472 tetrahedra" $samples/wheelset_x8.vtu
picture wheelset_clipped "The same, cut open: whole elements stay" --clip=0,1,0,0 --view=-y $samples/wheelset_x8.vtu
picture notch "Quadratic hexahedra round a notch, edges only where they can be seen" --render-mode=hidden-line --zoom=1.4 $more/notch_quadratic.vtu
picture pipe_bend "Tetrahedra, hexahedra, wedges and pyramids, coloured by kind, apart" --color-by=kind --shrink=0.8 $samples/pipe_bend.cgns
picture ring "Two bodies in contact, seen through" --opacity=0.4 $samples/ring_segments.exo
picture ring_shrunk "The same, every element on its own" --shrink=0.7 $samples/ring_segments.exo
picture four_kinds "One element of each kind of solid, and the nodes" --nodes --point-size=9 --line-width=2 $more/four_kinds.e
picture four_kinds_dimmed "The same, hidden edges dimmed" --render-mode=dimmed --line-width=2 $more/four_kinds.e
picture shell "A shell of triangles and quadrilaterals" --view=iso $more/blow_shell.vtk
picture cylinder "Quadratic tetrahedra as a wire frame on dark ground" --render-mode=wireframe --background=#1B2430 --line-color=#9FD4FF $more/cylinder_quadratic_tets.vtk
picture picked "What a circle picks of the hexahedra that can be seen" --resolution=$size --pick-circle=300,140,60 --filter=Hex $samples/ring_segments.exo
picture labels "Ids of nodes and hexahedra, in the colours of their owners" --labels=nodes:local,hexes:local --render-mode=hidden-line --line-color=#B0B0B0 --zoom=3 $samples/ring_segments.exo
picture sample "The built-in sample: every kind of element, linear and quadratic" --color-by=kind --sample
