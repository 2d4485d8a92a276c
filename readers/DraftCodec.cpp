#include "readers/DraftCodec.h"

#include <cerrno>
#include <cstring>
#include <unistd.h>

namespace readers {

namespace {

class Writer {
public:
  explicit Writer(int fd) : fd_(fd) {}
  bool good() const { return good_; }

  void operator()(const std::string& text) {
    number(text.size());
    bytes(text.data(), text.size());
  }
  template <typename T> void operator()(const std::vector<T>& values) {
    number(values.size());
    bytes(values.data(), values.size() * sizeof(T));
  }
  void number(std::uint64_t value) { bytes(&value, sizeof value); }

private:
  void bytes(const void* data, std::size_t size) {
    const char* at = static_cast<const char*>(data);
    while (good_ && size > 0) {
      const ssize_t written = ::write(fd_, at, size);
      if (written < 0 && errno == EINTR) continue;
      good_ = written > 0;
      if (!good_) return;
      at += written;
      size -= static_cast<std::size_t>(written);
    }
  }

  int fd_;
  bool good_ = true;
};

class Reader {
public:
  explicit Reader(std::string_view bytes) : rest_(bytes) {}
  bool good() const { return good_; }
  bool at_end() const { return good_ && rest_.empty(); }

  void operator()(std::string& text) {
    const std::uint64_t size = number();
    if (!take(size)) return;
    text.assign(rest_.data(), size);
    rest_.remove_prefix(size);
  }
  template <typename T> void operator()(std::vector<T>& values) {
    const std::uint64_t count = number();
    if (count > rest_.size() / sizeof(T)) good_ = false;
    if (!good_ || count == 0) return;
    values.resize(count);
    std::memcpy(values.data(), rest_.data(), count * sizeof(T));
    rest_.remove_prefix(count * sizeof(T));
  }
  std::uint64_t number() {
    std::uint64_t value = 0;
    if (!take(sizeof value)) return 0;
    std::memcpy(&value, rest_.data(), sizeof value);
    rest_.remove_prefix(sizeof value);
    return value;
  }
  // A count of things that take at least eight bytes each.
  std::uint64_t count() {
    const std::uint64_t value = number();
    if (value > rest_.size() / sizeof(std::uint64_t)) good_ = false;
    return good_ ? value : 0;
  }

private:
  bool take(std::uint64_t size) {
    good_ = good_ && size <= rest_.size();
    return good_;
  }

  std::string_view rest_;
  bool good_ = true;
};

void write_batch(Writer& write, const ElementBatch& batch) {
  write.number(batch.type);
  write.number(batch.nodes_per_element);
  write.number(batch.owner);
  write.number(batch.from_side_set);
  write(batch.nodes);
  write(batch.position);
  write(batch.numbers);
}

void read_batch(Reader& read, ElementBatch& batch) {
  const std::uint64_t type = read.number();
  batch.type = type <= Tarn::Superelement ? static_cast<Tarn::ElementType>(type) : Tarn::None;
  batch.nodes_per_element = static_cast<std::uint32_t>(read.number());
  batch.owner = static_cast<std::uint32_t>(read.number());
  batch.from_side_set = read.number() != 0;
  read(batch.nodes);
  read(batch.position);
  read(batch.numbers);
}

} // namespace

bool write_draft(const MeshDraft& draft, int fd) {
  Writer write(fd);
  write(draft.xyz);
  write(draft.node_numbers);
  write(draft.node_owner);
  write.number(draft.last_position);
  write.number(draft.owners.size());
  for (const std::string& owner : draft.owners)
    write(owner);
  write.number(draft.batches.size());
  for (const ElementBatch& batch : draft.batches)
    write_batch(write, batch);
  write.number(draft.node_sets.size());
  for (const NodeSet& set : draft.node_sets) {
    write(set.name);
    write(set.nodes);
  }
  write.number(draft.left_out.size());
  for (const LeftOut& left_out : draft.left_out) {
    write(left_out.reason);
    write.number(left_out.count);
  }
  write.number(draft.notices.size());
  for (const std::string& notice : draft.notices)
    write(notice);
  return write.good();
}

bool decode_draft(std::string_view bytes, MeshDraft& draft) {
  Reader read(bytes);
  read(draft.xyz);
  read(draft.node_numbers);
  read(draft.node_owner);
  draft.last_position = static_cast<std::uint32_t>(read.number());
  draft.owners.resize(read.count());
  for (std::string& owner : draft.owners)
    read(owner);
  draft.batches.resize(read.count());
  for (ElementBatch& batch : draft.batches)
    read_batch(read, batch);
  draft.node_sets.resize(read.count());
  for (NodeSet& set : draft.node_sets) {
    read(set.name);
    read(set.nodes);
  }
  draft.left_out.resize(read.count());
  for (LeftOut& left_out : draft.left_out) {
    read(left_out.reason);
    left_out.count = read.number();
  }
  draft.notices.resize(read.count());
  for (std::string& notice : draft.notices)
    read(notice);
  return read.at_end();
}

} // namespace readers
