#include "readers/formats/NetCdfHeader.h"

#include "readers/Refusal.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace readers {

namespace {

constexpr std::string_view hdf5_signature("\x89HDF\r\n\x1a\n", 8);

// The classic format, all numbers big endian: magic and version, number of records, lists of dimensions, attributes and
// variables. Version 2 has wide offsets, version 5 wide counts as well.
class ClassicHeader {
public:
  explicit ClassicHeader(std::string_view bytes) : bytes_(bytes), version_(bytes[3]) {}

  void check() {
    if (version_ != 1 && version_ != 2 && version_ != 5)
      throw Refusal("is NetCDF of unknown version " + std::to_string(version_));
    records_ = count();
    read_dimensions();
    skip_attributes();
    const std::uint64_t variables = list_length(0x0b, "variables");
    for (std::uint64_t i = 0; i < variables; ++i)
      check_variable();
  }

private:
  void read_dimensions() {
    const std::uint64_t n = list_length(0x0a, "dimensions");
    for (std::uint64_t i = 0; i < n; ++i) {
      skip_name();
      dimensions_.push_back(count());
    }
  }

  void skip_attributes() {
    const std::uint64_t n = list_length(0x0c, "attributes");
    for (std::uint64_t i = 0; i < n; ++i) {
      skip_name();
      const std::uint64_t size = size_of_type(word());
      skip_values(count(), size);
    }
  }

  void check_variable() {
    const std::string name = skip_name();
    const std::uint64_t rank = count();
    if (rank > rest()) ends_early();
    std::vector<std::uint64_t> shape;
    for (std::uint64_t i = 0; i < rank; ++i)
      shape.push_back(dimension(count(), name));
    skip_attributes();
    std::uint64_t size = size_of_type(word());
    count(); // the size once more, which may have wrapped around
    const std::uint64_t begin = version_ == 1 ? word() : wide_word();
    const bool has_records = !shape.empty() && shape[0] == 0;
    if (has_records && records_ == 0) return;
    for (std::size_t i = has_records ? 1 : 0; i < shape.size(); ++i) {
      if (shape[i] != 0 && size > bytes_.size() / shape[i]) reaches_beyond(name);
      size *= shape[i];
    }
    if (begin > bytes_.size() || size > bytes_.size() - begin) reaches_beyond(name);
  }

  std::uint64_t dimension(std::uint64_t id, const std::string& name) const {
    if (id >= dimensions_.size()) throw Refusal("variable " + name + " has a dimension that does not exist");
    return dimensions_[static_cast<std::size_t>(id)];
  }

  std::uint64_t list_length(std::uint64_t tag, const char* what) {
    const std::uint64_t found = word();
    const std::uint64_t n = count();
    if (found != tag && (found != 0 || n != 0)) throw Refusal(std::string("header has no list of ") + what);
    if (n > rest()) ends_early();
    return n;
  }

  static std::uint64_t size_of_type(std::uint64_t type) {
    static constexpr std::uint64_t sizes[] = {0, 1, 1, 2, 4, 4, 8, 1, 2, 4, 8, 8};
    if (type < 1 || type > 11) throw Refusal("header names unknown data type " + std::to_string(type));
    return sizes[type];
  }

  std::string skip_name() {
    const std::uint64_t length = count();
    const std::size_t start = at_;
    skip_values(length, 1);
    std::string name(bytes_.substr(start, std::min<std::uint64_t>(length, 60)));
    std::replace_if(
        name.begin(), name.end(), [](char c) { return c < 0x20 || c > 0x7e; }, '?');
    return name;
  }

  void skip_values(std::uint64_t n, std::uint64_t size) {
    if (n > rest() / size) ends_early();
    const std::uint64_t padded = (n * size + 3) / 4 * 4;
    at_ += static_cast<std::size_t>(std::min(padded, rest()));
  }

  std::uint64_t count() { return version_ == 5 ? wide_word() : word(); }
  std::uint64_t word() { return big_endian(4); }
  std::uint64_t wide_word() { return big_endian(8); }

  std::uint64_t big_endian(std::size_t size) {
    if (rest() < size) ends_early();
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
      value = value << 8 | static_cast<unsigned char>(bytes_[at_++]);
    return value;
  }

  std::uint64_t rest() const { return bytes_.size() - at_; }
  [[noreturn]] static void ends_early() { throw Refusal("ends within its header"); }
  [[noreturn]] static void reaches_beyond(const std::string& name) {
    throw Refusal("variable " + name + " reaches beyond the end of the file");
  }

  std::string_view bytes_;
  std::size_t at_ = 4;
  int version_;
  std::uint64_t records_ = 0;
  std::vector<std::uint64_t> dimensions_;
};

std::uint64_t little_endian(std::string_view bytes, std::size_t at) {
  std::uint64_t value = 0;
  for (std::size_t i = 8; i-- > 0;)
    value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
  return value;
}

} // namespace

bool is_hdf5(std::string_view bytes) { return bytes.substr(0, hdf5_signature.size()) == hdf5_signature; }

void check_hdf5(std::string_view bytes) {
  constexpr std::size_t superblock = 96;
  if (bytes.size() < superblock) throw Refusal("ends within its header");
  const int version = static_cast<unsigned char>(bytes[8]);
  if (version > 3) throw Refusal("is HDF5 of unknown version " + std::to_string(version));
  const int width = static_cast<unsigned char>(bytes[version < 2 ? 13 : 9]);
  if (width != 8) throw Refusal("is HDF5 with addresses of " + std::to_string(width) + " bytes");
  const std::size_t place = version == 0 ? 40 : version == 1 ? 44 : 28;
  const std::uint64_t length = little_endian(bytes, place);
  if (length > bytes.size())
    throw Refusal("ends early: has " + std::to_string(bytes.size()) + " of " + std::to_string(length) + " bytes");
}

void check_netcdf(std::string_view bytes) {
  if (is_hdf5(bytes)) return check_hdf5(bytes);
  if (bytes.size() < 32 || bytes.substr(0, 3) != "CDF") throw Refusal("is neither NetCDF nor HDF5");
  ClassicHeader(bytes).check();
}

} // namespace readers
