#include "XmlTree.h"

#include <algorithm>

namespace VeyraFuzz {

namespace {

constexpr std::size_t kMaximalDepth = 600;  // beyond it elements become siblings

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r'; }
bool IsNameCharacter(char c) {
  return !IsBlank(c) && std::string_view("<>/='\"&?!").find(c) == std::string_view::npos;
}

class Reader {
 public:
  explicit Reader(std::string_view text) : fText(text) {}

  Node Read() {
    fOpen.emplace_back();
    while (fAt < fText.size()) {
      if (fText[fAt] == '<') {
        ReadMarkup();
      } else {
        const std::size_t end = std::min(fText.find('<', fAt), fText.size());
        AddText(fText.substr(fAt, end - fAt));
        fAt = end;
      }
    }
    while (fOpen.size() > 1) Close();
    return std::move(fOpen.front());
  }

 private:
  void ReadMarkup() {
    const char next = fAt + 1 < fText.size() ? fText[fAt + 1] : '>';
    if (next == '/') return ReadEnd();
    if (IsNameCharacter(next)) return ReadStart();
    const std::size_t end = std::min(fText.find('>', fAt), fText.size() - 1) + 1;
    AddText(fText.substr(fAt, end - fAt));
    fAt = end;
  }

  void ReadEnd() {
    fAt += 2;
    const std::string name = ReadName();
    fAt = std::min(fText.find('>', fAt), fText.size() - 1) + 1;
    const auto isOpen = [&name](const Node& node) { return node.name == name; };
    if (std::none_of(fOpen.begin() + 1, fOpen.end(), isOpen)) return;
    while (fOpen.back().name != name) Close();
    Close();
  }

  void ReadStart() {
    ++fAt;
    Node node;
    node.name = ReadName();
    while (true) {
      SkipBlanks();
      if (fAt >= fText.size() || fText[fAt] == '>' || fText[fAt] == '/' || fText[fAt] == '<') break;
      const std::size_t before = fAt;
      std::string name = ReadName();
      SkipBlanks();
      if (!name.empty() && fAt < fText.size() && fText[fAt] == '=') {
        ++fAt;
        SkipBlanks();
        node.attributes.emplace_back(std::move(name), ReadQuoted());
      }
      if (fAt == before) ++fAt;
    }
    const bool isEmpty = fAt < fText.size() && fText[fAt] == '/';
    if (isEmpty) ++fAt;
    if (fAt < fText.size() && fText[fAt] == '>') ++fAt;
    fOpen.push_back(std::move(node));
    if (isEmpty || fOpen.size() > kMaximalDepth) Close();
  }

  std::string ReadName() {
    const std::size_t from = fAt;
    while (fAt < fText.size() && IsNameCharacter(fText[fAt])) ++fAt;
    return std::string(fText.substr(from, fAt - from));
  }

  std::string ReadQuoted() {
    if (fAt >= fText.size() || (fText[fAt] != '"' && fText[fAt] != '\'')) return {};
    const char quote = fText[fAt++];
    const std::size_t end = std::min(fText.find(quote, fAt), fText.size());
    std::string value;
    for (const char c : fText.substr(fAt, end - fAt)) {
      if (c == '"') {
        value += "&quot;";
      } else {
        value += c;
      }
    }
    fAt = std::min(end + 1, fText.size());
    return value;
  }

  void SkipBlanks() {
    while (fAt < fText.size() && IsBlank(fText[fAt])) ++fAt;
  }

  // Blanks alone are layout.
  void AddText(std::string_view text) {
    if (std::all_of(text.begin(), text.end(), IsBlank)) return;
    Node node;
    node.text = text;
    fOpen.back().children.push_back(std::move(node));
  }

  void Close() {
    Node node = std::move(fOpen.back());
    fOpen.pop_back();
    fOpen.back().children.push_back(std::move(node));
  }

  std::string_view fText;
  std::size_t fAt = 0;
  std::vector<Node> fOpen;
};

void Append(const Node& node, std::string& out) {
  if (node.IsText()) {
    out += node.text;
  } else {
    out.append("<").append(node.name);
    for (const auto& [name, value] : node.attributes)
      out.append(" ").append(name).append("=\"").append(value).append("\"");
    out += node.children.empty() ? "/>" : ">";
  }
  for (const Node& child : node.children) Append(child, out);
  if (!node.IsText() && !node.children.empty()) out.append("</").append(node.name).append(">");
}

}  // namespace

Node ParseTree(std::string_view document) { return Reader(document).Read(); }

std::string Serialise(const Node& top) {
  std::string out;
  Append(top, out);
  return out;
}

}  // namespace VeyraFuzz
