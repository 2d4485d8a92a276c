#!/usr/bin/env python3
"""Writes malformed mesh files, each with the line that the readers must give for it.

usage: make_bad_files.py OUT_FOLDER DATA_FOLDER SAMPLES_FOLDER

OUT_FOLDER gets the files and expected.tsv: file name, tab, expectation. An expectation is "error: " and the text behind
the file's path, or "left out: " and each reason with its count, in order. {folder} stands for OUT_FOLDER.
"""

import os
import random
import struct
import sys

OUT, DATA, SAMPLES = sys.argv[1:4]
expected = []


def bad(name, content, expectation):
    path = os.path.join(OUT, name)
    if isinstance(content, str):
        content = content.encode()
    if content is not None:
        with open(path, "wb") as file:
            file.write(content)
    expected.append((name, expectation))


def sample(folder, name):
    with open(os.path.join(folder, name), "rb") as file:
        return file.read()


def garbage(size, seed):
    source = random.Random(seed)
    return bytes(source.randrange(256) for _ in range(size))


# ------------------------------------------------------------------------------------------------ any format

bad("empty.vtu", b"", "error: is empty")
bad("missing.vtu", None, "error: no such file")
os.makedirs(os.path.join(OUT, "folder.vtu"), exist_ok=True)
bad("folder.vtu", None, "error: is a directory")
os.mkfifo(os.path.join(OUT, "pipe.vtu"))
bad("pipe.vtu", None, "error: is not a regular file")
bad("mesh.foo", b"mesh", "error: unknown extension .foo")
bad("mesh", b"mesh", "error: has no extension to tell its format by")
for number, extension in enumerate((".vtu", ".vtp", ".vtm")):
    bad("garbage" + extension, garbage(500, number), "error: is not a VTK XML file")
bad("garbage.vtk", garbage(500, 4), "error: is not a legacy VTK file")
bad("garbage.e", garbage(500, 5), "error: is neither NetCDF nor HDF5")
bad("garbage.cgns", garbage(500, 6), "error: is neither ADF nor HDF5")
for extension, line in ((".cgns", "neither ADF nor HDF5"), (".e", "neither NetCDF nor HDF5"), (".stl", "not an STL file"),
                        (".ply", "not a PLY file"), (".vtk", "not a legacy VTK file"), (".vtu", "not a VTK XML file")):
    bad("one_byte" + extension, b"@", "error: is " + line)
bad("garbage.stl", garbage(50, 7), "error: is not an STL file")
bad("garbage.ply", garbage(500, 8), "error: is not a PLY file")
bad("garbage.obj", garbage(5000, 9), "error: is not a text file")
bad("renamed.vtu", sample(DATA, "four_kinds.e"), "error: is not a VTK XML file")
bad("renamed.e", sample(DATA, "notch_quadratic.vtu"), "error: is neither NetCDF nor HDF5")
bad("renamed.stl", sample(DATA, "blow_shell.vtk"),
    "error: declares 1129665108 triangles, more than the file can hold")

# ------------------------------------------------------------------------------------------------ VTK XML

SQUARE = "0 0 0  1 0 0  1 1 0  0 1 0"


def vtu(points=SQUARE, connectivity="0 1 2 0 2 3", offsets="3 6", types="5 5", point_count=4, cell_count=2,
        root='type="UnstructuredGrid" version="0.1" byte_order="LittleEndian"', tail="</VTKFile>\n",
        piece_end="</Piece>", appended="", points_format='format="ascii"', components="3", field=""):
    return f"""<?xml version="1.0"?>
<VTKFile {root}><UnstructuredGrid>{field}
<Piece NumberOfPoints="{point_count}" NumberOfCells="{cell_count}">
<Points><DataArray type="Float64" NumberOfComponents="{components}" {points_format}>{points}</DataArray></Points>
<Cells>
<DataArray type="Int64" Name="connectivity" format="ascii">{connectivity}</DataArray>
<DataArray type="Int64" Name="offsets" format="ascii">{offsets}</DataArray>
<DataArray type="UInt8" Name="types" format="ascii">{types}</DataArray>
</Cells>{piece_end}</UnstructuredGrid>
{appended}{tail}"""


bad("good.vtu", vtu(), "left out: ")  # the control: nothing is wrong with the template
bad("no_closing_tag.vtu", vtu(tail=""), "error: ends before its closing tag </VTKFile>")
bad("half.vtu", sample(DATA, "notch_quadratic.vtu")[:300000], "error: ends before its closing tag </VTKFile>")
bad("mismatched_tag.vtu", vtu(piece_end="</Pice>"),
    "error: Error parsing XML in stream at line 9, column 10, byte index 518: mismatched tag")
