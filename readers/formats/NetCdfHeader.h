#pragma once

#include <string_view>

namespace readers {

/// Checks the head of a NetCDF file: a classic one must be long enough for every variable that it declares; of one that
/// lies in HDF5 only the length is known. Throws `Refusal`.
void check_netcdf(std::string_view bytes);

/// Whether the bytes begin as an HDF5 file does.
bool is_hdf5(std::string_view bytes);

/// Checks that an HDF5 file is as long as its superblock says. Throws `Refusal`.
void check_hdf5(std::string_view bytes);

} // namespace readers
