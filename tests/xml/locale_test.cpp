// Names in several encodings, the default converter and the process's locale.  Each test has its own process.

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <thread>
#include <vector>

#include "xml/ExtNameStr.h"
#include "xml/Multibyte.h"
#include "xml/PlatformLocale.h"
#include "xml/SystemLocale.h"

namespace {

using namespace KxXML_940;

void SetUserLocale(const char* name) { setenv("LC_ALL", name, 1); }

TEST(Names, KeepTheirForms) {
  SetUserLocale("C");
  ExtNameStr name;
  EXPECT_TRUE(name.Empty());
  EXPECT_EQ(name.GetCP(), "");
  name.SetU8("gr\u00f6\u00dfe\U0001F600");
  EXPECT_EQ(name.GetU8(), "gr\u00f6\u00dfe\U0001F600");
  EXPECT_EQ(name.GetU16(), u"gr\u00f6\u00dfe\U0001F600");
  EXPECT_EQ(name.GetCP(), name.GetU8()) << "a file name was damaged in the C locale";
  EXPECT_EQ(name.ErrorCode(), 0);
  const ExtNameStr copy(name);
  name.SetU8("a\xFF");
  EXPECT_EQ(name.ErrorCode(), 3);
  name.Clear();
  EXPECT_TRUE(name.Empty() && name.GetU16().empty() && name.GetCP().empty());
  EXPECT_EQ(copy.GetU16(), u"gr\u00f6\u00dfe\U0001F600");
}

TEST(Names, AreSetInEveryForm) {
  SetUserLocale("C");
  UConverter* const latin = ZENTMBConverterNew_C("28591");
  const std::string want = "\u00e4";
  const std::pair<const char*, void (*)(ExtNameStr&, UConverter*)> kSetters[] = {
      {"UTF-8", [](ExtNameStr& name, UConverter*) { name.SetU8("\u00e4"); }},
      {"UTF-16", [](ExtNameStr& name, UConverter*) { name.SetU16(u"\u00e4"); }},
      {"a code page", [](ExtNameStr& name, UConverter* converter) { name.SetCP("\xE4", converter); }},
      {"the default code page", [](ExtNameStr& name, UConverter*) { name.SetCP("\u00e4", nullptr); }},
      {"generic", [](ExtNameStr& name, UConverter*) { name.SetGeneric("\u00e4"); }},
      {"system", [](ExtNameStr& name, UConverter*) { name.SetSystem("\u00e4"); }},
  };
  for (const auto& [what, set] : kSetters) {
    SCOPED_TRACE(what);
    ExtNameStr name;
    name.SetU8("before");
    EXPECT_EQ(name.GetSystem(), "before");
    set(name, latin);
    EXPECT_EQ(name.GetU8(), want);
    EXPECT_EQ(name.GetU16(), u"\u00e4");
    EXPECT_EQ(name.GetCP(), want);
    EXPECT_EQ(name.GetSystem(), want);
    EXPECT_EQ(name.GetGeneric(), want);
    EXPECT_EQ(name.GetCP(latin), "\xE4");
    EXPECT_EQ(name.ErrorCode(), 0);
    ExtNameStr copy;
    copy = name;
    name.Clear();
    EXPECT_TRUE(name.GetSystem().empty() && name.GetGeneric().empty());
    EXPECT_EQ(copy.GetSystem(), want);
  }
  ucnv_close(latin);
}

// In the other mode a generic name is in the default code page, whichever that is now.
TEST(Names, FollowTheDefaultConverterAndTheMode) {
  SetUserLocale("C");
  UConverter* const latin = ZENTMBConverterNew_C("ISO-8859-1");
  UConverter* const first = ZENTMBGetDefaultConverter();
  const int id = ZENTMBDefaultConverterID();
  ExtNameStr name;
  name.SetU8("\u00e4\u20ac");
  EXPECT_EQ(name.GetCP(latin), "\xE4?");
  EXPECT_EQ(name.ErrorCode(), 3);
  SetUTF8mode(0);
  EXPECT_EQ(name.GetGeneric(), "\u00e4\u20ac");
  EXPECT_EQ(name.GetCP(), "\u00e4\u20ac");
  ZENTMBSetDefaultConverter(latin);
  ASSERT_EQ(ZENTMBGetDefaultConverter(), latin);
  EXPECT_EQ(ZENTMBDefaultConverterID(), id + 1);
  EXPECT_EQ(name.GetCP(), "\xE4?");
  EXPECT_EQ(name.GetGeneric(), "\xE4?");
  EXPECT_EQ(name.ErrorCode(), 3);
  name.SetGeneric("\xF6");
  EXPECT_EQ(name.GetU8(), "\u00f6");
  name.SetSystem("\u20ac");
  EXPECT_EQ(name.ErrorCode(), 3) << "of the code page";
  name.SetSystem("\xFF");
  EXPECT_EQ(name.GetSystem(), "\xFF") << "kept as it is";
  EXPECT_EQ(name.GetU16(), u"?");
  std::string back;
  EXPECT_EQ(ZENTMBCodePageToU8(nullptr, back, "\xE4"), 0);
  EXPECT_EQ(back, "\u00e4");
  ZENTMBSetDefaultConverter(first);
  ucnv_close(latin);
}

TEST(Names, LeaveTheLocaleAloneUntilTheSystemsEncodingIsNeeded) {
  SetUserLocale("de_DE.UTF-8");
  ExtNameStr name;
  name.SetU8("a");
  EXPECT_STREQ(getenv("LC_ALL"), "de_DE.UTF-8");
  EXPECT_EQ(name.GetSystem(), "a");
  EXPECT_STREQ(getenv("LC_ALL"), "de_DE.ISO8859-15");
}

TEST(DefaultConverter, IsTheUsersEncodingWhenItIsKnown) {
  SetUserLocale("ja_JP.SJIS");
  std::string bytes;
  EXPECT_EQ(ZENTMBU8ToCodePage(nullptr, bytes, "\u65e5"), 0);
  EXPECT_EQ(bytes, "\x93\xFA");
}

TEST(DefaultConverter, IsUTF8Otherwise) {
  SetUserLocale("de_DE.NONE");
  EnableLocale();  // changes the environment, and must not change the encoding with it
  std::string bytes;
  EXPECT_EQ(ZENTMBU8ToCodePage(nullptr, bytes, "\u65e5"), 0);
  EXPECT_EQ(bytes, "\u65e5");
}

TEST(DefaultConverter, MayBeFirstNeededBySeveralThreads) {
  SetUserLocale("C");
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([] {
      ExtNameStr name;
      name.SetU8("\u00e4");
      EXPECT_EQ(name.GetCP(), "\u00e4");
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(ZENTMBDefaultConverterID(), 1);
}

TEST(Converters, AreNamed) {
  const std::pair<unsigned, const char*> kNumbers[] = {
      {1252, "windows-1252"}, {28591, "ISO_8859-1:1987"}, {65001, "UTF-8"}, {936, "GBK"}, {437, "IBM437"}};
  char name[UCNV_MAX_CONVERTER_NAME_LENGTH];
  for (const auto& [number, want] : kNumbers) {
    EXPECT_EQ(ZENTMBCpNameFromNum_C(name, number), 1) << number;
    EXPECT_STRCASEEQ(name, want);
  }
  for (const unsigned none : {99999u, 0u}) {
    EXPECT_EQ(ZENTMBCpNameFromNum_C(name, none), 0) << none;
    EXPECT_STREQ(name, "");
  }
  const std::pair<const char*, bool> kNames[] = {
      {"1252", true},    {"cp1252", true},  {"Windows-28591", true}, {"99999", false}, {"none", false},
      {"123456", false}, {"0001252", true}, {"\u00e4", false},       {nullptr, true}};
  for (const auto& [alias, isKnown] : kNames)
    for (UConverter* (*open)(const char*) :
         {ZENTMBConverterNew_C, ZENTMBConverterNew_8, ZENTMBConverterNew_A}) {
      UConverter* const converter = open(alias);
      EXPECT_EQ(converter != nullptr, isKnown) << (alias != nullptr ? alias : "null");
      if (converter != nullptr) ucnv_close(converter);
    }
}

TEST(Converters, SubstituteAndSaySo) {
  UConverter* const ascii = ZENTMBConverterNew_C("US-ASCII");
  std::string text;
  EXPECT_EQ(ZENTMBU8ToCodePage(ascii, text, "a\u00e4\U0001F600z"), 3);
  EXPECT_EQ(text, "a??z");
  EXPECT_EQ(ZENTMBCodePageToU8(ascii, text, "a\xE4z"), 3);
  EXPECT_EQ(text, "a?z");
  EXPECT_EQ(ZENTMBCodePageToU8(ascii, text, "az"), 0);
  ucnv_close(ascii);
}

TEST(Mode, IsOneOrZero) {
  EXPECT_EQ(qUTF8mode(), 1);
  SetUTF8mode(0);
  EXPECT_EQ(qUTF8mode(), 0);
  SetUTF8mode(-7);
  EXPECT_EQ(qUTF8mode(), 1);
}

TEST(Locale, HasItsParts) {
  const struct {
    const char *name, *identifier, *charset, *locale;
  } kRows[] = {
      {"de_DE.UTF-8", "de_DE", "UTF-8", "de_DE.ISO8859-15"},
      {"de_DE.ISO8859-15@euro", "de_DE", "ISO8859-15", "de_DE.ISO8859-15"},
      {"de_DE@euro", "de_DE", "", "de_DE.ISO8859-15"},
      {"ca_ES@a.b", "ca_ES", "", "ca_ES.ISO8859-15"},
      {"en_GB", "en_GB", "", "en_GB.ISO8859-1"},
      {"en", "en", "", "en.ISO8859-1"},
      {"enm_GB", "enm_GB", "", "enm_GB.ISO8859-15"},
      {"", "en_US", "", "en_US.ISO8859-1"},
      {"C", "en_US", "", "en_US.ISO8859-1"},
      {"C.UTF-8", "en_US", "UTF-8", "en_US.ISO8859-1"},
      {"POSIX", "en_US", "", "en_US.ISO8859-1"},
      {"ja_JP.eucJP", "ja_JP", "eucJP", "ja_JP.SJIS"},
      {"ko_KR", "ko_KR", "", "ko_KR.cp949"},
      {"zh_CN", "zh_CN", "", "zh_CN.GBK"},
      {"zh_TW", "zh_TW", "", "zh_TW.BIG5"},
      {"ru_RU", "ru_RU", "", "ru_RU.ISO8859-5"},
      {"nb_NO", "nb_NO", "", "no_NO.ISO8859-15"},
      {"abcdefghijklmnopqrstuvwxyz", "abcdefghijklmnopqr", "", "abcdefghijklmnopqr.ISO8859-15"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.name);
    const UserLocale locale = ParseLocaleName(row.name);
    EXPECT_EQ(locale.identifier, row.identifier);
    EXPECT_EQ(locale.charset, row.charset);
    EXPECT_EQ(LocaleName(locale.identifier), row.locale);
  }
}

TEST(Locale, IsSetOnceWhileItIsC) {
  SetUserLocale("de_DE.UTF-8");
  EXPECT_EQ(SystemEncoding(), "UTF-8");
  EXPECT_STREQ(getenv("LC_ALL"), "de_DE.ISO8859-15");
  SetUserLocale("x");
  EnableLocale();
  EXPECT_STREQ(getenv("LC_ALL"), "x");
}

TEST(Locale, OfTheHostIsLeftAlone) {
  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  SetUserLocale("de_DE.UTF-8");
  EnableLocale();
  EXPECT_STREQ(std::setlocale(LC_CTYPE, nullptr), "C.UTF-8");
  EXPECT_STREQ(getenv("LC_ALL"), "de_DE.UTF-8");
}

TEST(Locale, IsTheFirstVariableThatIsSet) {
  setenv("LC_ALL", "", 1);
  setenv("LC_CTYPE", "fr_FR", 1);
  setenv("LANG", "it_IT", 1);
  EXPECT_EQ(GetUserLocale().identifier, "fr_FR");
}

}  // namespace
