// Predicates from elements: which values they hold for, what they keep, what is refused.

#include "data/CaseRecord.h"
#include "data/DictVar.h"
#include "data/NumericValue.h"
#include "data/Shown.h"
#include "data/StringValue.h"
#include "predicate/CompoundPredicate.h"
#include "predicate/DiscreteSplit.h"
#include "predicate/SetPredicate.h"
#include "predicate/SimplePredicate.h"
#include "transform/TransformationDictionary.h"
#include "translate/Documents.h"

namespace {

using namespace KxVeyra_940;
using namespace veyra_tests;

const char* const kFields =
    "<DataDictionary numberOfFields='10'>"
    "<DataField name='x' optype='continuous' dataType='double'/>"
    "<DataField name='c' optype='categorical' dataType='string'><Value value='a'/><Value value='b'/>"
    "<Value value='d'/><Value value='m' property='missing'/></DataField>"
    "<DataField name='e' optype='categorical' dataType='string'><Value value=''/><Value "
    "value='a'/></DataField>"
    "<DataField name='n' optype='categorical' dataType='double'><Value value='0'/><Value value='1.5'/>"
    "<Value value='123456789'/></DataField>"
    "<DataField name='o' optype='ordinal' dataType='string'><Value value='low'/><Value value='mid'/>"
    "<Value value='high'/></DataField>"
    "<DataField name='r' optype='ordinal' dataType='integer'><Value value='3'/><Value value='1'/>"
    "<Value value='2'/></DataField>"
    "<DataField name='free' optype='categorical' dataType='string'/>"
    "<DataField name='count' optype='categorical' dataType='integer'/>"
    "<DataField name='rank' optype='ordinal' dataType='integer'/>"
    "<DataField name='q' optype='categorical' dataType='string'><Value value='\\'/><Value "
    "value='\"'/></DataField>"
    "</DataDictionary>";

std::string Simple(const std::string& field, const std::string& op, const char* value = nullptr) {
  return "<SimplePredicate field='" + field + "' operator='" + op + "'" +
         (value == nullptr ? std::string() : " value='" + std::string(value) + "'") + "/>";
}

std::string Set(const std::string& field, const std::string& op, const std::string& items,
                const std::string& type = "string") {
  return "<SimpleSetPredicate field='" + field + "' booleanOperator='" + op + "'><Array type='" + type +
         "'>" + items + "</Array></SimpleSetPredicate>";
}

std::string Compound(const std::string& op, const std::string& content) {
  return "<CompoundPredicate booleanOperator='" + op + "'>" + content + "</CompoundPredicate>";
}

// A dictionary and what was translated with it.
class Translated {
 public:
  explicit Translated(const std::string& predicates, bool encoders = false, bool ordinalAsScale = false,
                      const std::string& fields = kFields)
      : fDocument("<PMML>" + fields + predicates + "</PMML>") {
    fDictionary.reset(fTranslator.ParseDictionary(BaseTranslator::GetFirstChildElt(fDocument.Root()), false));
    if (encoders) {
      for (ScoreDictVar* var : fDictionary->GetScoreDictVars()) PMMLTranslator::SetupCatEncoder(var);
    }
    const auto* element =
        BaseTranslator::GetNextSiblingElt(BaseTranslator::GetFirstChildElt(fDocument.Root()));
    for (; element != nullptr; element = BaseTranslator::GetNextSiblingElt(element)) {
      fPredicates.push_back(Translate(*element, ordinalAsScale));
    }
  }

  const ScorePredicate* Last() const { return fPredicates.back().get(); }
  const ScoreDictionary& Dictionary() const { return *fDictionary; }

  // "T", "F", "U" or "S" for each of the values of the field; "-" is an empty slot.
  std::string Answers(const std::string& field, const std::vector<std::string>& values) const {
    std::string answers;
    for (const std::string& text : values) {
      CaseRecord record(1);
      const ScoreDictVar& variable = *fDictionary->GetVar(field);
      record.Add(field, text == "-" ? nullptr : variable.ToMyValue(text));
      answers += "TFUS"[Last()->Evaluate(&record, nullptr)];
    }
    return answers;
  }

