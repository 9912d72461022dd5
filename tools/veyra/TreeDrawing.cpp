#include "veyra/TreeDrawing.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <map>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "veyra/Number.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace VeyraTool {

namespace Tags = KxVeyra_940::PMMLModelTags;
using KxVeyra_940::ForEachChildElement;
using KxVeyra_940::HasTag;
using KxVeyra_940::OptionalText;
using KxVeyra_940::PMMLTranslator;
using xercesc::DOMElement;

namespace {

constexpr int kConditionDepth = 8;  // compounds inside compounds that are written out
constexpr int kIndentedLevels = 40;

struct Share {
  std::string category;
  double part;  // of the node's records
};

struct DrawnNode {
  const DOMElement* element;
  int parent;
  int level;
  std::string condition;
  std::string shortCondition;  // with numbers of few digits
  std::string score;
  std::string records;
  std::vector<Share> shares;
  std::vector<int> children;
  std::size_t hidden = 0;  // nodes below it that are not drawn
  double x = 0;            // of a picture: its middle, in boxes
};

// --- What a node says

struct OperatorRow {
  std::string_view text;
  const char* sign;
};
constexpr OperatorRow kSigns[] = {
    {Tags::XML_VAL_OPERATOR_EQUAL, " = "},
    {Tags::XML_VAL_OPERATOR_NOTEQUAL, " \u2260 "},
    {Tags::XML_VAL_OPERATOR_LESSTHAN, " < "},
    {Tags::XML_VAL_OPERATOR_LESSOREQUAL, " \u2264 "},
    {Tags::XML_VAL_OPERATOR_GREATERTHAN, " > "},
    {Tags::XML_VAL_OPERATOR_GREATEROREQUAL, " \u2265 "},
    {Tags::XML_VAL_OPERATOR_ISMISSING, " is missing"},
    {Tags::XML_VAL_OPERATOR_ISNOTMISSING, " is not missing"},
};

enum class Digits { kAll, kFew };

// Five digits of a number; any other text as it is.
std::string WithFewDigits(const std::string& text) {
  const std::optional<double> number = ReadNumber(text);
  if (!number.has_value()) return text;
  char digits[32];
  return {digits, std::to_chars(digits, digits + sizeof digits, *number, std::chars_format::general, 5).ptr};
}

std::string SimpleText(const DOMElement& element, Digits digits) {
  const std::string name = OptionalText(element, Tags::XML_ATT_OPERATOR);
  const auto* row = std::find_if(std::begin(kSigns), std::end(kSigns),
                                 [&](const OperatorRow& candidate) { return candidate.text == name; });
  const std::string sign = row == std::end(kSigns) ? " " + name + " " : row->sign;
  const std::string value = OptionalText(element, Tags::XML_ATT_VALUE);
  return OptionalText(element, Tags::XML_ATT_FIELD) + sign +
         (digits == Digits::kAll ? value : WithFewDigits(value));
}

std::string SetText(const DOMElement& element) {
  std::string items;
  ForEachChildElement(&element, [&](const DOMElement& array) {
    std::u16string buffer;
    items = KxXML_940::ToUTF8(KxVeyra_940::TextOf(array, buffer));
  });
  const bool isIn = OptionalText(element, Tags::XML_ATT_BOOLEANOPERATOR) == Tags::XML_ZENT_TRANFUNC_ISIN;
  return OptionalText(element, Tags::XML_ATT_FIELD) + (isIn ? " in {" : " not in {") + items + "}";
}

// The condition of a predicate; empty for an element that is none.
std::string ConditionText(const DOMElement& element, Digits digits, int depth = 0) {
  if (HasTag(element, Tags::XML_ELE_PREDICATE)) return SimpleText(element, digits);
  if (HasTag(element, Tags::XML_ELE_SETPREDICATE)) return SetText(element);
  if (HasTag(element, Tags::XML_ELE_TRUE)) return "always";
  if (HasTag(element, Tags::XML_ELE_FALSE)) return "never";
  if (!HasTag(element, Tags::XML_ELE_COMPOUNDPREDICATE)) return {};
  if (depth == kConditionDepth) return "\u2026";
  const std::string name = OptionalText(element, Tags::XML_ATT_BOOLEANOPERATOR);
  const std::string between = name == Tags::XML_VAL_SURROGATE ? ", else " : " " + name + " ";
  std::string text;
  ForEachChildElement(&element, [&](const DOMElement& child) {
    std::string part = ConditionText(child, digits, depth + 1);
    if (part.empty()) return;
    if (HasTag(child, Tags::XML_ELE_COMPOUNDPREDICATE)) part = "(" + part + ")";
    text.append(text.empty() ? "" : between).append(part);
  });
  return text;
}

double NumberOf(const DOMElement& element, const char* name) {
  return ReadNumber(OptionalText(element, name)).value_or(0);
}

void ReadShares(DrawnNode& node) {
  double sum = 0;
  ForEachChildElement(node.element, [&](const DOMElement& child) {
    if (!HasTag(child, Tags::XML_ELE_SCOREDISTRIBUTION)) return;
    const double count = std::max(0.0, NumberOf(child, Tags::XML_ATT_RECORDCOUNT));
    node.shares.push_back({OptionalText(child, Tags::XML_ATT_VALUE), count});
    sum += count;
  });
  for (Share& share : node.shares) share.part = sum > 0 ? share.part / sum : 0;
}

DrawnNode ReadNode(const DOMElement& element, int parent, int level) {
  DrawnNode node{&element,
                 parent,
                 level,
                 {},
                 {},
                 OptionalText(element, Tags::XML_ATT_SCORE),
                 OptionalText(element, Tags::XML_ATT_RECORDCOUNT),
                 {},
                 {}};
  ForEachChildElement(&element, [&](const DOMElement& child) {
    if (!node.condition.empty()) return;
    node.condition = ConditionText(child, Digits::kAll);
    node.shortCondition = ConditionText(child, Digits::kFew);
  });
  ReadShares(node);
  const auto most =
      std::max_element(node.shares.begin(), node.shares.end(),
                       [](const Share& left, const Share& right) { return left.part < right.part; });
  if (node.score.empty() && most != node.shares.end()) node.score = most->category;
  return node;
}

// The nodes down to that level in document order; a parent stands before its children.
std::vector<DrawnNode> ReadNodes(const DOMElement& treeModel, int depth) {
  struct Pending {
    const DOMElement* element;
    int parent;
    int level;
  };
  std::vector<DrawnNode> nodes;
  std::vector<Pending> stack;
  ForEachChildElement(&treeModel, [&](const DOMElement& child) {
    if (HasTag(child, Tags::XML_ELE_NODE)) stack.push_back({&child, -1, 0});
  });
  while (!stack.empty()) {
    const Pending next = stack.back();
    stack.pop_back();
    const int index = static_cast<int>(nodes.size());
    nodes.push_back(ReadNode(*next.element, next.parent, next.level));
    if (next.parent >= 0) nodes[static_cast<std::size_t>(next.parent)].children.push_back(index);
    if (next.level == depth) {
      KxVeyra_940::ForEachElementBelow(*next.element, Tags::XML_ELE_NODE,
                                       [&](const DOMElement&) { ++nodes.back().hidden; });
      continue;
    }
    const std::size_t first = stack.size();
    ForEachChildElement(next.element, [&](const DOMElement& child) {
      if (HasTag(child, Tags::XML_ELE_NODE)) stack.push_back({&child, index, next.level + 1});
    });
    std::reverse(stack.begin() + static_cast<std::ptrdiff_t>(first), stack.end());
  }
  return nodes;
}

std::string HiddenText(std::size_t count) {
  return std::to_string(count) + (count == 1 ? " node below" : " nodes below");
}

// --- The picture

constexpr double kBoxWidth = 216;
constexpr double kBoxHeight = 66;
constexpr double kAcross = 232;  // from box to box
constexpr double kDown = 108;    // from level to level
constexpr double kMargin = 24;
constexpr double kPadding = 10;
constexpr std::size_t kConditionCharacters = 27;
constexpr std::size_t kScoreCharacters = 17;

// Distinct in hue and in lightness.
constexpr const char* kColors[] = {"#3b6ea8", "#e08a3c", "#5b9f5b", "#b65a6f",
                                   "#7a68a6", "#c0a93c", "#4fa3a3", "#8a6d57"};

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '&':
        escaped += "&amp;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

// At most that many characters, not bytes.
std::string Shortened(const std::string& text, std::size_t characters) {
  std::size_t count = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if ((static_cast<unsigned char>(text[i]) & 0xC0U) == 0x80U) continue;
    if (++count > characters) return text.substr(0, i) + "\u2026";
  }
  return text;
}

