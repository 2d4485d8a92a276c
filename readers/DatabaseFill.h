#pragma once

#include "readers/MeshDraft.h"

namespace Tarn {
class MeshDatabase;
}

namespace readers {

/// Appends a consistent draft to the database: owners in the order of the draft, then its nodes, elements batch by
/// batch, node sets. Local ids are the file's numbers where all are unique, positive, below 2^31 and unused, else
/// running numbers after the largest so far, with a notice. The global id of an element is the file's number, else the
/// running number. Counts, notices and what was left out go into the report. Gives what stands in the way, or nothing;
/// the database is untouched when something does.
std::string fill_database(const MeshDraft& draft, const Options& options, Tarn::MeshDatabase& database, Report& report);

} // namespace readers