bad("points_huge.vtu", vtu(point_count=99999999999),
    'error: piece declares NumberOfPoints="99999999999", more than the file can hold')
bad("cells_huge.vtu", vtu(cell_count=2147483647),
    'error: piece declares NumberOfCells="2147483647", more than the file can hold')
bad("points_negative.vtu", vtu(point_count=-4), 'error: piece declares NumberOfPoints="-4"')
bad("cells_no_number.vtu", vtu(cell_count="two"), 'error: piece declares NumberOfCells="two"')
bad("components_huge.vtu", vtu(components=99999999999),
    'error: array declares NumberOfComponents="99999999999", more than the file can hold')
bad("components_beyond_64_bits.vtu", vtu(components=2**64 - 1),
    'error: array declares NumberOfComponents="18446744073709551615"')
bad("tuples_huge.vtu", vtu(field='<FieldData><DataArray type="Int64" Name="t" NumberOfTuples="99999999999" '
                                 'format="ascii">1</DataArray></FieldData>'),
    'error: array declares NumberOfTuples="99999999999", more than the file can hold')
bad("connectivity_beyond.vtu", vtu(connectivity="0 1 2 0 2 99"), "left out: 1 cells on points that do not exist")
bad("connectivity_negative.vtu", vtu(connectivity="0 1 2 0 2 -1"), "left out: 1 cells on points that do not exist")
bad("connectivity_all_beyond.vtu", vtu(connectivity="7 8 9 7 8 9"),
    "error: nothing in it can be drawn: 2 cells on points that do not exist")
bad("offsets_fall.vtu", vtu(offsets="6 3"), "error: Cannot read cell connectivity from Cells in piece 0 because the \"offsets\" array is not monotonically "
    "increasing or starts with a value other than 0")
bad("unknown_type.vtu", vtu(types="5 200"), "left out: 1 cells of unknown type 200")
bad("wrong_node_count.vtu", vtu(types="5 12"), "left out: 1 cells with a wrong number of points for their type")
bad("nan.vtu", vtu(points=SQUARE.replace("0 1 0", "0 nan 0")),
    "left out: 1 nodes with coordinates that are not finite in single precision; "
    "1 elements on nodes with coordinates that are not finite in single precision")
bad("infinite.vtu", vtu(points=SQUARE.replace("0 1 0", "0 1e300 0")),
    "left out: 1 nodes with coordinates that are not finite in single precision; "
    "1 elements on nodes with coordinates that are not finite in single precision")
bad("polygons_only.vtu", vtu(points=SQUARE + " 0 2 0", connectivity="0 1 2 3 4", offsets="5", types="7", cell_count=1,
                             point_count=5), "error: nothing in it can be drawn: 1 polygons with more than 4 corners")
bad("no_points.vtu", vtu(points="", connectivity="", offsets="", types="", point_count=0, cell_count=0),
    "error: holds no mesh")
bad("poly_data.vtu", vtu(root='type="PolyData"'), "error: is a VTK XML file of type PolyData, not UnstructuredGrid")
bad("unknown_compressor.vtu", vtu(root='type="UnstructuredGrid" compressor="vtkSecretCompressor"'),
    "error: unknown compressor vtkSecretCompressor")
bad("appended_offset_beyond.vtu",
    vtu(points="", points_format='format="appended" offset="100000"',
        appended='<AppendedData encoding="raw">_0000</AppendedData>'),
    "error: appended array at offset 100000 lies beyond the end of the file")
bad("appended_length_beyond.vtu",
    vtu(points="", points_format='format="appended" offset="0"',
        appended='<AppendedData encoding="raw">_\x60\x00\x00\x00</AppendedData>'),
    "error: appended array at offset 0 reaches beyond the end of the file")
bad("appended_negative.vtu",
    vtu(points="", points_format='format="appended" offset="-3"',
        appended='<AppendedData encoding="raw">_zzzz</AppendedData>'),
    "error: appended array at offset -3 lies beyond the end of the file")
bad("appended_missing.vtu", vtu(points="", points_format='format="appended" offset="0"'),
    "error: appended array at offset 0 lies beyond the end of the file")
bad("extent_huge.vti",
    '<VTKFile type="ImageData"><ImageData WholeExtent="0 99999 0 99999 0 99999" Origin="0 0 0" Spacing="1 1 1">'
    '<Piece Extent="0 99999 0 99999 0 99999"/></ImageData></VTKFile>',
    "error: WholeExtent declares more than 2^29 points")