class Picture {
 public:
  Picture(std::vector<DrawnNode> nodes, std::ostream& out) : fNodes(std::move(nodes)), fOut(out) {
    Place();
    ColorCategories();
    FindRange();
  }

  void Write() {
    int levels = 0;
    for (const DrawnNode& node : fNodes) levels = std::max(levels, node.level + 1);
    const double width = 2 * kMargin + std::max(0.0, fColumns - 1) * kAcross + kBoxWidth;
    const double height = 2 * kMargin + (levels - 1) * kDown + kBoxHeight + kLegend;
    fOut << R"(<svg xmlns="http://www.w3.org/2000/svg" width=")" << width << R"(" height=")" << height
         << R"(" viewBox="0 0 )" << width << ' ' << height << "\">\n"
         << "<style>text{font:12px system-ui,sans-serif;fill:#1f2933}.score{font-weight:600;font-size:14px}"
            ".muted{fill:#616e7c;font-size:11px}.box{fill:#fff;stroke:#9aa5b1}"
            ".edge{fill:none;stroke:#9aa5b1;stroke-width:1.5}</style>\n"
         << R"(<rect width="100%" height="100%" fill="#f5f7fa"/>)" << '\n';
    for (const DrawnNode& node : fNodes) WriteEdge(node);
    for (const DrawnNode& node : fNodes) WriteBox(node);
    WriteLegend(height);
    fOut << "</svg>\n";
  }