 private:
  std::unique_ptr<ScorePredicate> Translate(const xercesc::DOMElement& element, bool ordinalAsScale) {
    ScorePredicate* made = nullptr;
    const std::string tag = PMMLTranslator::ToString(element.getTagName());
    if (tag == "SimplePredicate") {
      made = fTranslator.ParsePredicate(&element, fDictionary.get(), nullptr, ordinalAsScale);
    } else if (tag == "SimpleSetPredicate") {
      made = fTranslator.ParseSetPredicate(&element, fDictionary.get(), nullptr);
    } else {
      made = fTranslator.ParseCompoundPredicate(&element, fDictionary.get(), nullptr, ordinalAsScale);
    }
    return std::unique_ptr<ScorePredicate>(made);
  }

  Document fDocument;
  PlainTranslator fTranslator;
  std::unique_ptr<ScoreDictionary> fDictionary;
  std::vector<std::unique_ptr<ScorePredicate>> fPredicates;
};

// The library's own answers: of a categorical field the split holds the named value whatever the operator,
// and a missing value is never false.
TEST(Predicates, HoldForTheirValues) {
  const std::vector<std::string> numbers = {"4.9", "5", "5.000000000000001", "5.1", "-"};
  const std::vector<std::string> letters = {"a", "b", "d", "m", "z", "-"};
  const std::vector<std::string> levels = {"low", "mid", "high", "top", "-"};
  const std::vector<std::string> ranks = {"3", "1", "2", "7", "-"};
  const struct {
    std::string predicate;
    const char* field;
    std::vector<std::string> values;
    const char *plain, *encoded;
  } rows[] = {
      {Simple("x", "lessThan", "5"), "x", numbers, "TFFFU", "TFFFU"},
      {Simple("x", "lessOrEqual", "5"), "x", numbers, "TTTFU", "TTTFU"},
      {Simple("x", "greaterThan", "5"), "x", numbers, "FFTTU", "FFTTU"},
      {Simple("x", "greaterOrEqual", " 5 "), "x", numbers, "FTTTU", "FTTTU"},
      {Simple("x", "equal", "5"), "x", numbers, "FTTFU", "FTTFU"},
      {Simple("x", "notEqual", "5"), "x", numbers, "TFTTU", "TFTTU"},
      {Simple("x", "isMissing"), "x", numbers, "FFFFT", "FFFFT"},
      {Simple("x", "isNotMissing"), "x", numbers, "TTTTU", "TTTTU"},
      {Simple("x", "equal", ""), "x", numbers, "FFFFT", "FFFFT"},
      {Simple("x", "greaterThan", "1e999"), "x", numbers, "FFFFU", "FFFFU"},
      {Simple("c", "equal", "a"), "c", letters, "TFFUUU", "TFFUUU"},
      {Simple("c", "notEqual", "a"), "c", letters, "TFFUUU", "TFFUUU"},
      {Simple("c", "equal", "a  "), "c", letters, "TFFUUU", "TFFUUU"},
      {Simple("c", "isMissing"), "c", letters, "FFFTTT", "FFFTTT"},
      {Simple("c", "isNotMissing"), "c", letters, "TTTUUU", "TTTUUU"},
      {Simple("c", "equal", ""), "c", letters, "FFFTTT", "FFFTTT"},
      {Simple("e", "equal", ""), "e", {"", "a", "-"}, "TFU", "TFU"},
      {Simple("e", "notEqual", ""), "e", {"", "a", "-"}, "TFU", "TFU"},
      {Simple("n", "equal", "1.50"), "n", {"0", "1.5", "2", "-"}, "FTUU", "FTUU"},
      {Simple("o", "greaterThan", "mid"), "o", levels, "FFTFU", "FFTFU"},
      {Simple("o", "greaterOrEqual", "mid"), "o", levels, "FTTFU", "FTTFU"},
      {Simple("o", "lessThan", "mid"), "o", levels, "TFFFU", "TFFFU"},
      {Simple("o", "lessOrEqual", "mid"), "o", levels, "TTFFU", "TTFFU"},
      {Simple("o", "equal", "mid"), "o", levels, "FTFFU", "FTFFU"},
      {Simple("o", "notEqual", "mid"), "o", levels, "FTFFU", "FTFFU"},
      {Simple("o", "greaterThan", "high"), "o", levels, "FFFFU", "FFFFU"},
      {Simple("o", "lessThan", "low"), "o", levels, "FFFFU", "FFFFU"},
      {Simple("r", "lessThan", "2"), "r", ranks, "TTFFU", "TTFFU"},
      {Set("c", "isIn", "a d"), "c", letters, "TFTUUU", "TFTUUU"},
      {Set("c", "isNotIn", "a d"), "c", letters, "FTFUUU", "FTFUUU"},
      {Set("n", "isIn", "1.50 123456789", "real"), "n", {"0", "1.5", "123456789", "-"}, "FTTU", "FTTU"},
      {Set("n", "isNotIn", "1.50", "real"), "n", {"0", "1.5", "123456789", "-"}, "TFTU", "TFTU"},
      {Set("n", "isIn", "0", "string"), "n", {"0", "1.5"}, "TF", "TF"},
      {Set("o", "isIn", "low high"), "o", levels, "TFTUU", "TFTUU"},
      {Set("q", "isIn", "\\"), "q", {"\\", "\"", "-"}, "TFU", "TFU"},
      {Compound("or", Simple("x", "lessThan", "5") + Simple("x", "isMissing")), "x", numbers, "TFFFT",
       "TFFFT"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.predicate);
    EXPECT_EQ(Translated(row.predicate).Answers(row.field, row.values), row.plain);
    EXPECT_EQ(Translated(row.predicate, true).Answers(row.field, row.values), row.encoded);
  }
  EXPECT_EQ(Translated(Simple("r", "lessThan", "2"), false, true).Answers("r", ranks), "FTFFU");
}

// Fields without listed values learn them; a complement is fixed when it is read.
TEST(Predicates, AddCategoriesToOpenFields) {
  const std::string both = Simple("free", "equal", "p") + Set("free", "isIn", "q p");
  EXPECT_EQ(Labels(*Translated(both).Dictionary().GetVar("free")), "p=p q=q");
  const std::string all = both + Set("free", "isNotIn", "q") + Simple("free", "equal", "later");
  EXPECT_EQ(Labels(*Translated(all).Dictionary().GetVar("free")), "p=p q=q later=later");
  EXPECT_EQ(Translated(both + Set("free", "isNotIn", "q")).Answers("free", {"p", "q", "-"}), "TFU");
  EXPECT_EQ(Labels(*Translated(Set("count", "isIn", "7 8", "int")).Dictionary().GetVar("count")), "7=7 8=8");
  // In later predicates as in the first, and by both kinds; the complement is that of the moment.
  const std::string later = both + Set("free", "isNotIn", "q") + Set("free", "isIn", "r p s") +
                            Simple("free", "equal", "t") + Set("free", "isNotIn", "q");
  EXPECT_EQ(Translated(later).Answers("free", {"p", "q", "r", "s", "t", "-"}), "TFTTTU");
  EXPECT_EQ(Translated(later, true).Answers("free", {"p", "q", "r", "s", "t", "-"}), "TFTTTU");
}

TEST(Predicates, KeepWhatTheElementSays) {
  const auto simple = [](const ScorePredicate* predicate) {
    const auto& made = dynamic_cast<const SimplePredicate&>(*predicate);
    return std::to_string(made.GetPredicateOperator()) + made.GetPredValueByString() +
           (made.IsMissingValue() ? " missing" : "");
  };
  EXPECT_EQ(simple(Translated(Simple("c", "notEqual", "b")).Last()), "1b");
  EXPECT_EQ(simple(Translated(Simple("x", "equal", "")).Last()), "0 missing");
  EXPECT_EQ(simple(Translated(Simple("x", "isMissing")).Last()), "6 missing");
  const auto array = [](const std::string& predicate) {
    const Translated set(predicate, true);
    return dynamic_cast<const SetPredicate&>(*set.Last()).GetArrayData();
  };
  EXPECT_EQ(array(Set("r", "isIn", "1 3", "int")), (std::vector<double>{1, 3})) << "numbers";
  EXPECT_EQ(array(Set("c", "isIn", "d a")), (std::vector<double>{2, 0})) << "codes";
  EXPECT_EQ(array(Set("c", "isNotIn", "a")), (std::vector<double>{1, 2}));
  int start = 0;
  int end = 0;
  const Translated ordered(Simple("o", "lessOrEqual", "mid"));
  dynamic_cast<const DiscreteSplit&>(*ordered.Last()->GetSplit()).GetStartAndEndIndex(start, end);
  EXPECT_EQ(std::to_string(start) + " to " + std::to_string(end), "0 to 1");
}

TEST(Predicates, CompoundsKeepWhatCounts) {
  const std::string simple = Simple("x", "lessThan", "5");
  const std::pair<std::string, const char*> rows[] = {
      {Compound("and", "<True/>" + simple), "Simple Predicate: \n"},
      {Compound("and", "<True/>"), "Constant TRUE\n"},
      {Compound("or", "<True/>"), "Constant TRUE\n"},
      {Compound("or", "<False/>"), "Constant FALSE\n"},
      {Compound("and", "<False/>"), "Constant FALSE\n"},
      {Compound("or", "<False/>" + simple), "Simple Predicate: \n"},
      {Compound("and", "<False/>" + simple), "Compound Predicate: \n"},
      {Compound("xor", "<False/><True/>"), "Compound Predicate: \n"},
      {Compound("surrogate", simple + "<True/>"), "Compound Predicate: \n"},
      {Compound("and", Compound("or", simple)), "Simple Predicate: \n"},
      {Compound("or", Set("x", "isIn", "1", "real") + simple), "Simple Predicate: \n"},
      {Compound("or", "<Extension/>" + simple), "Simple Predicate: \n"},
  };
  for (const auto& [element, want] : rows) EXPECT_EQ(Shown(*Translated(element).Last()), want) << element;
  EXPECT_EQ(Translated(Compound("and", Set("x", "isIn", "1", "real"))).Last(), nullptr);
  EXPECT_EQ(Translated(Compound("xor", "<Extension/>")).Last(), nullptr);
  EXPECT_EQ(Translated(Set("x", "isIn", "1", "real")).Last(), nullptr);
  const Translated order(Compound("surrogate", simple + "<False/>" + simple));
  const auto& compound = dynamic_cast<const CompoundPredicate&>(*order.Last());
  EXPECT_EQ(compound.GetBoolOperator(), ScorePredicate::kSurrogate);
  EXPECT_EQ(compound.GetPredicates()[1]->GetPredType(), ScorePredicate::kFalsePredicate);
}

std::string Nested(int depth) {
  std::string start;
  std::string end;
  for (int i = 0; i < depth; ++i) {
    start += "<CompoundPredicate booleanOperator='or'>";
    end += "<True/></CompoundPredicate>";
  }
  return start + Simple("x", "lessThan", "5") + end;
}

TEST(Predicates, Refusals) {
  const auto array = [](const std::string& content) {
    return "<SimpleSetPredicate field='c' booleanOperator='isIn'>" + content + "</SimpleSetPredicate>";
  };
  const std::pair<std::string, const char*> rows[] = {
      {"<SimplePredicate operator='equal' value='1'/>", "260120 field|SimplePredicate"},
      {"<SimplePredicate field='x' value='1'/>", "260120 operator|SimplePredicate"},
      {Simple("nix", "equal", "1"), "260125 nix|DataDictionary|TransformationDictionary"},
      {Simple("x", "isMissing", "1"), "260212 value|isMissing"},
      {Simple("c", "isNotMissing", "a"), "260212 value|isNotMissing"},
      {Simple("x", "isMissing", ""), "260212 value|isMissing"},
      {Simple("x", "lessThan", ""), "260171 operator|equal"},
      {Simple("c", "notEqual", ""), "260171 operator|equal"},
      {Simple("x", "lessThan", "five"), "260151 five|double"},
      {Simple("x", "lessThan"), "260151 |double"},
      {Simple("x", "like", "5"), "260303 like|operator"},
      {Simple("c", "equal"), "260119 value"},
      {Simple("c", "equal", "z"), "260291 c"},
      {Simple("c", "equal", "m"), "260291 c"},
      {Simple("n", "equal", "zero"), "260291 n"},
      {Simple("count", "equal", "zero"), "260151 zero|double"},
      {Simple("o", "lessThan"), "260120 value|SimplePredicate"},
      {Simple("o", "lessThan", "top"), "260153 top|value|o"},
      {Simple("o", "like", "low"), "260153 like|operator|o"},
      {Simple("r", "lessThan", "two"), "260153 two|value|r"},
      {Simple("rank", "lessThan", "2"), "260126 rank"},
      {"<SimpleSetPredicate booleanOperator='isIn'/>", "260120 field|SimpleSetPredicate"},
      {Set("nix", "isIn", "a"), "260125 nix|DataDictionary|TransformationDictionary"},
      {"<SimpleSetPredicate field='c'/>", "260153 |operator|c"},
      {Set("c", "isBetween", "a"), "260153 isBetween|operator|c"},
      {Set("c", "isIn", "a", "text"), "260222 text|type"},
      {Set("c", "isIn", "a z"), "260152 z|value"},
      {Set("c", "isIn", "a", "int"), "260151 a|integer"},
      {Set("n", "isIn", "zero", "string"), "260152 zero|value"},
      {Set("c", "isNotIn", "a z"), "260158 z|c"},
      {Set("free", "isNotIn", "a"), "260158 a|free"},
      {array(""), "260115 Array|SimpleSetPredicate"},
      {array("<Array type='string'/>"), "260115 Array|SimpleSetPredicate"},
      {array("<Array type='string' n='2'>a</Array>"), "260241 2|n|1"},
      {Compound("nand", "<True/>"), "260153 nand|booleanOperator|CompoundPredicate"},
      {"<CompoundPredicate><True/></CompoundPredicate>", "260153 |booleanOperator|CompoundPredicate"},
      {Compound("or", Compound("and", Simple("x", "like", "5"))), "260303 like|operator"},
      {Nested(PMMLTranslator::kMaxCompoundDepth + 1), "260221 CompoundPredicate"},
      {Nested(100000), "260221 CompoundPredicate"},
      {Nested(PMMLTranslator::kMaxCompoundDepth), "nothing"},
  };
  for (const auto& [element, want] : rows) {
    SCOPED_TRACE(element.substr(0, 200));
    EXPECT_EQ(Refusal([text = element] { Translated{text}; }), want);
  }
  DictVar bare("bare", ScoreDictVar::STRING_VAR);
  bare.SetMLevel(ScoreDictVar::kNominal);
  DiscreteSplit split(&bare);
  const PlainTranslator translator;
  EXPECT_EQ(Refusal([&] { translator.SetDiscreteSplitValue(&bare, &split, u"a", 0); }), "260126 bare");
  const Document set(Set("bare", "isIn", "a b"));
  std::string setOperator;
  std::vector<double> codes;
  const auto handle = [&] {
    const std::unique_ptr<DiscreteSplit> made(
        translator.HandleArrayDiscreteSplit(set.Root(), &bare, setOperator, codes));
  };
  EXPECT_EQ(Refusal(handle), "260126 bare");
  EXPECT_EQ(bare.GetValueLabels(), nullptr);
  bare.AddScoreValueLabel(new StringValue("a"), "a");
  EXPECT_EQ(Refusal(handle), "260152 b|value");
}

TEST(Predicates, LookUpDerivedVariablesSecond) {
  const Document document(Simple("t", "lessThan", "5"));
  const PlainTranslator translator;
  const std::unique_ptr<ScoreDictionary> dictionary = ParseDictionary(kFields);
  TransformationDictionary transformations;
  transformations.AddVar("t", new DictVar("t", ScoreDictVar::kNUMERIC_VAR));
  const std::unique_ptr<ScorePredicate> predicate(
      translator.ParsePredicate(document.Root(), dictionary.get(), &transformations, false));
  EXPECT_EQ(predicate->GetSplit()->GetSplitVar(), transformations.GetVar("t"));
}

TEST(Predicates, RemoveComparesValues) {
  const std::unique_ptr<ScoreDictionary> dictionary = ParseDictionary(kFields);
  const PlainTranslator translator;
  using Texts = std::vector<std::string>;
  EXPECT_EQ(translator.Remove(dictionary->GetVar("n"), {"1.50", "none"}), (Texts{"0", "123456789"}));
  EXPECT_EQ(translator.Remove(dictionary->GetVar("c"), {"b  "}), (Texts{"a", "d"}));
  EXPECT_EQ(translator.Remove(dictionary->GetVar("free"), {"b"}), Texts());
  EXPECT_TRUE(PMMLTranslator::IsValidScoreValue(dictionary->GetVar("n"), "0.0"));
  EXPECT_FALSE(PMMLTranslator::IsValidScoreValue(dictionary->GetVar("n"), "none"));
  EXPECT_FALSE(PMMLTranslator::IsValidScoreValue(dictionary->GetVar("x"), "1"));
  dictionary->GetVar("x")->AddScoreValueLabel(new NumericValue(2.0), "two");
  EXPECT_FALSE(PMMLTranslator::IsValidScoreValue(dictionary->GetVar("x"), "1")) << "no labelled value";
  EXPECT_TRUE(PMMLTranslator::IsValidScoreValue(dictionary->GetVar("x"), "2.0"));
}

// Fields of many categories, whose splits share a list of them.
TEST(Predicates, HoldForManyCategories) {
  constexpr int kCount = 40;
  std::string fields = "<DataDictionary numberOfFields='3'>";
  for (const char* const field :
       {"name='s' optype='ordinal' dataType='string'", "name='i' optype='ordinal' dataType='integer'",
        "name='c' optype='categorical' dataType='string'"}) {
    fields += std::string("<DataField ") + field + ">";
    for (int i = 0; i < kCount; ++i) fields += "<Value value='" + std::to_string(kCount - i) + "'/>";
    fields += "</DataField>";
  }
  fields += "</DataDictionary>";
  const struct {
    std::string predicate;
    const char* field;
    bool (*holds)(int);
  } rows[] = {
      {Simple("s", "lessThan", "20"), "s", [](int i) { return i > 20; }},
      {Simple("s", "greaterOrEqual", "20"), "s", [](int i) { return i <= 20; }},
      {Simple("i", "lessOrEqual", "20.0"), "i", [](int i) { return i >= 20; }},
      {Simple("c", "isNotMissing"), "c", [](int) { return true; }},
      {Set("s", "isNotIn", "7 40 1"), "s", [](int i) { return i != 7 && i != 40 && i != 1; }},
      {Set("i", "isNotIn", "7 40 1", "int"), "i", [](int i) { return i != 7 && i != 40 && i != 1; }},
      {Set("c", "isNotIn", "7"), "c", [](int i) { return i != 7; }},
  };
  std::vector<std::string> values = {"-"};
  for (int i = 1; i <= kCount; ++i) values.push_back(std::to_string(i));
  for (const auto& row : rows) {
    std::string want = "U";
    std::vector<double> array;
    for (int i = 1; i <= kCount; ++i) want += row.holds(i) ? 'T' : 'F';
    for (int i = kCount; i >= 1; --i)
      if (row.holds(i)) array.push_back(*row.field == 'i' ? i : kCount - i);
    for (const bool encoders : {false, true}) {
      SCOPED_TRACE(row.predicate);
      // Sets of an ordinal field of numbers hold the numbers, and are asked for codes.
      if (encoders && *row.field == 'i' && row.predicate.starts_with("<SimpleSet")) continue;
      const Translated made(row.predicate, encoders, false, fields);
      EXPECT_EQ(made.Answers(row.field, values), want);
    }
    const Translated encoded(row.predicate, true, false, fields);
    const auto* const set = dynamic_cast<const SetPredicate*>(encoded.Last());
    if (set != nullptr) {
      EXPECT_EQ(set->GetArrayData(), array) << row.predicate;
    }
  }
}

}  // namespace
