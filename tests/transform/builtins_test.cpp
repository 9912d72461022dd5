// The built-in functions as hosts call them, and the trees and tables that expressions are kept in.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <sstream>

#include "data/CaseRecord.h"
#include "data/CountedValue.h"
#include "data/DateTimeValue.h"
#include "data/DictVar.h"
#include "transform/FunctionTreeImp.h"
#include "transform/InlineTable.h"
#include "transform/TransformVar.h"
#include "transform/TransformationDictionary.h"

namespace KxVeyra_940 {
namespace {

using T = TransformationDictionary;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kMissing = NumericValue::gSysmisValue;

TEST(BuiltIns, AnswerWhatIsMissingAndOutsideTheirDomain) {
  const std::pair<double, double> rows[] = {
      {T::Plus(1, kMissing), kMissing},
      {T::Plus({1, 2, 3}), kMissing},
      {T::Minus({3, 1}), 2},
      {T::Divided({1, 0}), kMissing},
      {T::Pow(0.0, 0), 1},
      {T::Pow(kMissing, 0), 1},
      {T::Pow(2, 0), 1},
      {T::Pow(kMissing, 2), kMissing},
      {T::Sqrt(-1), kMissing},
      {T::Ln(0), kMissing},
      {T::Exp(709.5), kMissing},
      {T::Exp(-708), 0},
      {T::Trunc(2147483647.0), kMissing},
      {T::Trunc(-2147483648.0), kMissing},
      {T::Trunc(std::nan("")), kMissing},
      {T::Mod(7, 0), kMissing},
      {T::Mod(-7, 3), -1},
      {T::Rnd(2.5), 3},
      {T::Rnd(-2.5), -3},
      {T::Rnd(0.49999), 0},
      {T::Max({kMissing, kMissing}), kMissing},
      {T::Max({-std::numeric_limits<double>::max() / 2}), -std::numeric_limits<double>::max() / 2},
      {T::Min({kMissing, 3, -2}), -2},
      {T::MedianOperator({3, kMissing, 1}), 2},
      {T::MedianOperator({kNaN, 1, 2}), kMissing},
      {T::MedianOperator({1, 2, kNaN}), kMissing},
      {T::Erf({kNaN}), kMissing},
      {T::stdNormalPDF({kNaN}), kMissing},
      {T::PdfNormal({kNaN, 0, 1}), kMissing},
      {T::CdfNormal({1, kNaN, 1}), kMissing},
      {T::Sd({5}), kMissing},
      {T::Variance({2, 4}), 2},
      {T::Sd({1e200, -1e200}), std::sqrt(2.0) * 1e200},
      {T::ProductOperator({}), kMissing},
      {T::lessThan({1, 2, 3}), 0},
      {T::lessThan({kMissing, 2}), 1},
      {T::AndOperator({}), 0},
      {T::AndOperator({1, std::nan("")}), 1},
      {T::OrOperator({0, 0}), 0},
      {T::NotOperator({0, 0}), 0},
      {T::PdfNormal({0, 0, 0}), kMissing},
      {T::PdfNormal({38, 0, 1}), 0},
      {T::PdfNormal({3, 3, 2}), 0.3989422804014327 / 2},
      {T::stdNormalCDF({0, 0}), kMissing},
      {T::Erf({0}), 0},
      {T::IdfNormal({0.5, 3, 2}), 3},
      {T::Matches({"abc", "b"}), 1},
      {T::OutlierHandle(kMissing, 2, 0, 1, 1, 1), kMissing},
      {T::OutlierHandle(-9, 2, 0, 2, 3, 4), -3},
      {T::OutlierHandle(-9, 0, 0, 2, 3, 4), kMissing},
  };
  int row = 0;
  for (const auto& [answer, expected] : rows) EXPECT_DOUBLE_EQ(answer, expected) << "row " << row++;
}

TEST(BuiltIns, ComparisonsOfValuesDeleteThemOnEveryPath) {
  const auto make = [](double number) { return new CountedValue(number); };
  std::vector<ScoreValue*> values;
  const auto check = [&](double answer, double expected) {
    EXPECT_EQ(answer, expected);
    EXPECT_TRUE(values.empty());
    EXPECT_EQ(CountedValue::gLiving, 0);
  };
  values = {make(1), make(1)};
  check(T::equal(values), 1);
  values = {make(1)};
  check(T::equal(values), 0);
  values = {make(1), new StringValue("1")};
  check(T::notEqual(values), 1);
  values = {make(1), make(2)};
  check(T::isIn(values, make(2)), 1);
  values = {make(1), make(2)};
  check(T::isNotIn(values, nullptr), 1);
}

TEST(BuiltIns, TextsReportTheirLengths) {
  StringValue text("  aBc  ");
  text.SetLength(10);
  int length = 0;
  EXPECT_EQ(T::Ltrim(&text, length), "aBc  ");
  EXPECT_EQ(length, 8);
  EXPECT_EQ(T::Rtrim(&text, length), "  aBc");
  EXPECT_EQ(length, 5);
  EXPECT_EQ(T::ToUpperCase(&text, length), "  ABC  ");
  EXPECT_EQ(length, 10);
  const StringValue letters("abcdef");
  EXPECT_EQ(T::Substring(&letters, 3, length), "cdef");
  EXPECT_EQ(length, 4);
  EXPECT_EQ(T::Substring(&letters, 6, length), "");
  EXPECT_EQ(T::Substring(&letters, -1, length), "");
  EXPECT_EQ(T::Substring_unicode(&letters, 2, 10, length), "bcdef");
  EXPECT_EQ(T::Substring_unicode(&letters, 2, std::numeric_limits<int>::max(), length), "bcdef");
  EXPECT_EQ(T::Concat({"ab", "cde"}, {4, 2}, length), "ab  cd");
  EXPECT_EQ(length, 6);
  EXPECT_EQ(T::Replace({"banana", "a(n)", "$1$1"}, length), "bnnnna");
  EXPECT_EQ(T::Replace({"banana", "a", "$9"}, length), "banana");
}

FunctionTreeImp* Node(const std::string& id, bool allowsChildren = true) {
  auto* const node = new FunctionTreeImp(allowsChildren);
  ApplyNodeStats stats;
  stats.SetNodeID(id);
  node->SetNodeStats(stats);
  return node;
}

std::string IDs(FunctionTree& node) {
  std::string ids;
  for (const FunctionTree* child : node.Children())
    ids += child == nullptr ? "-" : child->GetNodeStats().GetNodeID();
  return ids;
}

TEST(FunctionTree, InsertsMovesAndRemoves) {
  const std::unique_ptr<FunctionTreeImp> root(Node("r")), other(Node("o"));
  FunctionTreeImp* const a = Node("a");
  root->Add(a);
  root->Add(Node("b"));
  root->Insert(Node("c"), 0);
  EXPECT_EQ(IDs(*root), "abc");
  root->Add(a);
  EXPECT_EQ(IDs(*root), "bca");
  a->Add(root.get());
  EXPECT_TRUE(a->IsLeaf());
  other->Add(a);
  EXPECT_EQ(IDs(*root) + " " + IDs(*other), "bc a");
  const std::unique_ptr<FunctionTreeImp> closed(Node("l", false)), refused(Node("x"));
  closed->Add(refused.get());
  EXPECT_TRUE(closed->IsLeaf());

  root->Add(Node("b"));
  root->Remove(0);
  EXPECT_EQ(IDs(*root), "-c-");
  EXPECT_EQ(root->GetChildAt(0), nullptr);
  root->Remove(7);
  const std::unique_ptr<FunctionTreeImp> twin(Node("c"));
  EXPECT_EQ(root->GetIndex(twin.get()), 1);
  root->Remove(twin.get());
  EXPECT_EQ(IDs(*root), "-c-");
  root->SetAllowsChildren(false);
  EXPECT_EQ(IDs(*root), "---");
}

TEST(FunctionTree, WalksAroundEmptyPlaces) {
  const std::unique_ptr<FunctionTreeImp> root(Node("r"));
  FunctionTreeImp* const a = Node("a");
  FunctionTreeImp* const c = Node("c");
  root->Add(a);
  root->Add(Node("b"));
  root->Add(c);
  a->Add(Node("d"));
  c->Add(Node("e"));
  c->Add(Node("f"));
  root->Remove(1);
  const auto walk = [&](const FunctionTree* from, const FunctionTree* (FunctionTreeImp::*step)() const) {
    std::string ids;
    for (const FunctionTree* node = from; node != nullptr;
         node = (static_cast<const FunctionTreeImp*>(node)->*step)())
      ids += node->GetNodeStats().GetNodeID();
    return ids;
  };
  EXPECT_EQ(walk(root.get(), &FunctionTreeImp::GetNextNode), "radcef");
  EXPECT_EQ(walk(root->GetLastLeaf(), &FunctionTreeImp::GetPreviousNode), "fecdar");
  EXPECT_EQ(walk(root->GetFirstLeaf(), &FunctionTreeImp::GetNextLeaf), "def");
  EXPECT_EQ(walk(root->GetLastLeaf(), &FunctionTreeImp::GetPreviousLeaf), "fed");
  EXPECT_EQ(a->GetNextSibling(), c);
  EXPECT_EQ(root->GetChildBefore(c), a);
  EXPECT_EQ(root->GetFirstLeaf()->GetRoot(), root.get());
  EXPECT_TRUE(a->IsNodeAncestor(root.get()) && root->IsNodeDescendant(a) && a->IsNodeSibling(c));
  const std::unique_ptr<FunctionTree> copy(root->Clone());
  EXPECT_EQ(IDs(*copy), "ac");
}

TEST(FunctionTree, DepthNeedsNoStack) {
  constexpr int kDepth = 200000;
  // Joined from the leaf upwards, for an insertion asks all ancestors.
  std::unique_ptr<FunctionTreeImp> chain(Node("c"));
  for (int i = 0; i < kDepth; ++i) {
    std::unique_ptr<FunctionTreeImp> above(Node("c"));
    above->Add(chain.release());
    chain = std::move(above);
  }
  const std::unique_ptr<FunctionTree> copy(chain->Clone());
  EXPECT_EQ(static_cast<FunctionTreeImp&>(*copy).GetLastLeaf()->GetChildCount(), 0);
}

TEST(InlineTable, KeysAreComparedByPosition) {
  DictVar number("n", ScoreDictVar::kNUMERIC_VAR), text("s", ScoreDictVar::STRING_VAR),
      date("d", ScoreDictVar::kDATETIME_VAR);
  InlineTable table;
  for (const DictVar* field : {&number, &text, &date}) table.AppendInputField(field);
  const auto day = [](double n) { return new DateTimeValue(n, ScoreDictVar::kDateDaysSince1970); };
  const auto add = [&](double n, const char* s, double output) {
    table.AddInputOutput({new NumericValue(n), new StringValue(s), day(1)}, new NumericValue(output));
  };
  add(1, "a", 10);
  add(1, "b", 20);
  add(1 + 1e-15, "a", 99);
  add(kMissing, "a", 98);
  add(std::nan(""), "b", 97);
  add(2, "a", 30);
  EXPECT_EQ(table.GetRowCount(), 3);

  struct Row {
    double n;
    const char* s;
    const char* expected;
    int info;
  };
  CaseRecord record(3);
  for (const char* name : {"n", "s", "d"}) record.Add(name, nullptr);
  record.Add("d", day(77));  // another date, which is not looked at
  for (const Row& row :
       {Row{1, "b", "20", 0}, Row{1, "a ", "10", 0}, Row{2, "b", "none", 2}, Row{3, "a", "none", 2},
        Row{std::nan(""), "a", "none", 2}, Row{kMissing, "a", "none", 1}}) {
    record.SetValue("n", row.n);
    record.SetValue("s", row.s);
    const ScoreValue* const output = table.getValue(&record, nullptr, nullptr, nullptr);
    EXPECT_EQ(output == nullptr ? "none" : output->GetString(), row.expected) << row.n << row.s;
    EXPECT_EQ(table.GetInfoCode(), row.info) << row.n << row.s;
  }
  const std::unique_ptr<InlineTable> copy(table.Clone());
  record.SetValue("n", 2.0);
  EXPECT_EQ(copy->getValue(&record, nullptr, nullptr, nullptr)->GetString(), "30");
}

TEST(MapValues, WithoutATableAnswersForItsOnlyField) {
  DictVar field("x", ScoreDictVar::kNUMERIC_VAR);
  TransformVar derived("v", ScoreDictVar::kNUMERIC_VAR);
  MapValues map(&derived);
  CaseRecord record(1);
  record.Add("x", nullptr);
  map.SetDefaultValue(new NumericValue(8));
  EXPECT_EQ(map.getValue(&record, nullptr, nullptr)->GetString(), "8");
  map.SetMapMissingTo(new NumericValue(7));
  map.AddRefVar(&field);
  EXPECT_EQ(map.getValue(&record, nullptr, nullptr)->GetString(), "7");
  record.SetValue("x", 5.0);
  EXPECT_EQ(map.getValue(&record, nullptr, nullptr)->GetString(), "5");
  map.AddRefVar(&field);
  EXPECT_EQ(map.getValue(&record, nullptr, nullptr), nullptr);
}

}  // namespace
}  // namespace KxVeyra_940