 private:
  static constexpr double kLegend = 30;

  // Leaves side by side, parents above the middle of their children.
  void Place() {
    for (DrawnNode& node : fNodes) {
      if (node.children.empty()) node.x = fColumns++;
    }
    for (std::size_t i = fNodes.size(); i-- > 0;) {
      DrawnNode& node = fNodes[i];
      if (node.children.empty()) continue;
      const DrawnNode& first = fNodes[static_cast<std::size_t>(node.children.front())];
      const DrawnNode& last = fNodes[static_cast<std::size_t>(node.children.back())];
      node.x = (first.x + last.x) / 2;
    }
  }

  void ColorCategories() {
    for (const DrawnNode& node : fNodes) {
      for (const Share& share : node.shares) {
        fColors.try_emplace(share.category, kColors[fColors.size() % std::size(kColors)]);
      }
    }
  }

  void FindRange() {
    for (const DrawnNode& node : fNodes) {
      const std::optional<double> number = ReadNumber(node.score);
      if (!number.has_value()) continue;
      fLowest = std::min(fLowest, *number);
      fHighest = std::max(fHighest, *number);
    }
  }

  static double Left(const DrawnNode& node) { return kMargin + node.x * kAcross; }
  static double Top(const DrawnNode& node) { return kMargin + node.level * kDown; }

