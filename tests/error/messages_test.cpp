// The formatter and the exception: ids and arguments in, texts out.

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

#include "error/ProcessState.h"
#include "error/Raise.h"
#include "veyra/KxStatus.h"
#include "veyra/VYException.h"

namespace {

using namespace KxVeyra_940;
using Arguments = std::vector<std::string>;

TEST(Formatter, FillsPlaceholders) {
  const struct {
    const char* what;
    int id;
    Arguments arguments;
    const char* want;
  } kRows[] = {
      {"doubled apostrophes read as one", 260103, {"a.xml"}, "Could not open file: 'a.xml'."},
      {"two placeholders", 260120, {"a", "b"}, "Missing the attribute 'a' of 'b'."},
      {"a missing argument leaves its placeholder", 260120, {"a"}, "Missing the attribute 'a' of '{1}'."},
      {"without arguments the template stays", 260103, {}, "Could not open file: ''{0}''."},
      {"an apostrophe that opens only", 260177, {"a", "b"}, "Invalid node 'a, expect 'b'."},
      {"six placeholders",
       260252,
       {"1", "2", "3", "4", "5", "6"},
       "The value: '1' of attribute '2' in '3' does not match the number : '4' of '5' in '6'."},
      {"arguments are no patterns", 260114, {"{0}'x'"}, "Missing node: '{0}'x''."},
      {"UTF-8 passes", 260114, {"größe\xF0\x9F\x98\x80"}, "Missing node: 'größe\xF0\x9F\x98\x80'."},
      {"ill-formed UTF-8 is replaced", 260114, {"a\xFF"}, "Missing node: 'a\xEF\xBF\xBD'."},
      {"more arguments than placeholders", 260114, {"a", "b"}, "Missing node: 'a'."},
      {"a text without placeholders", 260101, {"a"}, "Unexpected error."},
      {"an unknown id", 260136, {"a"}, ""},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(gErrorFormater.Format(row.id, row.arguments), row.want);
  }
}

TEST(Formatter, CountsPlaceholders) {
  const int kRows[][2] = {{260101, 0}, {260103, 1}, {260130, 2}, {260189, 3},
                          {260179, 4}, {260214, 6}, {1, 0}};
  for (const auto& row : kRows) EXPECT_EQ(gErrorFormater.GetParameterNumber(row[0]), row[1]) << row[0];
}

TEST(Formatter, TakesVariableArguments) {
  EXPECT_EQ(gErrorFormater.FormatV(260120, "a", "b"), "Missing the attribute 'a' of 'b'.");
  EXPECT_EQ(gErrorFormater.FormatN(260120, 1, "a"), "Missing the attribute 'a' of '{1}'.");
  EXPECT_EQ(gErrorFormater.FormatN(260120, 0), "Missing the attribute ''{0}'' of ''{1}''.");
}

TEST(Formatter, LoadsATableOnce) {
  ScoreContext::MessageItem first = gVYMessages[0];
  EXPECT_FALSE(gErrorFormater.LoadMessages(1, &first));
  ScoreContext::MessageItem kRows[] = {{7, "seven"}, {8, "bad {pattern"}};
  ScoreContext::VYErrorFormater formatter(0, nullptr);
  EXPECT_EQ(formatter.FindMessageContent(7), nullptr);
  EXPECT_TRUE(formatter.LoadMessages(2, kRows)) << "looking for an unknown id left an entry behind";
  EXPECT_EQ(formatter.FindMessageContent(7), kRows[0].text);
  EXPECT_EQ(formatter.GetParameterNumber(8), 0);
  EXPECT_EQ(formatter.Format(8, {"a"}), "bad {pattern");
}

// A host may bring a formatter of its own, written as the interface has it.
class Shouting : public ScoreContext::IErrorFormater {
 public:
  std::string FormatV(int id, ...) override { return std::to_string(id) + "!"; }
  std::string VFormatN(int id, int, va_list) override { return FormatV(id); }
  std::string FormatN(int id, int, ...) override { return FormatV(id); }
  std::string Format(int id, const std::vector<std::string>& args) override {
    return FormatV(id) + (args.empty() ? "" : args[0] + "!");
  }
  int GetParameterNumber(int) override { return 1; }
  bool LoadMessages(int count, ScoreContext::MessageItem* items) override {
    for (int i = 0; i < count; ++i) items[i].text = "";
    return true;
  }
};

TEST(Exception, TakesAHostsFormatterAndIsAssigned) {
  Shouting shouting;
  VYException exception(&shouting);
  exception.PutErrorMessage(5, "five");
  VYException other(260101, "detail", &gErrorFormater);
  EXPECT_EQ(other.GetErrorMessage(), "Unexpected error.detail");
  other = exception;
  EXPECT_EQ(other.GetErrorMessage(), "5!five!");
  EXPECT_EQ(other.GetErrorCode(), 5);
}

TEST(Formatter, ServesSeveralThreads) {
  std::atomic<int> wrong = 0;
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t)
    threads.emplace_back([&wrong] {
      for (int id = 260000; id < 260400; ++id) gErrorFormater.GetParameterNumber(id);
      if (gErrorFormater.Format(260114, {"a"}) != "Missing node: 'a'.") ++wrong;
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

TEST(Exception, RecordsMessages) {
  VYException exception(&gErrorFormater);
  EXPECT_EQ(exception.GetErrorMessage(), "");
  EXPECT_TRUE(exception.PutErrorMessage(260120, "a", nullptr));
  EXPECT_TRUE(exception.PutErrorMessage(260114, "b"));
  exception.SetDetail("!");
  const VYException copy(exception);
  EXPECT_EQ(copy.GetErrorCode(), 260114);
  EXPECT_EQ(copy.GetErrors().size(), 2u);
  EXPECT_EQ(copy.GetErrorMessage(), "Missing the attribute 'a' of '{1}'.Missing node: 'b'.!");
}

TEST(Exception, CapsArguments) {
  VYException exception(&gErrorFormater);
  exception.PutErrorMessage(260114, Arguments{"a", "b"});
  exception.PutErrorMessage(260101, Arguments{"a"});
  exception.PutErrorMessage(260104, Arguments{});
  EXPECT_EQ(exception.GetErrors()[0].arguments, Arguments{"a"});
  EXPECT_EQ(exception.GetErrors()[1].arguments, Arguments{});
  EXPECT_EQ(exception.ConstructMessage(),
            "Missing node: 'a'.Unexpected error.Unexpected error in opening PMML file: ''{0}''.");
}

TEST(Exception, WithoutMessagesHasOnlyItsCodesTextOrDetail) {
  EXPECT_EQ(VYException(260101, "", &gErrorFormater).GetErrorMessage(), "Unexpected error.");
  EXPECT_EQ(VYException(5, "detail", &gErrorFormater).GetErrorMessage(), "detail");
  VYException exception(260101, "detail", nullptr);
  EXPECT_FALSE(exception.PutErrorMessage(260114, "a"));
  EXPECT_EQ(exception.GetErrorCode(), 260114);
  EXPECT_EQ(exception.ConstructMessage(), "");
  EXPECT_EQ(exception.GetErrorMessage(), "detail");
}

TEST(Exception, IsRaisedWithIdArgumentsAndDetail) {
  try {
    Raise(MessageId::kMissingAttributeOf, {"a", "b"}, "why");
  } catch (const VYException& exception) {
    EXPECT_EQ(exception.GetErrorCode(), 260120);
    EXPECT_EQ(exception.GetErrors()[0].arguments, (Arguments{"a", "b"}));
    EXPECT_EQ(exception.GetErrorMessage(), "Missing the attribute 'a' of 'b'.why");
  }
  EXPECT_THROW(Raise(MessageId::kUnexpectedError), VYException);
}

TEST(ErrorKeys, StandAtTheirPositions) {
  const std::pair<int, const char*> kRows[] = {
      {0, "kE_PARSE"}, {11, "kE_ANCESTOR"}, {15, "kE_IO"}, {21, "kE_MISSINGVAR"}, {29, "kE_MISSINGVAR"}};
  for (const auto& [position, key] : kRows) EXPECT_EQ(fgErrorKeys[position], key) << position;
  EXPECT_EQ(fgErrorKeys[31], "kE_NO_FIRES_NO_DEFAULT");
  for (const int free : {12, 14, 32}) EXPECT_EQ(fgErrorKeys[free], "") << free;
}

TEST(KxStatusTest, EqualityLooksAtEverySlot) {
  const KxScore::KxStatus warning(5, true);
  EXPECT_TRUE(warning == KxScore::KxStatus(5, true));
  EXPECT_FALSE(warning == KxScore::KxStatus(5, false));
  EXPECT_FALSE(warning == KxScore::KxStatus(6, true));
  for (unsigned slot = 0; slot < 3; ++slot) {
    KxScore::KxStatus discrete(5, true), scale(5, true), nan(5, true);
    discrete.SetDiscreteDatum(slot, 1);
    scale.SetScaleDatum(slot, 0.5);
    nan.SetScaleDatum(slot, std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(warning == discrete);
    EXPECT_FALSE(warning == scale);
    EXPECT_FALSE(nan == nan);
  }
}

}  // namespace
