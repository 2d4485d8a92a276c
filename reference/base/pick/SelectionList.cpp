#include "reference/base/pick/SelectionList.h"

#include <utility>

void SelectionList::add(const PickHit& hit) {
  close_up();
  entries_.push_back(hit.selection);
  hits_.push_back(hit);
}

std::vector<PickHit> SelectionList::take_out(const std::function<bool(const PickHit&)>& goes) {
  close_up();
  std::vector<PickHit> taken;
  gone_.assign(hits_.size(), 0);
  for (std::size_t i = 0; i < hits_.size(); ++i) {
    if (!goes(hits_[i])) continue;
    taken.push_back(hits_[i]);
    gone_[i] = 1;
  }
  close_up();
  return taken;
}

void SelectionList::take_out(const EntityIdentity& identity) {
  if (gone_.empty()) {
    gone_.assign(hits_.size(), 0);
    places_.reserve(hits_.size());
    for (const PickHit& hit : hits_)
      places_.add(hit.identity);
  }
  const std::size_t place = places_.find(identity);
  if (place < gone_.size()) gone_[place] = 1;
}

void SelectionList::clear() {
  entries_.clear();
  hits_.clear();
  gone_.clear();
  places_.clear();
  place_ = 0;
  left_ = false;
}

const std::vector<EntitySelection>& SelectionList::entries() const {
  close_up();
  return entries_;
}

const std::vector<PickHit>& SelectionList::hits() const {
  close_up();
  return hits_;
}

const PickHit* SelectionList::standing() const {
  close_up();
  return left_ || hits_.empty() ? nullptr : &hits_[place_];
}

void SelectionList::step() {
  close_up();
  if (!left_) ++place_;
  left_ = false;
  if (place_ >= hits_.size()) place_ = 0;
}

void SelectionList::close_up() const {
  if (gone_.empty()) return;
  std::size_t kept = 0;
  std::size_t place = place_;
  for (std::size_t i = 0; i < hits_.size(); ++i) {
    if (gone_[i]) {
      if (i < place_) --place;
      if (i == place_) left_ = true;
      continue;
    }
    if (kept != i) {
      hits_[kept] = std::move(hits_[i]);
      entries_[kept] = std::move(entries_[i]);
    }
    ++kept;
  }
  hits_.erase(hits_.begin() + static_cast<std::ptrdiff_t>(kept), hits_.end());
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(kept), entries_.end());
  place_ = place;
  gone_.clear();
  places_.clear();
}
