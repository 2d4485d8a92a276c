#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace readers {

/// A start tag or an end tag, as views of the file's text.
struct XmlTag {
  std::string_view name; ///< with a leading slash in an end tag
  bool closes_itself = false;
  std::vector<std::pair<std::string_view, std::string_view>> attributes;

  /// The attribute's value as it is written; nothing when there is none.
  std::optional<std::string_view> attribute(std::string_view attribute_name) const;
};

/// Walks the tags of an XML text without a tree and without believing that it is well-formed: comments, instructions
/// and CDATA are skipped, so is all content.
class XmlScan {
public:
  explicit XmlScan(std::string_view text) : text_(text) {}

  /// The next tag; false at the end of the text, or where it ends within a tag.
  bool next(XmlTag& tag);
  /// Where the text after the tag begins.
  std::size_t place() const { return at_; }

private:
  bool skip_to(std::string_view end);
  bool read_tag(XmlTag& tag);
  bool read_attributes(XmlTag& tag);

  std::string_view text_;
  std::size_t at_ = 0;
};

/// The value of an attribute with the five predefined entities replaced.
std::string without_entities(std::string_view value);

} // namespace readers