def vtm(files):
    sets = "".join(f'<DataSet index="{i}" name="{name}" file="{file}"/>' for i, (name, file) in enumerate(files))
    return ('<VTKFile type="vtkMultiBlockDataSet" version="1.0"><vtkMultiBlockDataSet>' + sets +
            "</vtkMultiBlockDataSet></VTKFile>")


bad("one_block_missing.vtm", vtm([("a", "good.vtu"), ("b", "nowhere.vtu")]), "left out: 1 blocks that cannot be read")
bad("all_blocks_missing.vtm", vtm([("a", "nowhere.vtu"), ("b", "nowhere.vtu")]),
    "error: block a: {folder}/nowhere.vtu: no such file")
bad("no_blocks.vtm", vtm([]), "error: names no files with blocks")
bad("circle.vtm", vtm([("a", "circle.vtm")]),
    "error: " + "block a: {folder}/circle.vtm: " * 8 + "is nested deeper than 8 files")
bad("circles.vtm", vtm([("a", "circles.vtm")] * 50), "error: names more than 65536 blocks, nested ones included")

# ------------------------------------------------------------------------------------------------ legacy VTK


def vtk(body, mode="ASCII", data_set="UNSTRUCTURED_GRID", version="3.0"):
    head = f"# vtk DataFile Version {version}\nmesh\n{mode}\nDATASET {data_set}\n".encode()
    return head + (body.encode() if isinstance(body, str) else body)


POINTS = "POINTS 4 float\n0 0 0 1 0 0 1 1 0 0 1 0\n"
CELLS = "CELLS 2 8\n3 0 1 2\n3 0 2 3\n"
TYPES = "CELL_TYPES 2\n5\n5\n"

bad("good.vtk", vtk(POINTS + CELLS + TYPES), "left out: ")
bad("no_mode.vtk", vtk(POINTS, mode="TEXT"), "error: line 3 is neither ASCII nor BINARY")
bad("no_data_set.vtk", b"# vtk DataFile Version 3.0\nmesh\nASCII\nPOINTS 4 float\n",
    "error: line 4 does not name a DATASET")
bad("table.vtk", vtk("", data_set="TABLE"), "error: dataset type TABLE is not a mesh")
bad("points_huge.vtk", vtk("POINTS 2000000000 double\n0 0 0\n"),
    "error: POINTS declares 2000000000, more than the file can hold")
bad("points_negative.vtk", vtk("POINTS -4 double\n0 0 0\n"), 'error: POINTS declares "-4"')
bad("points_overflow.vtk", vtk("POINTS 99999999999999999999 double\n0 0 0\n"),
    'error: POINTS declares "99999999999999999999"')
bad("points_unknown_type.vtk", vtk("POINTS 1 quaternion\n0 0 0\n"), "error: unknown data type quaternion")
bad("cells_huge.vtk", vtk(POINTS + "CELLS 2000000000 8000000000\n"),
    "error: CELLS declares 2000000000, more than the file can hold")
bad("cell_overruns.vtk", vtk(POINTS + "CELLS 2 8\n3 0 1 2\n300 0 2 3\n" + TYPES),
    "error: CELLS: cell 1 does not fit into the list of 8 values")
bad("cell_negative_count.vtk", vtk(POINTS + "CELLS 2 8\n-3 0 1 2\n3 0 2 3\n" + TYPES),
    "error: CELLS: cell 0 does not fit into the list of 8 values")
bad("cells_left_over.vtk", vtk(POINTS + "CELLS 1 8\n3 0 1 2\n3 0 2 3\n" + TYPES),
    "error: CELLS: 4 of 8 values belong to no cell")
bad("cells_word.vtk", vtk(POINTS + "CELLS 2 8\n3 0 one 2\n3 0 2 3\n" + TYPES), 'error: "one" among cells')
bad("cells_cut.vtk", vtk(POINTS + "CELLS 2 8\n3 0 1 2\n3 0 " + " " * 9), "error: ends within its cells")
bad("points_cut.vtk", vtk("POINTS 4 float\n0 0 0 1 0 0 1.25000 1 0 0"), "error: POINTS: ends at value 10 of 12")
bad("offsets_fall.vtk",
    vtk(POINTS + "CELLS 3 6\nOFFSETS vtktypeint64\n0 6 3\nCONNECTIVITY vtktypeint64\n0 1 2 0 2 3\n" + TYPES,
        version="5.1"), "error: cell offsets fall at cell 1")
bad("offsets_word.vtk",
    vtk(POINTS + "CELLS 3 6\nOFFSETS vtktypeint64\n0 six 6\nCONNECTIVITY vtktypeint64\n0 1 2 0 2 3\n" + TYPES,
        version="5.1"), 'error: CELLS OFFSETS: value 1 is "six"')
