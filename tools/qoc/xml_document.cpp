#include "xml_document.hpp"

#include "text.hpp"
#include "trouble.hpp"

#include <algorithm>
#include <array>

namespace qoc::program {
namespace {

constexpr std::string_view whiteSpace = " \t\r\n";
constexpr std::string_view cdataStart = "<![CDATA[", cdataEnd = "]]>";

std::vector<std::size_t> findLineStarts(std::string_view bytes) {
  std::vector<std::size_t> starts{0};
  for (std::size_t feed = bytes.find('\n'); feed != std::string_view::npos; feed = bytes.find('\n', feed + 1)) {
    starts.push_back(feed + 1);
  }
  return starts;
}

/// Where a section that is no text ends, for what begins at `at`: a comment, CDATA or a processing instruction; else 0.
std::size_t endOfSection(std::string_view bytes, std::size_t at) {
  constexpr std::array<std::array<std::string_view, 2>, 3> sections{
      {{"<!--", "-->"}, {cdataStart, cdataEnd}, {"<?", "?>"}}};
  for (const auto &[start, end] : sections) {
    if (bytes.substr(at, start.size()) != start) continue;
    const std::size_t found = bytes.find(end, at + start.size());
    return found == std::string_view::npos ? bytes.size() : found + end.size();
  }
  return 0;
}

bool isKnownReference(std::string_view name) {
  constexpr std::array<std::string_view, 5> known{"amp", "lt", "gt", "quot", "apos"};
  return (name.size() > 1 && name.front() == '#') || std::find(known.begin(), known.end(), name) != known.end();
}

/// The first byte of an entity reference that XML itself does not define, or npos.
std::size_t findUnknownReference(std::string_view bytes) {
  for (std::size_t at = bytes.find_first_of("<&"); at != std::string_view::npos;) {
    if (bytes[at] == '&') {
      const std::size_t end = bytes.find_first_of("; \t\r\n<&\"'", at + 1);
      const bool isReference = end != std::string_view::npos && bytes[end] == ';';
      if (!isReference || !isKnownReference(bytes.substr(at + 1, end - at - 1))) return at;
    }
    const std::size_t sectionEnd = endOfSection(bytes, at);
    at = bytes.find_first_of("<&", sectionEnd > 0 ? sectionEnd : at + 1);
  }
  return std::string_view::npos;
}

/// Whether a document type declaration holds declarations of its own, the part in brackets.
bool hasInternalSubset(std::string_view declaration) {
  char quote = 0;
  for (const char character : declaration) {
    if (quote != 0) {
      if (character == quote) quote = 0;
    } else if (character == '"' || character == '\'') {
      quote = character;
    } else if (character == '[') {
      return true;
    }
  }
  return false;
}

} // namespace

XmlDocument::XmlDocument(std::string bytes, std::string name) : bytes_(std::move(bytes)), name_(std::move(name)) {
  const std::string_view view = bytes_;
  if (view.starts_with("\xFF\xFE") || view.starts_with("\xFE\xFF") || view.substr(0, 4).find('\0') != view.npos) {
    throw Trouble(name_ + ":1: byte 1: the document is UTF-16 or UTF-32; expected UTF-8");
  }
  lineStarts_ = findLineStarts(view);
  for (std::size_t line = 0; line < lineStarts_.size(); ++line) {
    const std::size_t end = line + 1 < lineStarts_.size() ? lineStarts_[line + 1] : view.size();
    checkUtf8(view.substr(lineStarts_[line], end - lineStarts_[line]), name_ + ":" + std::to_string(line + 1));
  }
  const auto placeOfByte = [&](std::size_t byte) {
    const std::size_t line = lineIndexOf(byte);
    const std::size_t column = decodeUtf8(view.substr(lineStarts_[line], byte - lineStarts_[line])).size() + 1;
    return name_ + ":" + std::to_string(line + 1) + ":" + std::to_string(column);
  };
  if (const std::size_t zero = view.find('\0'); zero != view.npos) {
    throw Trouble(placeOfByte(zero) + ": the character U+0000; expected XML, which has none");
  }
  const pugi::xml_parse_result result = document_.load_buffer(
      bytes_.data(), bytes_.size(), pugi::parse_default | pugi::parse_doctype, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory) throw std::bad_alloc();
  if (!result) {
    std::size_t byte = std::min(static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0)), view.size());
    while (byte > 0 && byte < view.size() && (static_cast<unsigned char>(view[byte]) & 0xC0U) == 0x80U) --byte;
    throw Trouble(placeOfByte(byte) + ": not well-formed XML: " + result.description());
  }
  for (const pugi::xml_node node : document_.children()) {
    if (node.type() == pugi::node_doctype && hasInternalSubset(node.value())) {
      throw Trouble(placeOf(node) +
                    ": the document type declares entities or elements; expected a document without such declarations");
    }
  }
  if (const std::size_t unknown = findUnknownReference(view); unknown != view.npos) {
    const std::size_t end = std::min(view.find_first_of("; \t\r\n<", unknown), unknown + 24);
    throw Trouble(placeOfByte(unknown) + ": \"" + bytes_.substr(unknown, end - unknown) +
                  "\" is no entity of XML's own; expected &amp; &lt; &gt; &quot; &apos; or &#NUMBER;");
  }
  int depth = 0;
  for (pugi::xml_node node = document_.first_child(); node;) {
    if (depth >= maxDocumentDepth) {
      throw Trouble(placeOf(node) + ": the elements stand too deep in each other; expected at most " +
                    std::to_string(maxDocumentDepth) + " levels");
    }
    if (node.first_child()) {
      node = node.first_child();
      ++depth;
      continue;
    }
    while (node && !node.next_sibling()) {
      node = node.parent();
      --depth;
    }
    if (node) node = node.next_sibling();
  }
  if (!root()) throw Trouble(name_ + ":1: the document has no element");
}

