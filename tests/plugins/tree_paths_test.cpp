// The array of a tree answers as its predicate objects do, to the last bit.

#include <bit>
#include <random>
#include <set>

#include "AllocationCounter.h"
#include "data/Range.h"
#include "plugins/Scoring.h"
#include "translate/Documents.h"
#include "tree/NodeTests.h"
#include "tree/TreeTranslator.h"

namespace {

using namespace VeyraTest;
using KxVeyra_940::Range;
using KxVeyra_940::Plugin::Bounds;
using KxVeyra_940::Plugin::NodeEvaluation;
using KxVeyra_940::Plugin::TreeTranslator;

constexpr std::uint64_t kSeed = 20;
constexpr int kDepth = 7;

// A random document of three numbers, two categorical fields and an ordinal one.
class RandomTree {
 public:
  RandomTree(std::uint64_t seed, const std::string& strategy) : fRandom(seed) {
    fText =
        "<PMML version='4.4'><DataDictionary numberOfFields='7'>"
        "<DataField name='x0' optype='continuous' dataType='double'/>"
        "<DataField name='x1' optype='continuous' dataType='double'/>"
        "<DataField name='x2' optype='continuous' dataType='double'/>"
        "<DataField name='c' optype='categorical' dataType='string'><Value value='a'/><Value value='b'/>"
        "<Value value='d'/><Value value='e'/></DataField>"
        "<DataField name='free' optype='categorical' dataType='string'/>"
        "<DataField name='o' optype='ordinal' dataType='integer'><Value value='3'/><Value value='1'/>"
        "<Value value='2'/></DataField>"
        "<DataField name='k' optype='categorical' dataType='string'><Value value='p'/><Value "
        "value='q'/></DataField>"
        "</DataDictionary><TreeModel functionName='classification' missingValuePenalty='0.5' "
        "noTrueChildStrategy='returnLastPrediction' missingValueStrategy='" +
        strategy +
        "'><MiningSchema><MiningField name='x0'/><MiningField name='x1'/><MiningField name='x2'/>"
        "<MiningField name='c' invalidValueTreatment='asIs'/><MiningField name='free'/>"
        "<MiningField name='o' invalidValueTreatment='asIs'/><MiningField name='k' usageType='target'/>"
        "</MiningSchema><Output><OutputField name='id' feature='entityId'/></Output>";
    AddNode("<True/>", kDepth);
    fText += "</TreeModel></PMML>";
  }

  const std::string& Text() const { return fText; }

  // The threshold of some comparison, or a number a step or a hair away from one.
  double NumberNearAThreshold() {
    const double threshold = fThresholds[Whole(fThresholds.size())];
    switch (Whole(6)) {
      case 0:
        return std::nextafter(threshold, 1e9);
      case 1:
        return std::nextafter(threshold, -1e9);
      case 2:
        return threshold * (1 + 2.22045e-14);
      case 3:
        return threshold * (1 - 2.22045e-14);
      case 4:
        return threshold + static_cast<double>(Whole(21)) - 10;
      default:
        return threshold;
    }
  }

  std::size_t Whole(std::size_t below) {
    return std::uniform_int_distribution<std::size_t>(0, below - 1)(fRandom);
  }

 private:
  template <std::size_t kCount>
  std::string OneOf(const char* const (&texts)[kCount]) {
    return texts[Whole(kCount)];
  }

  std::string Threshold() {
    const double threshold = Whole(8) == 0 ? 0 : std::uniform_real_distribution(-10.0, 10.0)(fRandom);
    fThresholds.push_back(threshold);
    char text[32];
    return std::string(text, std::to_chars(text, text + sizeof text, threshold).ptr);
  }

  std::string Simple(const std::string& field, const std::string& op, const std::string& value) {
    return "<SimplePredicate field='" + field + "' operator='" + op + "' value='" + value + "'/>";
  }

  std::string Predicate(int compounds) {
    static const char* const kOrders[] = {"lessThan",       "lessOrEqual", "greaterThan",
                                          "greaterOrEqual", "equal",       "notEqual"};
    static const char* const kEquals[] = {"equal", "notEqual"};
    static const char* const kNumbers[] = {"x0", "x1", "x2"};
    static const char* const kFields[] = {"x0", "x1", "x2", "c", "free", "o"};
    static const char* const kLetters[] = {"a", "b", "d", "e"};
    static const char* const kRanks[] = {"1", "2", "3"};
    static const char* const kMissing[] = {"isMissing", "isNotMissing"};
    static const char* const kSets[] = {"isIn", "isNotIn"};
    static const char* const kBooleans[] = {"or", "and", "xor", "surrogate"};
    switch (Whole(compounds > 0 ? 12 : 8)) {
      case 0:
        return "<SimplePredicate field='" + OneOf(kFields) + "' operator='" + OneOf(kMissing) + "'/>";
      case 1:
        return Simple("c", OneOf(kEquals), OneOf(kLetters));
      case 2:
        return Simple("free", OneOf(kEquals), OneOf(kLetters));
      case 3:
        return Simple("o", OneOf(kOrders), OneOf(kRanks));
      case 4:
        return "<SimpleSetPredicate field='" + std::string(Whole(2) == 0 ? "c" : "free") +
               "' booleanOperator='" + OneOf(kSets) + "'><Array type='string'>a " + OneOf(kLetters) +
               "</Array></SimpleSetPredicate>";
      case 5:
        return "<SimpleSetPredicate field='o' booleanOperator='" + OneOf(kSets) + "'><Array type='int'>" +
               OneOf(kRanks) + "</Array></SimpleSetPredicate>";
      case 6:
      case 7:
        return Simple(OneOf(kNumbers), OneOf(kOrders), Threshold());
      default:
        return "<CompoundPredicate booleanOperator='" + OneOf(kBooleans) + "'>" + Predicate(compounds - 1) +
               Predicate(compounds - 1) + "</CompoundPredicate>";
    }
  }