bad("points_nan.vtk", vtk(POINTS.replace("1 1 0", "1 nan 0") + CELLS + TYPES), 'error: POINTS: value 7 is "nan"')
bad("points_inf.vtk", vtk(POINTS.replace("1 1 0", "1 -inf 0") + CELLS + TYPES), 'error: POINTS: value 7 is "-inf"')
bad("points_large.vtk", vtk(POINTS.replace("1 1 0", "1 3e39 0") + CELLS + TYPES), 'error: POINTS: value 7 is "3e39"')
bad("points_largest.vtk", vtk(POINTS.replace("1 1 0", "1 3.4028235e38 0") + CELLS + TYPES), "left out: ")
bad("points_word.vtk", vtk(POINTS.replace("1 1 0", "1 x 0") + CELLS + TYPES), 'error: POINTS: value 7 is "x"')
bad("types_missing.vtk", vtk(POINTS + CELLS), "error: has 2 CELLS but 0 CELL_TYPES")
bad("types_too_few.vtk", vtk(POINTS + CELLS + "CELL_TYPES 1\n5\n"), "error: has 2 CELLS but 1 CELL_TYPES")
bad("binary_cut.vtk", vtk(b"POINTS 4 float\n" + bytes(40), mode="BINARY"),
    "error: POINTS declares 4, more than the file can hold")
bad("binary_cell_overruns.vtk",
    vtk(b"POINTS 3 float\n" + bytes(36) + b"\nCELLS 1 4\n" + struct.pack(">4i", 2000000000, 0, 1, 2) +
        b"\nCELL_TYPES 1\n" + struct.pack(">i", 5), mode="BINARY"),
    "error: CELLS: cell 0 does not fit into the list of 4 values")
bad("offsets_beyond.vtk",
    vtk(POINTS + "CELLS 3 6\nOFFSETS vtktypeint64\n0 3 60\nCONNECTIVITY vtktypeint64\n0 1 2 0 2 3\n" + TYPES,
        version="5.1"), "error: cell offsets lie beyond the connectivity at cell 1")
bad("offsets_negative.vtk",
    vtk(POINTS + "CELLS 3 6\nOFFSETS vtktypeint64\n-3 3 6\nCONNECTIVITY vtktypeint64\n0 1 2 0 2 3\n" + TYPES,
        version="5.1"), "error: cell offset 0 is negative")
bad("offsets_missing.vtk", vtk(POINTS + "CELLS 3 6\n0 3 6\n", version="5.1"), "error: CELLS lacks its OFFSETS")
bad("dimensions_huge.vtk", vtk("DIMENSIONS 100000 100000 100000\nORIGIN 0 0 0\nSPACING 1 1 1\n",
                               data_set="STRUCTURED_POINTS"), "error: DIMENSIONS declares more than 2^29 points")
bad("polygon_beyond.vtk", vtk(POINTS + "POLYGONS 2 8\n3 0 1 2\n3 0 2 50\n", data_set="POLYDATA"),
    "left out: 1 cells on points that do not exist")

# ------------------------------------------------------------------------------------------------ Exodus II

FOUR = sample(DATA, "four_kinds.e")


def patched(data, find, replacement):
    at = data.index(find)
    return data[:at] + replacement + data[at + len(replacement):]


def dimension(name, length):
    padded = name + bytes(-len(name) % 4)
    return struct.pack(">I", len(name)) + padded + struct.pack(">I", length)


bad("cut_header.e", FOUR[:500], "error: ends within its header")
bad("cut_data.e", FOUR[:-3000], "error: variable eb_names reaches beyond the end of the file")
bad("nodes_huge.e", patched(FOUR, dimension(b"num_nodes", 13), dimension(b"num_nodes", 0x70000000)),
    "error: variable coordx reaches beyond the end of the file")
bad("unknown_version.e", b"CDF\x09" + FOUR[4:], "error: is NetCDF of unknown version 9")
bad("no_exodus.e", b"CDF\x01" + bytes(40), "error: is not an Exodus II file")
HEXAHEDRON = struct.pack(">8i", *range(1, 9))
bad("connectivity_beyond.e", patched(FOUR, HEXAHEDRON, struct.pack(">i", 99)),
    "left out: 1 elements on nodes that do not exist; 5 entries of side sets that are no side of an element here")
bad("hdf5_cut.e", b"\x89HDF\r\n\x1a\n\x00\x00\x00\x00\x00\x08\x08\x00" + bytes(24) + struct.pack("<Q", 5000) + bytes(100),
    "error: ends early: has 148 of 5000 bytes")
