#include "data/CaseRecord.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <set>

#include "AllocationCounter.h"
#include "data/CountedValue.h"
#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/Shown.h"
#include "data/StringValue.h"

namespace KxVeyra_940 {
namespace {

using Names = std::vector<std::string>;

// Slots: 0 "n" a number, 1 "t" a text, 2 "d" a date, 3 "e" empty.
CaseRecord MakeRecord() {
  CaseRecord record(4);
  record.Add("n", new NumericValue(1.0));
  record.Add("t", new StringValue("abc"));
  record.Add("d", new DateTimeValue(1.0, ScoreDictVar::kDateDaysSince1970));
  record.Add("e", nullptr);
  return record;
}

std::string ValueOf(const CaseRecord& record, const std::string& name) {
  return record.Get(name) == nullptr ? "empty" : record.Get(name)->GetString();
}

TEST(CaseRecord, ASlotKeepsItsKind) {
  const struct {
    const char* what;
    int slot;
    bool number, date, text, missing;
  } kRows[] = {
      {"a number", 0, true, false, false, true}, {"a text", 1, false, false, true, true},
      {"a date", 2, false, true, false, true},   {"an empty slot", 3, true, true, true, false},
      {"below", -1, false, false, false, false}, {"above", 4, false, false, false, false},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    const Names names = {"n", "t", "d", "e"};
    const std::string name =
        row.slot >= 0 && row.slot < 4 ? names[static_cast<std::size_t>(row.slot)] : "none";
    const std::string before = ValueOf(MakeRecord(), name);
    const auto check = [&](const auto& slot) {
      CaseRecord a = MakeRecord(), b = MakeRecord(), c = MakeRecord(), d = MakeRecord();
      EXPECT_EQ(a.SetValue(slot, 7.0), row.number);
      EXPECT_EQ(b.SetValue(slot, 7.0, ScoreDictVar::kDateDaysSince1970), row.date);
      EXPECT_EQ(c.SetValue(slot, "text"), row.text);
      EXPECT_EQ(d.SetMissingValue(slot), row.missing);
      EXPECT_EQ(ValueOf(a, name), row.number ? "7" : before);
      EXPECT_EQ(ValueOf(b, name), row.date ? "1970-1-8" : before);
      EXPECT_EQ(ValueOf(c, name), row.text ? "text" : before);
      EXPECT_EQ(ValueOf(d, name), row.missing ? (name == "t" ? "" : "Undefined") : before);
    };
    check(name);
    check(row.slot);
  }
}

TEST(CaseRecord, ATextKeepsItsDeclaredLengthUnlessSetText) {
  CaseRecord record = MakeRecord();
  const auto length = [&record] { return static_cast<StringValue*>(record.Get("t"))->GetLength(); };
  EXPECT_TRUE(record.SetValue("t", "longer") && length() == 3);
  EXPECT_TRUE(record.SetValue(1, "longest") && length() == 3);
  EXPECT_TRUE(record.SetText(1, "longer") && length() == 6);
  EXPECT_TRUE(record.SetMissingValue("t") && length() == 0);
  record.Remove("t");
  EXPECT_TRUE(record.SetValue("t", "new") && length() == 3);
}

TEST(CaseRecord, NamesAndSlots) {
  CaseRecord record;
  record.SetUpNameIndexMap(Names{"x", "y"});
  EXPECT_EQ(record.Size(), 0);
  EXPECT_TRUE(record.HasMap());
  record.Add("b", new NumericValue(2.0));
  record.Add("a", new NumericValue(1.0));
  EXPECT_TRUE(record.GetIndex("b") == 0 && record.GetIndex("a") == 1 && record.GetIndex("c") == -1);
  EXPECT_EQ(record.GetVarNames(false), (Names{"a", "b"}));
  EXPECT_EQ(record.GetVarNames(true), (Names{"b", "a"}));
  record.Remove("a");
  record.Remove("unknown");
  EXPECT_EQ(record.Get("a"), nullptr);
  EXPECT_EQ(record.GetIndex("a"), 1);
  EXPECT_EQ(record.GetAllValues()[1], nullptr);
  EXPECT_EQ(Shown(record),
            "Start ScoreCaseRecord Display:\nVar Name: a\nVar Name: b; Var Value: 2\nEnd of ScoreCaseRecord "
            "Display.\n\n");
  EXPECT_FALSE(record.SetMissingValue("a"));
  // An empty slot takes any kind, not only the one that it held.
  EXPECT_TRUE(record.SetValue("a", "text"));
  EXPECT_EQ(record.Get(1)->GetType(), ScoreValue::kStringValueType);
}

TEST(CaseRecord, OwnsItsValues) {
  const NoneSurvives check;
  CaseRecord record;
  auto* const first = new CountedValue(1);
  record.Add("a", first);
  record.Add("a", first);  // the same object again
  record.Add("b", first);  // an object is in one slot only
  EXPECT_EQ(record.Get("a"), first);
  EXPECT_NE(record.Get("b"), first);
  EXPECT_EQ(record.Get("b")->GetDouble(), 1);
  EXPECT_EQ(CountedValue::gLiving, 2);
  record.Add("a", new CountedValue(2));
  EXPECT_EQ(CountedValue::gLiving, 2);
  record.Add("b", nullptr);
  EXPECT_EQ(CountedValue::gLiving, 1);

  CaseRecord copy(record);
  copy = record;
  copy = *&copy;
  EXPECT_EQ(CountedValue::gLiving, 2);
  EXPECT_EQ(copy.Get("a")->GetDouble(), 2);
  EXPECT_EQ(copy.Get("b"), nullptr);
  EXPECT_EQ(copy.GetIndex("b"), 1);
  copy.Clear(0);
  copy.Clear(0);
  copy.Clear(7);
  EXPECT_EQ(CountedValue::gLiving, 1) << "a host's value is not kept for the next one";
  EXPECT_TRUE(copy.SetValue("a", "another kind"));
  record.Remove("a");
  EXPECT_EQ(CountedValue::gLiving, 0);
  EXPECT_TRUE(record.SetValue("a", 5.0));
  EXPECT_EQ(dynamic_cast<const CountedValue*>(record.Get("a")), nullptr);
}

// Whatever is added where, no two slots share an object, none is deleted twice and none is lost.
TEST(CaseRecord, AnObjectIsInOneSlotOnly) {
  constexpr unsigned kSeed = 815;
  std::mt19937 random(kSeed);
  const NoneSurvives check;
  CaseRecord record;
  for (int step = 0; step < 20000; ++step) {
    SCOPED_TRACE(testing::Message() << "seed " << kSeed << ", step " << step);
    const std::string name = "column " + std::to_string(random() % 50);
    const int other = static_cast<int>(random() % 50);
    switch (random() % 8) {
      case 0:
        record.SetValue(name, 1.0);
        break;
      case 1:
        if (random() % 2 == 0) record.SetValue(name, "text");
        break;
      case 2: {
        record.Remove(name);
        record.SetValue(name, 2.0);
        ScoreValue* const parked = record.Get(name);
        record.Remove(name);  // which keeps the object for the next number
        record.Add("elsewhere", parked);
        EXPECT_TRUE(parked == nullptr || record.Get("elsewhere") != parked);
        break;
      }
      case 3:
        record.Add(name, record.Get(other));
        break;
      case 4:
        record.Add(name, nullptr);
        break;
      case 5:
        if (random() % 20 == 0) record = CaseRecord(record);
        break;
      default:
        record.Add(name, new CountedValue(3));
    }
    std::set<const ScoreValue*> objects;
    int counted = 0;
    for (const ScoreValue* value : record.GetAllValues()) {
      if (value == nullptr) continue;
      ASSERT_TRUE(objects.insert(value).second);
      if (dynamic_cast<const CountedValue*>(value) != nullptr) ++counted;
    }
    ASSERT_EQ(CountedValue::gLiving, counted);
  }
}

TEST(CaseRecord, AllocatesNothingOnceWarm) {
  CaseRecord record = MakeRecord();
  const std::string longText(300, 'x');
  const std::string name = "t";
  const auto oneCase = [&] {
    record.SetValue(0, 5.0);
    record.SetValue(name, longText);
    record.SetText(1, "a text that is too long for the small buffer");
    record.SetValue(2, 5.0, ScoreDictVar::kDateTime);
    for (int slot = 0; slot < 3; ++slot) record.Clear(slot);
    record.Remove(name);
    EXPECT_TRUE(record.SetValue(0, 6.0) && record.SetText(1, longText));
    EXPECT_TRUE(record.SetValue(2, 6.0, ScoreDictVar::kDate) && record.SetMissingValue(1));
  };
  oneCase();
  const AllocationCounter counter;
  oneCase();
  EXPECT_EQ(counter.Count(), 0);
}

}  // namespace
}  // namespace KxVeyra_940
