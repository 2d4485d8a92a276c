#include "readers/formats/XmlHeader.h"

#include "readers/Refusal.h"
#include "readers/formats/TextNumbers.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace readers {

namespace {

struct Appended {
  bool raw = false;
  std::string_view bytes; // after the underscore
};

struct Header {
  bool big_endian = false;
  bool wide_headers = false; // UInt64
  std::string compressor;
};

// How many bytes a byte of the file can stand for, at most, by the format of each compressor.
std::uint64_t most_expansion(const std::string& compressor) {
  if (compressor.empty()) return 1;
  if (compressor == "vtkZLibDataCompressor") return 1032;
  if (compressor == "vtkLZ4DataCompressor") return 255;
  if (compressor == "vtkLZMADataCompressor") return 10000;
  throw Refusal("unknown compressor " + compressor);
}

std::string value_of(const XmlTag& tag, std::string_view name) { return std::string(tag.attribute(name).value_or("")); }

Header read_root(XmlScan& scan, std::string_view type) {
  XmlTag tag;
  if (!scan.next(tag) || tag.name != "VTKFile") throw Refusal("is not a VTK XML file");
  const std::string found = value_of(tag, "type");
  if (found != type) throw Refusal("is a VTK XML file of type " + found + ", not " + std::string(type));
  Header header;
  header.big_endian = value_of(tag, "byte_order") == "BigEndian";
  header.wide_headers = value_of(tag, "header_type") == "UInt64";
  header.compressor = value_of(tag, "compressor");
  return header;
}

void check_count(const XmlTag& tag, const char* what, const char* attribute, std::uint64_t bytes_each,
                 std::uint64_t budget) {
  const auto text = tag.attribute(attribute);
  if (!text) return;
  const std::string declares = std::string(what) + " declares " + attribute + "=\"";
  const auto count = to_integer(*text);
  if (!count || *count < 0) throw Refusal(declares + std::string(text->substr(0, 30)) + "\"");
  if (static_cast<std::uint64_t>(*count) > budget / bytes_each)
    throw Refusal(declares + std::to_string(*count) + "\", more than the file can hold");
}

// Two ends for each of three axes; the points between them.
void check_extent(const XmlTag& tag, const char* attribute) {
  constexpr std::int64_t most = std::int64_t{1} << 29;
  const auto text = tag.attribute(attribute);
  if (!text) return;
  std::int64_t points = 1;
  std::size_t at = 0;
  for (int axis = 0; axis < 3; ++axis) {
    const auto low = to_integer(next_word(*text, at));
    const auto high = to_integer(next_word(*text, at));
    if (!low || !high || std::abs(*low) > most || std::abs(*high) > most)
      throw Refusal(std::string(attribute) + "=\"" + std::string(text->substr(0, 60)) + "\" is not six numbers");
    points *= std::max<std::int64_t>(0, *high - *low + 1);
    if (points > most) throw Refusal(std::string(attribute) + " declares more than 2^29 points");
  }
}

// Every point takes three numbers and every cell a type, an offset and a point: two characters each at least.
void check_piece(const XmlTag& piece, std::uint64_t budget) {
  check_count(piece, "piece", "NumberOfPoints", 6, budget);
  check_extent(piece, "Extent");
  for (const char* cells : {"NumberOfCells", "NumberOfVerts", "NumberOfLines", "NumberOfStrips", "NumberOfPolys"})
    check_count(piece, "piece", cells, 4, budget);
}

// VTK walks through as many components as are declared, even where there are no tuples: for minutes, from 2^31 on.
void check_array(const XmlTag& array, std::uint64_t budget) {
  constexpr std::uint64_t TuplesOfByte = 8; // of bits
  check_count(array, "array", "NumberOfComponents", 1, budget);
  check_count(array, "array", "NumberOfTuples", 1, TuplesOfByte * budget);
}

std::uint64_t read_word(const char* at, const Header& header) {
  const std::size_t size = header.wide_headers ? 8 : 4;
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < size; ++i) {
    const auto byte = static_cast<unsigned char>(at[header.big_endian ? i : size - 1 - i]);
    value = value << 8 | byte;
  }
  return value;
}

void check_raw_array(std::int64_t offset, const Header& header, const Appended& appended) {
  const std::size_t word = header.wide_headers ? 8 : 4;
  const std::string_view rest = appended.bytes.substr(static_cast<std::size_t>(offset));
  const std::string where = "appended array at offset " + std::to_string(offset);
  if (rest.size() < word) throw Refusal(where + " lies beyond the end of the file");
  const std::uint64_t first = read_word(rest.data(), header);
  if (header.compressor.empty()) {
    if (first > rest.size() - word) throw Refusal(where + " reaches beyond the end of the file");
    return;
  }
  // The number of blocks, their size, the size of the last, the compressed size of each.
  if (first > rest.size() / word || (first + 3) * word > rest.size())
    throw Refusal(where + " reaches beyond the end of the file");
  if (first == 0) return;
  const std::uint64_t block = read_word(rest.data() + word, header);
  const std::uint64_t last = read_word(rest.data() + 2 * word, header); // 0: the last one is as long as the others
  const std::uint64_t most = rest.size() * most_expansion(header.compressor);
  if (last > most || (first > 1 && block > most / (first - 1)) || (last == 0 && block > most / first))
    throw Refusal(where + " declares more than the file can hold");
}

void check_appended(const std::vector<std::int64_t>& offsets, const Header& header, const Appended& appended) {
  for (std::int64_t offset : offsets) {
    if (static_cast<std::uint64_t>(offset) >= appended.bytes.size()) // a negative one as well
      throw Refusal("appended array at offset " + std::to_string(offset) + " lies beyond the end of the file");
    if (appended.raw) check_raw_array(offset, header, appended);
  }
}

Appended find_appended(const XmlTag& tag, std::string_view text, std::size_t place) {
  Appended appended;
  appended.raw = tag.attribute("encoding").value_or("raw") == "raw";
  const std::size_t underscore = text.find('_', place);
  if (underscore != std::string_view::npos) appended.bytes = text.substr(underscore + 1);
  return appended;
}

void check_end(std::string_view text) {
  constexpr std::string_view closing = "</VTKFile>";
  constexpr std::size_t tail_size = 256; // blanks or a comment may follow
  const std::string_view tail = text.substr(text.size() - std::min(text.size(), tail_size));
  if (tail.find(closing) == std::string_view::npos) throw Refusal("ends before its closing tag </VTKFile>");
}

} // namespace

void check_vtk_xml(std::string_view text, std::string_view type) {
  XmlScan scan(text);
  const Header header = read_root(scan, type);
  check_end(text);
  const std::uint64_t budget = text.size() * most_expansion(header.compressor);
  std::vector<std::int64_t> offsets;
  Appended appended;
  for (XmlTag tag; scan.next(tag);) {
    if (tag.name == "Piece") check_piece(tag, budget);
    check_extent(tag, "WholeExtent");
    if (tag.name == "DataArray" || tag.name == "Array") check_array(tag, budget);
    if (tag.name == "DataArray" && value_of(tag, "format") == "appended")
      offsets.push_back(to_integer(tag.attribute("offset").value_or("")).value_or(-1));
    if (tag.name == "AppendedData") {
      appended = find_appended(tag, text, scan.place());
      break;
    }
  }
  check_appended(offsets, header, appended);
}

} // namespace readers