std::size_t XmlDocument::lineIndexOf(std::size_t byte) const {
  const auto next = std::upper_bound(lineStarts_.begin(), lineStarts_.end(), byte);
  return static_cast<std::size_t>(next - lineStarts_.begin()) - 1;
}

std::uint64_t XmlDocument::lineOf(pugi::xml_node node) const {
  return lineIndexOf(static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0))) + 1;
}

std::string XmlDocument::placeOf(pugi::xml_node node) const {
  const auto byte = static_cast<std::size_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0));
  const std::size_t line = lineIndexOf(byte);
  const std::string_view before = std::string_view(bytes_).substr(lineStarts_[line], byte - lineStarts_[line]);
  return name_ + ":" + std::to_string(line + 1) + ":" + std::to_string(decodeUtf8(before).size() + 1);
}

TextSlot XmlDocument::slotOf(pugi::xml_node text) const {
  const std::string_view view = bytes_;
  auto begin = static_cast<std::size_t>(text.offset_debug());
  if (text.type() == pugi::node_cdata) {
    return {begin - cdataStart.size(), view.find(cdataEnd, begin) + cdataEnd.size()};
  }
  std::size_t end = std::min(view.find('<', begin), view.size());
  while (begin < end && whiteSpace.find(view[begin]) != view.npos) ++begin;
  while (end > begin && whiteSpace.find(view[end - 1]) != view.npos) --end;
  return {begin, end};
}

TextSlot XmlDocument::slotOf(pugi::xml_node element, std::string_view attribute) const {
  // The parser has seen that the tag is well-formed: names, an equals sign, and values in quotes.
  const std::string_view view = bytes_;
  std::size_t at = view.find_first_of(" \t\r\n/>", static_cast<std::size_t>(element.offset_debug()));
  for (;;) {
    at = view.find_first_not_of(whiteSpace, at);
    const std::size_t nameEnd = view.find_first_of(" \t\r\n=/>", at);
    const std::size_t quote = view.find_first_of("\"'", nameEnd);
    const std::size_t end = quote == view.npos ? view.npos : view.find(view[quote], quote + 1);
    if (end == view.npos) throw Trouble(placeOf(element) + ": an attribute cannot be found again");
    if (view.substr(at, nameEnd - at) == attribute) return {quote + 1, end};
    at = end + 1;
  }
}

std::string_view localName(pugi::xml_node element) {
  const std::string_view name = element.name();
  const std::size_t colon = name.find(':');
  return colon == name.npos ? name : name.substr(colon + 1);
}

void visitElements(pugi::xml_node node, const std::function<bool(pugi::xml_node)> &visit) {
  for (const pugi::xml_node child : node.children()) {
    if (child.type() == pugi::node_element && visit(child)) visitElements(child, visit);
  }
}

pugi::xml_node childNamed(pugi::xml_node element, std::string_view name) {
  return element.find_child(
      [&](pugi::xml_node child) { return child.type() == pugi::node_element && localName(child) == name; });
}

std::string escapeXml(std::string_view text) {
  std::string escaped;
  for (const char character : text) {
    switch (character) {
    case '&': escaped += "&amp;"; break;
    case '<': escaped += "&lt;"; break;
    case '>': escaped += "&gt;"; break;
    case '"': escaped += "&quot;"; break;
    case '\'': escaped += "&#39;"; break;
    default: escaped += character;
    }
  }
  return escaped;
}

} // namespace qoc::program
