#include "readers/formats/XmlScan.h"

#include "readers/formats/TextNumbers.h"

namespace readers {

namespace {

bool ends_name(char c) { return is_blank(c) || c == '>' || c == '/' || c == '='; }

} // namespace

std::optional<std::string_view> XmlTag::attribute(std::string_view attribute_name) const {
  for (const auto& [key, value] : attributes)
    if (key == attribute_name) return value;
  return std::nullopt;
}

bool XmlScan::next(XmlTag& tag) {
  while (true) {
    at_ = text_.find('<', at_);
    if (at_ == std::string_view::npos) return false;
    const std::string_view rest = text_.substr(at_);
    const bool skipped = rest.substr(0, 4) == "<!--"        ? skip_to("-->")
                         : rest.substr(0, 9) == "<![CDATA[" ? skip_to("]]>")
                         : rest.substr(0, 2) == "<?"        ? skip_to("?>")
                         : rest.substr(0, 2) == "<!"        ? skip_to(">")
                                                            : false;
    if (skipped) continue;
    if (at_ == std::string_view::npos) return false;
    return read_tag(tag);
  }
}

bool XmlScan::skip_to(std::string_view end) {
  at_ = text_.find(end, at_);
  if (at_ == std::string_view::npos) return false;
  at_ += end.size();
  return true;
}

bool XmlScan::read_tag(XmlTag& tag) {
  const std::size_t start = ++at_;
  if (at_ < text_.size() && text_[at_] == '/') ++at_;
  while (at_ < text_.size() && !ends_name(text_[at_]))
    ++at_;
  tag.name = text_.substr(start, at_ - start);
  tag.closes_itself = false;
  tag.attributes.clear();
  return read_attributes(tag);
}

bool XmlScan::read_attributes(XmlTag& tag) {
  while (at_ < text_.size()) {
    const char c = text_[at_];
    if (c == '>') {
      ++at_;
      return true;
    }
    if (c == '/') tag.closes_itself = true;
    if (is_blank(c) || c == '/' || c == '=') {
      ++at_;
      continue;
    }
    const std::size_t start = at_;
    while (at_ < text_.size() && !ends_name(text_[at_]))
      ++at_;
    const std::string_view key = text_.substr(start, at_ - start);
    while (at_ < text_.size() && (is_blank(text_[at_]) || text_[at_] == '='))
      ++at_;
    if (at_ >= text_.size()) return false;
    const char quote = text_[at_];
    if (quote != '"' && quote != '\'') continue;
    const std::size_t end = text_.find(quote, at_ + 1);
    if (end == std::string_view::npos) return false;
    tag.attributes.emplace_back(key, text_.substr(at_ + 1, end - at_ - 1));
    at_ = end + 1;
  }
  return false;
}

std::string without_entities(std::string_view value) {
  static constexpr std::pair<std::string_view, char> entities[] = {
      {"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&quot;", '"'}, {"&apos;", '\''}};
  std::string text;
  while (!value.empty()) {
    std::size_t taken = 1;
    char c = value[0];
    for (const auto& [entity, character] : entities)
      if (value.substr(0, entity.size()) == entity) {
        c = character;
        taken = entity.size();
      }
    text += c;
    value.remove_prefix(taken);
  }
  return text;
}

} // namespace readers