bad("hdf5_version.e", b"\x89HDF\r\n\x1a\n\x07" + bytes(100), "error: is HDF5 of unknown version 7")

# ------------------------------------------------------------------------------------------------ CGNS

BEND = sample(SAMPLES, "pipe_bend.cgns")
bad("cut.cgns", BEND[:50000], "error: ends early: has 50000 of 110295 bytes")
bad("cut_header.cgns", BEND[:100], "error: ends within its header")
bad("no_tree.cgns", BEND[:300] + bytes(len(BEND) - 300), "error: is not a CGNS file that can be read")

# ------------------------------------------------------------------------------------------------ STL, PLY, OBJ

bad("count_huge.stl", bytes(80) + struct.pack("<I", 0xFFFFFFFF) + bytes(100),
    "error: declares 4294967295 triangles, more than the file can hold")
bad("cut.stl", "solid a\nfacet normal 0 0 1\nouter loop\nvertex 0 0 0\nvertex 1 0 0\n",
    "error: STLReader: error while reading at line 5: Premature EOF while reading 'vertex'")
bad("nan.stl", bytes(80) + struct.pack("<I", 2) +
    struct.pack("<12fH", 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0) +
    struct.pack("<12fH", 0, 0, 1, 0, 0, float("nan"), 1, 0, 0, 0, 1, 0, 0),
    "left out: 1 nodes with coordinates that are not finite in single precision; "
    "1 elements on nodes with coordinates that are not finite in single precision")


def ply(vertices="0 0 0\n1 0 0\n0 1 0\n", faces="3 0 1 2\n", vertex_count=3, face_count=1, axes="xyz",
        list_type="uchar", end="end_header\n"):
    properties = "".join(f"property float {axis}\n" for axis in axes)
    return (f"ply\nformat ascii 1.0\nelement vertex {vertex_count}\n{properties}element face {face_count}\n"
            f"property list {list_type} int vertex_indices\n{end}{vertices}{faces}")


bad("good.ply", ply(), "left out: ")
bad("no_end.ply", ply(end="", vertices="", faces=""), "error: ends within its header")
bad("vertices_huge.ply", ply(vertex_count=4000000000),
    "error: element vertex declares 4000000000, more than the file can hold")
bad("vertices_negative.ply", ply(vertex_count=-3), 'error: element vertex declares "-3"')
bad("vertices_too_many.ply", ply(vertex_count=5),
    "error: row 4 of element vertex is not what the header declares")
bad("no_z.ply", ply(axes="xyw"), "error: vertices have no property z")
bad("unknown_type.ply", ply(list_type="octet"), "error: unknown property type octet")
bad("face_too_long.ply", ply(faces="200 0 1 2\n"), "error: row 0 of element face is not what the header declares")
bad("face_beyond.ply", ply(faces="3 0 1 2\n3 0 1 77\n", face_count=2), "error: face 1 names vertex 77 of 3")
bad("face_negative.ply", ply(faces="3 0 1 -2\n"), "error: face 0 names vertex -2 of 3")
bad("binary_face_beyond.ply", b"ply\nformat binary_big_endian 1.0\nelement vertex 3\nproperty float x\n"
    b"property float y\nproperty float z\nelement face 1\nproperty list uchar short vertex_index\nend_header\n" +
    bytes(36) + struct.pack(">B3h", 3, 0, 1, -7), "error: face 0 names vertex -7 of 3")
bad("binary_cut.ply", "ply\nformat binary_little_endian 1.0\nelement vertex 9\nproperty float x\nproperty float y\n"
    "property float z\nend_header\n1234567890", "error: element vertex declares 9, more than the file can hold")

TRIANGLE = "v 0 0 0\nv 1 0 0\nv 0 1 0\n"
bad("word.obj", "v 0 0 zero\n", 'error: line 1: "zero" is not a coordinate')
bad("too_few.obj", TRIANGLE + "v 0 0\n", 'error: line 4: "" is not a coordinate')
bad("index_zero.obj", TRIANGLE + "f 0 1 2\n", 'error: line 4: "0" is not an index')
bad("index_beyond.obj", TRIANGLE + "f 1 2 3\nf 1 2 9\nf -1 -2 -9\n", "left out: 2 cells on points that do not exist")
bad("no_vertices.obj", "# nothing here\nf 1 2 3\n",
    "error: nothing in it can be drawn: 1 cells on points that do not exist")
bad("corners.obj", TRIANGLE + "f 1 2\nf 1 2 3\n", "left out: 1 cells with a wrong number of points for their type")

with open(os.path.join(OUT, "expected.tsv"), "w") as table:
    for row in expected:
        table.write("\t".join(row) + "\n")
