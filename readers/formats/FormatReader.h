#pragma once

#include "readers/FileBytes.h"
#include "readers/MeshDraft.h"

namespace readers {

/// A file to be read.
struct Source {
  std::string path;
  std::string name;      ///< of the owner where the file names none
  bool is_block = false; ///< of another file, which gave it its name
  int depth = 0;         ///< how many files it is nested in
  std::size_t& blocks;   ///< how many files were named as blocks so far, in all of the mesh
  const FileBytes& bytes;
};

/// How one format is read. Both functions throw `Refusal`.
struct FormatReader {
  Format format;
  /// Bounds what the file declares by what it can hold, before anything is allocated for it.
  void (*check)(const Source&);
  /// Gives the mesh.
  MeshDraft (*parse)(const Source&);
  /// Whether `parse` runs in a process of its own, since it trusts the file.
  bool guarded;
};

FormatReader vtu_format();
FormatReader vtp_format();
FormatReader vts_format();
FormatReader vtr_format();
FormatReader vti_format();
FormatReader vtm_format();
FormatReader legacy_vtk_format();
FormatReader exodus_format();
FormatReader cgns_format();
FormatReader stl_format();
FormatReader ply_format();
FormatReader obj_format();

/// All of them, in the order in which they are listed to users.
const std::vector<FormatReader>& format_readers();

/// Reads a file without the database: opens it, finds the format by the extension, checks, parses. Its owner is called
/// by the file's stem where the file names none. Throws `Refusal`.
MeshDraft read_draft(const std::string& path);

/// Reads a file that `parent` names as a block.
MeshDraft read_block_draft(const std::string& path, const std::string& name, const Source& parent);

} // namespace readers
