// Tree documents of any size, made from random numbers with a fixed seed, with the same tree as an array.

#ifndef VEYRA_BENCH_TREEDOCUMENT_H_
#define VEYRA_BENCH_TREEDOCUMENT_H_

#include <charconv>
#include <random>
#include <string>
#include <vector>

namespace VeyraBench {

constexpr std::size_t kTreeFields = 20;

class TreeDocument {
 public:
  struct Node {
    double threshold;
    int field;  // -1: a leaf
    int left;   // value <= threshold; the right one stands behind it
    double score;
  };

  // A regression tree of that many leaves, split at random over numbers between -1 and 1.  With `hasCounts`
  // nodes carry ids and record counts, as most documents have them.
  TreeDocument(int leaves, bool hasCounts) : fHasCounts(hasCounts) {
    fText =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<PMML version=\"4.4\" "
        "xmlns=\"http://www.dmg.org/PMML-4_4\">\n"
        "  <Header copyright=\"random numbers\"/>\n  <DataDictionary numberOfFields=\"21\">\n";
    for (std::size_t i = 0; i < kTreeFields; ++i) {
      fText += "    <DataField name=\"" + FieldName(i) + "\" optype=\"continuous\" dataType=\"double\"/>\n";
    }
    fText +=
        "    <DataField name=\"answer\" optype=\"continuous\" dataType=\"double\"/>\n  </DataDictionary>\n"
        "  <TreeModel modelName=\"random\" functionName=\"regression\" splitCharacteristic=\"binarySplit\">\n"
        "    <MiningSchema>\n";
    for (std::size_t i = 0; i < kTreeFields; ++i)
      fText += "      <MiningField name=\"" + FieldName(i) + "\"/>\n";
    fText += "      <MiningField name=\"answer\" usageType=\"target\"/>\n    </MiningSchema>\n";
    std::vector<Span> spans(kTreeFields, {-1, 1});
    fNodes.emplace_back();
    Add(0, leaves, "<True/>", spans, 2);
    fText += "  </TreeModel>\n</PMML>\n";
  }

  const std::string& Text() const { return fText; }
  const std::vector<Node>& Nodes() const { return fNodes; }
  static std::string FieldName(std::size_t field) { return "measure " + std::to_string(field); }
  static std::vector<std::string> FieldNames() {
    std::vector<std::string> names;
    for (std::size_t i = 0; i < kTreeFields; ++i) names.push_back(FieldName(i));
    return names;
  }

 private:
  struct Span {
    double low;
    double high;
  };

  static std::string Text(double number) {
    char text[32];
    return {text, std::to_chars(text, text + sizeof text, number).ptr};
  }

  void Add(int node, int leaves, const std::string& predicate, std::vector<Span>& spans, std::size_t depth) {
    const auto place = static_cast<std::size_t>(node);
    const double score = std::uniform_real_distribution(0.0, 100.0)(fRandom);
    fNodes[place] = {0, -1, -1, score};
    const std::string indent(2 * std::min<std::size_t>(depth, 10), ' ');
    fText += indent + "<Node ";
    if (fHasCounts)
      fText += "id=\"" + std::to_string(++fCount) + "\" recordCount=\"" + std::to_string(leaves) + "\" ";
    fText += "score=\"" + Text(score) + "\">\n" + indent + "  " + predicate + "\n";
    if (leaves > 1) {
      const auto field = std::uniform_int_distribution<std::size_t>(0, kTreeFields - 1)(fRandom);
      const Span span = spans[field];
      const double part = std::uniform_real_distribution(0.35, 0.65)(fRandom);
      const double threshold = span.low + part * (span.high - span.low);
      const int left = static_cast<int>(fNodes.size());
      fNodes.resize(fNodes.size() + 2);
      fNodes[place].threshold = threshold;
      fNodes[place].field = static_cast<int>(field);
      fNodes[place].left = left;
      const int leftLeaves = std::max(1, std::min(leaves - 1, static_cast<int>(part * leaves)));
      const std::string start = "<SimplePredicate field=\"" + FieldName(field) + "\" operator=\"";
      const std::string end = "\" value=\"" + Text(threshold) + "\"/>";
      spans[field] = {span.low, threshold};
      Add(left, leftLeaves, start + "lessOrEqual" + end, spans, depth + 1);
      spans[field] = {threshold, span.high};
      Add(left + 1, leaves - leftLeaves, start + "greaterThan" + end, spans, depth + 1);
      spans[field] = span;
    }
    fText += indent + "</Node>\n";
  }

  bool fHasCounts;
  std::mt19937_64 fRandom{20};
  std::vector<Node> fNodes;
  std::string fText;
  int fCount = 0;
};

}  // namespace VeyraBench

#endif  // VEYRA_BENCH_TREEDOCUMENT_H_