  void AddNode(const std::string& predicate, int depth) {
    const int id = fCount++;
    const std::string number = std::to_string(id);
    const std::size_t children = depth == 0 ? 0 : 2 + Whole(2);
    fText += "<Node id='" + number + "' score='" + (id % 2 == 0 ? "p" : "q") + "' recordCount='" +
             std::to_string(1 + id % 17) + "'";
    if (children > 0) fText += " defaultChild='" + std::to_string(id + 1) + "'";
    fText += ">" + predicate + "<ScoreDistribution value='p' recordCount='" + std::to_string(id % 5) +
             "'/><ScoreDistribution value='q' recordCount='" + std::to_string(1 + id % 3) + "'/>";
    for (std::size_t i = 0; i < children; ++i)
      AddNode(Predicate(2), depth - 1 - static_cast<int>(Whole(2)) * (depth > 1));
    fText += "</Node>";
  }

  std::mt19937_64 fRandom;
  std::vector<double> fThresholds{1};
  std::string fText;
  int fCount = 0;
};

std::unique_ptr<ScoreModel> Made(const veyra_tests::Document& document, NodeEvaluation evaluation) {
  TreeTranslator translator(evaluation);
  return std::unique_ptr<ScoreModel>(translator.ParseFromTree(document.Get(), std::string()));
}

void FillAtRandom(CaseRecord& record, RandomTree& tree) {
  static const char* const kLetters[] = {"a", "b", "d", "e", "z", "a "};
  for (int slot = 0; slot < record.Size(); ++slot) {
    record.Clear(slot);
    if (tree.Whole(4) == 0) continue;
    if (slot < 3) record.SetValue(slot, tree.NumberNearAThreshold());
    if (slot == 3 || slot == 4) record.SetText(slot, kLetters[tree.Whole(6)]);
    if (slot == 5) record.SetValue(slot, 1.0 + static_cast<double>(tree.Whole(4)));
  }
}

TEST(TreePaths, TheArrayAnswersAsThePredicatesDo) {
  for (const char* strategy :
       {"none", "lastPrediction", "nullPrediction", "defaultChild", "weightedConfidence", "aggregateNodes"}) {
    for (std::uint64_t seed = kSeed; seed < kSeed + 4; ++seed) {
      SCOPED_TRACE(std::string(strategy) + ", seed " + std::to_string(seed));
      RandomTree tree(seed, strategy);
      const veyra_tests::Document document(tree.Text());
      const std::unique_ptr<ScoreModel> array = Made(document, NodeEvaluation::kCompiled);
      const std::unique_ptr<ScoreModel> objects = Made(document, NodeEvaluation::kPredicates);
      CaseRecord record(6);
      for (const char* name : {"x0", "x1", "x2", "c", "free", "o"}) record.Add(name, nullptr);
      array->PrepareForCases(record);
      objects->PrepareForCases(record);
      const std::unique_ptr<ScoreResult> ofArray(array->NewResult());
      const std::unique_ptr<ScoreResult> ofObjects(objects->NewResult());
      std::set<std::string> answers;
      long allocations = 0;
      for (int i = 0; i < 2000; ++i) {
        FillAtRandom(record, tree);
        const AllocationCounter counter;
        array->Score(record, *ofArray);
        allocations += counter.Count();
        objects->Score(record, *ofObjects);
        answers.insert(Answer(*ofArray));
        ASSERT_EQ(Answer(*ofArray), Answer(*ofObjects)) << "case " << i;
        ASSERT_EQ(Probabilities(*ofArray), Probabilities(*ofObjects)) << "case " << i;
      }
      EXPECT_GT(answers.size(), 1U);
      EXPECT_EQ(allocations, 0);
    }
  }
}

TEST(TreePaths, BoundsAreThoseOfTheRange) {
  constexpr double kInfinity = NumericValue::gInfinity;
  for (const double value : {5.0, -5.0, 1.0, 0.0, 0.1, 1e300, -1e-300, 4.9e-324, 1.7976931348623157e308}) {
    const Range ranges[] = {{-kInfinity, value, false, false},
                            {-kInfinity, value, false, true},
                            {value, kInfinity, false, false},
                            {value, kInfinity, true, false},
                            {value, value, true, true}};
    for (const Range& range : ranges) {
      const Bounds bounds = KxVeyra_940::Plugin::EffectiveBounds(range);
      double number = value;
      for (int i = 0; i < 400; ++i) number = std::nextafter(number, -kInfinity);
      for (int i = 0; i < 800; ++i) {
        number = std::nextafter(number, kInfinity);
        if (std::isinf(number) || number == NumericValue::gSysmisValue) continue;
        ASSERT_EQ(bounds.low <= number && number <= bounds.high, range.IsInRange(number))
            << std::hexfloat << value << ' ' << number << ' ' << range.GetLowEnd() << range.GetHighEnd();
      }
    }
  }
}

}  // namespace
