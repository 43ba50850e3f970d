#pragma once

/// @file XML from people and programs that are not trusted: bounded, without entities of its own, with places for
/// messages and with the bytes at which its texts stand.

#include <pugixml.hpp>

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace qoc::program {

/// The largest document in bytes, and how deep its elements may stand in each other.
inline constexpr std::size_t maxDocumentBytes = std::size_t{128} << 20;
inline constexpr int maxDocumentDepth = 256;

/// Bytes of a document that hold one text, from `begin` to before `end`, as they stand there.
struct TextSlot {
  std::size_t begin, end;
};

/// A document, parsed. It is not changed: texts are replaced in its bytes.
class XmlDocument {
public:
  /// Parses a document. Throws Trouble "NAME:LINE:COLUMN: …" for what is not well-formed, too deep or too large, not
  /// UTF-8, or declares or uses entities other than XML's own five.
  XmlDocument(std::string bytes, std::string name);

  const std::string &bytes() const { return bytes_; }
  const std::string &name() const { return name_; }
  pugi::xml_node root() const { return document_.document_element(); }

  /// Where an element or a text begins: its line, and "NAME:LINE:COLUMN" for messages.
  std::uint64_t lineOf(pugi::xml_node node) const;
  std::string placeOf(pugi::xml_node node) const;

  /// The bytes of a text or CDATA node, white space at its ends left out of a text.
  TextSlot slotOf(pugi::xml_node text) const;
  /// The bytes of an attribute's value, which the element must have.
  TextSlot slotOf(pugi::xml_node element, std::string_view attribute) const;

private:
  std::size_t lineIndexOf(std::size_t byte) const;

  std::string bytes_, name_;
  pugi::xml_document document_;
  std::vector<std::size_t> lineStarts_;
};

/// The name of an element without its namespace's prefix.
std::string_view localName(pugi::xml_node element);

/// Calls for each element under the node, in the document's order. The visitor says whether to go into the element.
void visitElements(pugi::xml_node node, const std::function<bool(pugi::xml_node)> &visit);

/// The first child element with this local name; empty where there is none.
pugi::xml_node childNamed(pugi::xml_node element, std::string_view name);

/// A text as XML writes it in elements and attributes.
std::string escapeXml(std::string_view text);

} // namespace qoc::program