  void WriteEdge(const DrawnNode& node) {
    if (node.parent < 0) return;
    const DrawnNode& parent = fNodes[static_cast<std::size_t>(node.parent)];
    const double fromX = Left(parent) + kBoxWidth / 2;
    const double fromY = Top(parent) + kBoxHeight;
    const double toX = Left(node) + kBoxWidth / 2;
    const double middle = (fromY + Top(node)) / 2;
    fOut << R"(<path class="edge" d="M)" << fromX << ' ' << fromY << " C" << fromX << ' ' << middle << ' '
         << toX << ' ' << middle << ' ' << toX << ' ' << Top(node) << "\"/>\n";
  }

  void WriteText(double x, double y, const char* style, const char* anchor, const std::string& text) {
    fOut << "<text x=\"" << x << "\" y=\"" << y << "\" class=\"" << style << "\" text-anchor=\"" << anchor
         << "\">" << Escaped(text) << "</text>";
  }

  // What does not fit into the box is cut off at its border.
  void WriteBox(const DrawnNode& node) {
    const double right = kBoxWidth - kPadding;
    fOut << "<svg x=\"" << Left(node) << "\" y=\"" << Top(node) << "\" width=\"" << kBoxWidth
         << "\" height=\"" << kBoxHeight << "\"><title>" << Escaped(TitleOf(node))
         << "</title><rect class=\"box\" x=\".5\" y=\".5\" width=\"" << kBoxWidth - 1 << "\" height=\""
         << kBoxHeight - 1 << "\" rx=\"6\"/>";
    WriteText(kPadding, 17, "plain", "start", Shortened(node.shortCondition, kConditionCharacters));
    WriteText(kPadding, 37, "score", "start", Shortened(WithFewDigits(node.score), kScoreCharacters));
    WriteText(right, 37, "muted", "end", node.records);
    WriteBar(node);
    fOut << "</svg>\n";
    if (node.hidden == 0) return;
    WriteText(Left(node) + kBoxWidth / 2, Top(node) + kBoxHeight + 15, "muted", "middle",
              HiddenText(node.hidden));
  }

  // The shares of the categories; of a number, where it lies between the lowest and the highest of the tree.
  void WriteBar(const DrawnNode& node) {
    constexpr double kWidth = kBoxWidth - 2 * kPadding;
    double x = kPadding;
    for (const Share& share : node.shares) {
      if (share.part <= 0) continue;
      WriteBarPart(x, share.part * kWidth, fColors[share.category]);
      x += share.part * kWidth;
    }
    const std::optional<double> number = ReadNumber(node.score);
    if (!node.shares.empty() || !number.has_value() || !(fHighest > fLowest)) return;
    WriteBarPart(x, kWidth, "#e4e7eb");
    WriteBarPart(x, std::max(2.0, kWidth * (*number - fLowest) / (fHighest - fLowest)), kColors[0]);
  }

  void WriteBarPart(double x, double width, const char* color) {
    fOut << "<rect x=\"" << x << "\" y=\"46\" width=\"" << width << "\" height=\"10\" fill=\"" << color
         << "\"/>";
  }

  static std::string TitleOf(const DrawnNode& node) {
    std::string title = node.condition + "\nscore: " + node.score;
    if (!node.records.empty()) title += "\nrecords: " + node.records;
    for (const Share& share : node.shares) {
      title += "\n" + share.category + ": ";
      AppendNumber(share.part, title);
    }
    return title;
  }

  void WriteLegend(double height) {
    double x = kMargin;
    for (const auto& [category, color] : fColors) {
      fOut << "<rect x=\"" << x << "\" y=\"" << height - kMargin << "\" width=\"11\" height=\"11\" fill=\""
           << color << "\"/>";
      const std::string text = Shortened(category, kScoreCharacters);
      WriteText(x + 16, height - kMargin + 10, "plain", "start", text);
      x += 36 + 7 * static_cast<double>(text.size());
    }
    fOut << '\n';
  }

  std::vector<DrawnNode> fNodes;
  std::ostream& fOut;
  double fColumns = 0;
  std::map<std::string, const char*> fColors;
  double fLowest = std::numeric_limits<double>::infinity();  // of the scores that are numbers
  double fHighest = -std::numeric_limits<double>::infinity();
};

}  // namespace

void DrawTreeAsText(const DOMElement& treeModel, int depth, std::ostream& out) {
  const auto indent = [&out](int level) {
    out << std::string(static_cast<std::size_t>(2 * std::min(level, kIndentedLevels)), ' ');
    if (level > kIndentedLevels) out << '[' << level << "] ";
  };
  for (const DrawnNode& node : ReadNodes(treeModel, depth)) {
    indent(node.level);
    out << node.condition << ": " << node.score;
    if (!node.records.empty()) out << " (" << node.records << ')';
    out << '\n';
    if (node.hidden == 0) continue;
    indent(node.level + 1);
    out << "... " << HiddenText(node.hidden) << '\n';
  }
}

void DrawTreeAsSvg(const DOMElement& treeModel, int depth, std::ostream& out) {
  Picture(ReadNodes(treeModel, depth), out).Write();
}

}  // namespace VeyraTool
