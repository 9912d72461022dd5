// Every conversion into a buffer or a string, compared with ICU's conversion of the whole text and with
// iconv.

#include <gtest/gtest.h>
#include <iconv.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <set>

#include "xml/Multibyte.h"

namespace {

using namespace KxXML_940;

constexpr int kMostUnits = 64;
constexpr unsigned kSeed = 20;

// The first four have null bytes within characters.
constexpr const char* kCodePages[] = {"UTF-16BE", "UTF-16LE",     "UTF-32BE",  "UTF-32LE",
                                      "UTF-8",    "windows-1252", "Shift_JIS", "ISO-8859-1",
                                      "GBK",      "EUC-KR",       "Big5",      "US-ASCII"};

struct Closer {
  void operator()(UConverter* converter) const { ucnv_close(converter); }
};
using OpenConverter = std::unique_ptr<UConverter, Closer>;

OpenConverter Open(const char* name) { return OpenConverter(ZENTMBConverterNew_C(name)); }

// What a conversion of the whole text gives, and where a cut output may end.
template <class Unit>
struct Whole {
  std::basic_string<Unit> text;
  bool isSubstituted = false;
  std::set<std::size_t> ends{0};
};

// --- The reference: ICU, with far more room than is needed

// These texts are well-formed, so a character ends where no trailing unit follows.
template <class Unit>
Whole<Unit> WithEnds(std::basic_string<Unit> text, bool isSubstituted) {
  Whole<Unit> whole{std::move(text), isSubstituted};
  for (std::size_t i = 0; i <= whole.text.size(); ++i) {
    const auto unit = static_cast<char32_t>(whole.text.c_str()[i]);
    const bool isTrail = sizeof(Unit) == 1 ? (unit & 0xC0) == 0x80 : sizeof(Unit) == 2 && U16_IS_TRAIL(unit);
    if (!isTrail) whole.ends.insert(i);
  }
  return whole;
}

// Runs one of ICU's conversions with U+FFFD for what is ill-formed.
template <class To, class Unit, class From, class Convert>
Whole<To> ByString(const std::basic_string<From>& from, Convert convert) {
  Unit out[8 * kMostUnits];
  std::int32_t length = 0;
  std::int32_t substitutions = 0;
  UErrorCode status = U_ZERO_ERROR;
  convert(out, 8 * kMostUnits, &length, from.data(), static_cast<std::int32_t>(from.size()), 0xFFFD,
          &substitutions, &status);
  EXPECT_TRUE(U_SUCCESS(status));
  return WithEnds(std::basic_string<To>(out, out + length), substitutions > 0);
}

Whole<char16_t> From8(const std::string& from) {
  return ByString<char16_t, char16_t>(from, u_strFromUTF8WithSub);
}
Whole<char> From16(const std::u16string& from) { return ByString<char, char>(from, u_strToUTF8WithSub); }

Whole<char16_t> From32(const std::u32string& from) {
  return ByString<char16_t, char16_t>(from, [](auto* out, int room, auto* length, auto* in, auto... more) {
    u_strFromUTF32WithSub(out, room, length, reinterpret_cast<const UChar32*>(in), more...);
  });
}
Whole<char32_t> To32(const std::u16string& from) {
  return ByString<char32_t, UChar32>(from, u_strToUTF32WithSub);
}

// These code pages have no state, so a text is what its characters are, one after the other.
Whole<char> ToCodePage(UConverter* converter, const std::u16string& from) {
  Whole<char> whole;
  for (std::int32_t start = 0, end = 0; end < static_cast<std::int32_t>(from.size()); start = end) {
    U16_FWD_1(from, end, static_cast<std::int32_t>(from.size()));
    char out[32];
    UErrorCode status = U_ZERO_ERROR;
    whole.text.append(
        out, out + ucnv_fromUChars(converter, out, sizeof out, from.data() + start, end - start, &status));
    whole.isSubstituted |= static_cast<int>(status) <= -100;
    whole.ends.insert(whole.text.size());
  }
  return whole;
}

Whole<char16_t> FromCodePage(UConverter* converter, const std::string& from) {
  char16_t out[8 * kMostUnits];
  UErrorCode status = U_ZERO_ERROR;
  const std::int32_t length = ucnv_toUChars(converter, out, 8 * kMostUnits, from.data(),
                                            static_cast<std::int32_t>(from.size()), &status);
  return WithEnds(std::u16string(out, out + length), static_cast<int>(status) <= -100);
}

// The second of two conversions substitutes too.
template <class Unit>
Whole<Unit> After(bool isSubstituted, Whole<Unit> whole) {
  whole.isSubstituted = whole.isSubstituted || isSubstituted;
  return whole;
}

// --- The subject

template <class To, class From>
using Conversion = std::function<int(To*, int, const From*, int, int*)>;

// A copy of exactly this size on the heap: the sanitizer sees every access beyond it.
template <class Unit>
std::unique_ptr<Unit[]> Exactly(const Unit* text, std::size_t size) {
  auto copy = std::make_unique<Unit[]>(size);
  std::copy_n(text, size, copy.get());
  return copy;
}

// Converts into so much room, from a text of stated length or a null-terminated one, and compares everything.
template <class To, class From>
void Check(const Conversion<To, From>& convert, const std::basic_string<From>& from, const Whole<To>& want,
           int size, bool isTerminated) {
  constexpr auto kUntouched = static_cast<To>(0x55);
  const std::basic_string<To> before(static_cast<std::size_t>(size), kUntouched);
  const auto out = Exactly(before.data(), before.size());
  const auto source = Exactly(from.c_str(), from.size() + (isTerminated ? 1 : 0));
  const int length = isTerminated ? -1 : static_cast<int>(from.size());
  int error = -1;
  const int written = convert(out.get(), size, source.get(), length, &error);

  std::basic_string<To> layout = before;
  const bool hasNull = isTerminated && size > 0;
  const std::size_t room = layout.size() - (hasNull ? 1 : 0);
  const bool isCut = want.text.size() > room || (isTerminated && !hasNull);
  const std::size_t kept = isCut ? *std::prev(want.ends.upper_bound(room)) : want.text.size();
  std::copy_n(want.text.data(), kept, layout.data());
  if (isCut) std::fill(layout.begin() + static_cast<std::ptrdiff_t>(kept), layout.end(), To(' '));
  if (hasNull)
    layout[isCut ? room : kept] = 0;
  else if (!isCut && kept < room)
    layout[kept] = ' ';
  ASSERT_EQ(error, isCut ? 1 : want.isSubstituted ? 3 : 0) << "size " << size;
  ASSERT_EQ(written, static_cast<int>(kept)) << "size " << size;
  ASSERT_EQ(std::basic_string<To>(out.get(), before.size()), layout) << "size " << size;
}

template <class To, class From>
void CheckAllSizes(const char* what, const Conversion<To, From>& convert, const std::basic_string<From>& from,
                   const Whole<To>& want, bool mayTerminate = true) {
  SCOPED_TRACE(what);
  const bool hasNull = from.find(From(0)) != from.npos;
  for (int size = 0; size <= kMostUnits; ++size) {
    Check(convert, from, want, size, false);
    if (mayTerminate && !hasNull) Check(convert, from, want, size, true);
    if (testing::Test::HasFatalFailure()) return;
  }
}

template <class To, class From, class Convert>
void CheckString(Convert convert, const std::basic_string<From>& from, const Whole<To>& want) {
  std::basic_string<To> out;
  ASSERT_EQ(convert(out, from), want.isSubstituted ? 3 : 0);
  ASSERT_EQ(out, want.text);
}

void CheckUTF(const std::u16string& units, const std::string& bytes) {
  CheckAllSizes<char, char16_t>("16 to 8", ZENTMB16to8, units, From16(units));
  CheckAllSizes<char16_t, char>("8 to 16", ZENTMB8to16, bytes, From8(bytes));
  CheckString<char>(ZENTMBU16ToU8, units, From16(units));
  CheckString<char16_t>(ZENTMBU8ToU16, bytes, From8(bytes));

  // Ill-formed UTF-8 comes out as U+FFFD by way of UTF-16 as well.
  const Whole<char16_t> by16 = From8(bytes);
  CheckAllSizes<char32_t, char>("8 to 32", std::bind_front(ZENTMB8and32, 1), bytes,
                                After(by16.isSubstituted, To32(by16.text)));
  std::u32string wide(units.begin(), units.end());  // surrogates and all
  wide += U"\U0001F600\x110000";
  const Whole<char16_t> replaced = From32(wide);
  CheckAllSizes<char, char32_t>("32 to 8", std::bind_front(ZENTMB8and32, 0), wide,
                                After(replaced.isSubstituted, From16(replaced.text)));
}

// One conversion into a buffer and its counterpart into a string.
template <class To, class From, class ToBuffer, class ToString>
void CheckBoth(const char* what, ToBuffer toBuffer, ToString toString, UConverter* converter,
               const std::basic_string<From>& from, const Whole<To>& want, bool mayTerminate = true) {
  CheckAllSizes<To, From>(what, std::bind_front(toBuffer, converter), from, want, mayTerminate);
  CheckString<To>(std::bind_front(toString, converter), from, want);
}

void CheckCodePage(UConverter* converter, const std::u16string& units, const std::string& bytes,
                   const std::string& utf8, bool mayTerminate) {
  CheckBoth("16 to code page", ZENTMB16toCodePage, ZENTMBU16ToCodePage, converter, units,
            ToCodePage(converter, units));
  const Whole<char16_t> from = FromCodePage(converter, bytes);
  CheckBoth("code page to 16", ZENTMBCodePageto16, ZENTMBCodePageToU16, converter, bytes, from, mayTerminate);
  CheckBoth("code page to 8", ZENTMBCodePageto8, ZENTMBCodePageToU8, converter, bytes,
            After(from.isSubstituted, From16(from.text)), mayTerminate);
  const Whole<char16_t> by16 = From8(utf8);
  CheckBoth("8 to code page", ZENTMB8toCodePage, ZENTMBU8ToCodePage, converter, utf8,
            After(by16.isSubstituted, ToCodePage(converter, by16.text)));
}

// --- Random texts

class Texts {
 public:
  // Characters that most of the code pages have, and some that none has; lone surrogates now and then.
  std::u16string Units(bool isWellFormed) {
    static constexpr std::pair<int, int> kRanges[] = {{0x20, 0x7E},     {0x20, 0x7E},       {0xA0, 0xFF},
                                                      {0x391, 0x3C9},   {0x20AC, 0x20AC},   {0x3041, 0x3093},
                                                      {0x4E00, 0x4E60}, {0x1F600, 0x1F640}, {0xAC00, 0xAC40}};
    std::u16string text;
    for (int n = Whole(0, 20); n > 0; --n) {
      const auto& [first, last] = kRanges[Whole(0, static_cast<int>(std::size(kRanges)) - 1)];
      const UChar32 code = Whole(first, last);
      char16_t pair[2];
      std::size_t length = 0;
      U16_APPEND_UNSAFE(pair, length, code);
      text.append(pair, length);
      if (!isWellFormed && Whole(0, 7) == 0) text += static_cast<char16_t>(Whole(0xD800, 0xDFFF));
    }
    return text;
  }

  // Damages one byte in eight.
  std::string Damaged(std::string bytes) {
    for (char& byte : bytes)
      if (Whole(0, 7) == 0) byte = static_cast<char>(Whole(0, 255));
    return bytes;
  }

 private:
  int Whole(int low, int high) { return std::uniform_int_distribution(low, high)(fRandom); }

  std::mt19937 fRandom{kSeed};
};

TEST(Buffers, BetweenUnicodeEncodings) {
  Texts texts;
  for (int i = 0; i < 200 && !HasFatalFailure(); ++i) {
    const std::u16string units = texts.Units(i % 2 == 0);
    const std::string bytes = From16(units).text;
    CheckUTF(units, i % 2 == 0 ? bytes : texts.Damaged(bytes));
  }
}

TEST(Buffers, CutAtEveryByte) {
  const std::u16string units = u"a\u00e9\U0001F600\u20ac\xD83D";
  const std::string bytes = "a\xC3\xA9\xF0\x9F\x98\x80\xE2\x82\xAC\xF4\x90\xED\xA0\x80";
  for (std::size_t n = 0; n <= bytes.size() && !HasFatalFailure(); ++n)
    CheckUTF(units.substr(0, std::min(n, units.size())), bytes.substr(0, n));
}

TEST(Buffers, WithCodePages) {
  for (const char* const& name : kCodePages) {
    SCOPED_TRACE(name);
    const bool mayTerminate = &name - kCodePages >= 4;
    const OpenConverter converter = Open(name);
    ASSERT_NE(converter, nullptr);
    Texts texts;
    for (int i = 0; i < 30 && !HasFatalFailure(); ++i) {
      const std::u16string units = texts.Units(i % 2 == 0);
      std::string bytes = ToCodePage(converter.get(), units).text;
      std::string utf8 = From16(units).text;
      for (std::size_t n = 0; i == 0 && n < bytes.size(); ++n)
        CheckCodePage(converter.get(), units, bytes.substr(0, n), utf8.substr(0, n), mayTerminate);
      if (i % 2 != 0) {
        bytes = texts.Damaged(bytes);
        utf8 = texts.Damaged(utf8);
      }
      CheckCodePage(converter.get(), units, bytes, utf8, mayTerminate);
    }
  }
}

// The status of a conversion was that of its last character when ICU computed that one.
TEST(Buffers, ASubstitutionIsReportedWhateverFollows) {
  const OpenConverter chinese = Open("GB18030");
  const std::string bytes = "\xFF\x81\x36\xA4\x37";
  std::u16string units;
  EXPECT_EQ(ZENTMBCodePageToU16(chinese.get(), units, bytes), 3);
  EXPECT_EQ(units.substr(0, 1), u"?");
  std::string utf8;
  EXPECT_EQ(ZENTMBCodePageToU8(chinese.get(), utf8, bytes), 3);
  char16_t room[8];
  int error = -1;
  EXPECT_EQ(ZENTMBCodePageto16(chinese.get(), room, 8, bytes.data(), 5, &error), 2);
  EXPECT_EQ(error, 3);
  EXPECT_EQ(ZENTMBCodePageToU16(chinese.get(), units, bytes.substr(1)), 0) << "nothing is left of it";
}

// A host's converter may write more for a character than its encoding has.
TEST(Buffers, EscapesOfAHostFitWhereThereIsRoom) {
  const OpenConverter latin = Open("ISO-8859-1");
  UErrorCode status = U_ZERO_ERROR;
  ucnv_setFromUCallBack(latin.get(), UCNV_FROM_U_CALLBACK_ESCAPE, UCNV_ESCAPE_XML_DEC, nullptr, nullptr,
                        &status);
  std::u16string units;
  std::string wanted;
  for (int i = 0; i < 200; ++i) {
    units += u"\U0001F600";
    wanted += "&#128512;";
  }
  std::string out(4000, '\0');
  int error = -1;
  const int written =
      ZENTMB16toCodePage(latin.get(), out.data(), 4000, units.data(), static_cast<int>(units.size()), &error);
  EXPECT_EQ(out.substr(0, static_cast<std::size_t>(written)), wanted);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(
      ZENTMB16toCodePage(latin.get(), out.data(), 20, units.data(), static_cast<int>(units.size()), &error),
      20);
  EXPECT_EQ(error, 1);
}

// Texts beyond the local buffers, and an encoding with state.
TEST(Buffers, LongTextsGoToTheHeap) {
  std::string bytes;
  while (bytes.size() < 5000) bytes += "\x93\xFA\xB1";  // a kanji and a katakana of one byte
  const OpenConverter japanese = Open("Shift_JIS");
  std::string utf8(20000, '\0');
  int error = -1;
  const int written = ZENTMBCodePageto8(japanese.get(), utf8.data(), 20000, bytes.data(),
                                        static_cast<int>(bytes.size()), &error);
  utf8.resize(static_cast<std::size_t>(written));
  EXPECT_EQ(error, 0);
  EXPECT_EQ(utf8.size(), bytes.size() * 2);
  const OpenConverter shifting = Open("ISO-2022-JP");
  std::string text;
  EXPECT_EQ(ZENTMBU8ToCodePage(shifting.get(), text, "\u65e5a"), 0);
  EXPECT_EQ(text, "\x1B$BF|\x1B(Ba");
  char cut[8];
  EXPECT_EQ(ZENTMB8toCodePage(shifting.get(), cut, 8, "\u65e5a", 4, &error), 5);
  EXPECT_EQ(error, 1);
  EXPECT_EQ(std::string(cut, 8), "\x1B$BF|   ");
  char16_t unit = 0;
  EXPECT_EQ(ZENTMBCodePageto16(shifting.get(), &unit, 1, "\x1B$BF|\x1B(B", 8, &error), 1);
  EXPECT_EQ(error, 0) << "a shift sequence needs no room";
  EXPECT_EQ(unit, u'\u65e5');
}

template <class To, class From, class Convert>
void ExpectString(Convert convert, const From& from, const std::basic_string<To>& want) {
  std::basic_string<To> out;
  EXPECT_EQ(convert(out, from), 0);
  EXPECT_EQ(out, want);
}

// Three characters: all of them, and cut within the last.
template <class From, class Convert>
void ExpectThree(const char* what, Convert convert, const std::basic_string<From>& one,
                 const std::string& want) {
  SCOPED_TRACE(what);
  const std::basic_string<From> from = one + one + one;
  const int length = static_cast<int>(from.size());
  const int size = static_cast<int>(want.size()) * 3;
  char out[16];
  int error = -1;
  EXPECT_EQ(convert(out, size, from.c_str(), length, &error), size);
  EXPECT_EQ(error, 0);
  EXPECT_EQ(std::string(out, out + size), want + want + want);
  EXPECT_EQ(convert(out, size - 1, from.c_str(), length, &error), size / 3 * 2);
  EXPECT_EQ(error, 1);
  EXPECT_EQ(std::string(out, out + size - 1), want + want + std::string(want.size() - 1, ' '));
}

// The default code page is Shift-JIS here, where a kanji is two bytes and a katakana one.
TEST(Generic, FollowsTheMode) {
  UConverter* const first = ZENTMBGetDefaultConverter();
  const OpenConverter japanese = Open("932");
  const OpenConverter european = Open("1252");
  ZENTMBSetDefaultConverter(japanese.get());
  const std::u16string kanji16 = u"\u65e5";
  const std::string kanji8 = "\u65e5";
  const std::string kanjiCP = "\x93\xFA";
  using Bytes = std::string;
  for (const int mode : {1, 0}) {
    SCOPED_TRACE(mode);
    SetUTF8mode(mode);
    const std::string& generic = mode == 1 ? kanji8 : kanjiCP;
    ExpectString(ZENTMBGenericToU16, generic, kanji16);
    ExpectString(ZENTMBU16ToGeneric, kanji16, generic);
    ExpectString(ZENTMBGenericToU8, generic, kanji8);
    ExpectString(ZENTMBU8ToGeneric, kanji8, generic);
    const auto toCodePage = [](Bytes& out, const Bytes& in) { return ZENTMBGenericToCodePage(out, in); };
    const auto fromCodePage = [](Bytes& out, const Bytes& in) { return ZENTMBCodePageToGeneric(out, in); };
    ExpectString(toCodePage, generic, kanjiCP);
    ExpectString(fromCodePage, kanjiCP, generic);
    std::string bytes;
    EXPECT_EQ(ZENTMBGenericToCodePage(european.get(), bytes, generic), 3);
    EXPECT_EQ(bytes, "?");
    EXPECT_EQ(ZENTMBCodePageToGeneric(european.get(), bytes, "\xA7"), 0);
    EXPECT_EQ(bytes, mode == 1 ? "\u00a7" : "\x81\x98");

    UConverter* const byDefault = nullptr;
    ExpectThree("16", ZENTMB16toGeneric, kanji16, generic);
    ExpectThree("8", ZENTMB8toGeneric, kanji8, generic);
    ExpectThree("code page", std::bind_front(ZENTMBCodePagetoGeneric, byDefault), kanjiCP, generic);
    ExpectThree("to 8", ZENTMBGenericto8, generic, kanji8);
    ExpectThree("to code page", std::bind_front(ZENTMBGenerictoCodePage, byDefault), generic, kanjiCP);
    char16_t units[2];
    int error = -1;
    const int two = static_cast<int>(generic.size()) * 2;
    EXPECT_EQ(ZENTMBGenericto16(units, 2, (generic + generic).c_str(), two, &error), 2);
    EXPECT_EQ(error, 0);

    const std::unique_ptr<char16_t[]> new16(ZENTMBTranscodeGeneric(generic.c_str()));
    const std::unique_ptr<char[]> new8(ZENTMBTranscodeGeneric(new16.get()));
    EXPECT_EQ(std::u16string(new16.get()), kanji16);
    EXPECT_EQ(new8.get(), generic);
  }
  EXPECT_EQ(ZENTMBTranscodeU8(static_cast<const char*>(nullptr)), nullptr);
  ZENTMBSetDefaultConverter(first);
}

TEST(Temporaries, AreLocalWhileTheyFit) {
  char local[8];
  EXPECT_EQ(ZENTMBTempGet(local, sizeof local, 2, 4), local);
  void* const block = ZENTMBTempGet(local, sizeof local, 2, 5);
  EXPECT_NE(block, local);
  std::memset(block, 0, 10);
  ZENTMBTempFree(local, block);
  ZENTMBTempFree(local, local);
  ZENTMBTempFree(local, nullptr);
  EXPECT_EQ(ZENTMBTempGet(local, sizeof local, SIZE_MAX, 2), nullptr) << "the product overflows";
}

// iconv has mappings of its own, from other hands than ICU's.
TEST(Strings, AgreeWithIconv) {
  struct IconvCloser {
    void operator()(void* handle) const { iconv_close(handle); }
  };
  using Handle = std::unique_ptr<void, IconvCloser>;
  const auto convert = [](const Handle& handle, std::string from) {
    char out[8 * kMostUnits];
    char* source = from.data();
    char* target = out;
    std::size_t sourceLeft = from.size();
    std::size_t targetLeft = sizeof out;
    const std::size_t result = iconv(handle.get(), &source, &sourceLeft, &target, &targetLeft);
    return result == 0 ? std::string(out, target) : std::string();
  };
  for (const char* name : kCodePages) {
    SCOPED_TRACE(name);
    const Handle to(iconv_open(name, "UTF-8"));
    const Handle from(iconv_open("UTF-8", name));
    ASSERT_TRUE(to.get() != reinterpret_cast<void*>(-1) && from.get() != reinterpret_cast<void*>(-1));
    const OpenConverter converter = Open(name);
    Texts texts;
    std::size_t compared = 0;
    for (int i = 0; i < 200; ++i) {
      std::string common;  // of the text, the characters that both map there and back
      const std::u16string units = texts.Units(true);
      for (std::size_t at = 0; at < units.size();) {
        const std::size_t start = at;
        U16_FWD_1(units, at, units.size());
        const std::string character = From16(units.substr(start, at - start)).text;
        std::string bytes;
        std::string back;
        ZENTMBU8ToCodePage(converter.get(), bytes, character);
        ZENTMBCodePageToU8(converter.get(), back, bytes);
        if (back == character && convert(from, convert(to, character)) == character) common += character;
      }
      std::string bytes;
      std::string back;
      ASSERT_EQ(ZENTMBU8ToCodePage(converter.get(), bytes, common), 0);
      ASSERT_EQ(bytes, convert(to, common)) << common;
      ASSERT_EQ(ZENTMBCodePageToU8(converter.get(), back, bytes), 0);
      ASSERT_EQ(back, convert(from, bytes));
      compared += common.size();
    }
    EXPECT_GT(compared, 400u);
  }
}

}  // namespace
