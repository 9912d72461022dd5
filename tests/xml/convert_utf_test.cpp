// The UTF converters, compared with ICU on random texts, and their results at every end.

#include <gtest/gtest.h>
#include <unicode/ustring.h>

#include <cstring>
#include <memory>
#include <random>
#include <string>

#include "xml/ConvertUTF.h"

namespace {

using namespace KxXML_940;

using Bytes = std::basic_string<UTF8>;

Bytes operator""_b(const char* text, std::size_t size) { return {text, text + size}; }

template <class From, class To>
using Converter = ConversionResult (*)(const From**, const From*, To**, To*, ConversionFlags);

template <class Unit>
struct Result {
  ConversionResult result;
  std::size_t read;
  std::basic_string<Unit> text;
};

// Source and target are on the heap in exactly their sizes.
template <class From, class To>
Result<To> Run(Converter<From, To> convert, const std::basic_string<From>& from, std::size_t room,
               ConversionFlags flags) {
  const auto in = std::make_unique<From[]>(from.size());
  std::copy(from.begin(), from.end(), in.get());
  const auto out = std::make_unique<To[]>(room);
  const From* source = in.get();
  To* target = out.get();
  const ConversionResult result = convert(&source, in.get() + from.size(), &target, out.get() + room, flags);
  return {result, static_cast<std::size_t>(source - in.get()), {out.get(), target}};
}

template <class From, class To>
struct Row {
  const char* what;
  std::basic_string<From> from;
  ConversionResult strict;
  std::basic_string<To> strictText;
  ConversionResult lenient;
  std::basic_string<To> lenientText;
};

template <class From, class To, std::size_t n>
void CheckRows(Converter<From, To> convert, const Row<From, To> (&rows)[n]) {
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    const auto strict = Run(convert, row.from, 16, strictConversion);
    EXPECT_EQ(strict.result, row.strict);
    EXPECT_EQ(strict.text, row.strictText);
    EXPECT_EQ(strict.read == row.from.size(), row.strict == conversionOK);
    const auto lenient = Run(convert, row.from, 16, lenientConversion);
    EXPECT_EQ(lenient.result, row.lenient);
    EXPECT_EQ(lenient.text, row.lenientText);
  }
}

TEST(ConvertUTF, StrictAndLenient) {
  constexpr auto kOK = conversionOK;
  constexpr auto kIllegal = sourceIllegal;
  constexpr auto kExhausted = sourceExhausted;
  const Row<UTF8, UTF16> kFrom8[] = {
      {"well-formed", "a\u00e4\u20ac\U0010FFFF"_b, kOK, u"a\u00e4\u20ac\U0010FFFF", kOK,
       u"a\u00e4\u20ac\U0010FFFF"},
      {"overlong", "a\xC0\x80"_b, kIllegal, u"a", kIllegal, u"a"},
      {"overlong in three bytes", "a\xE0\x9F\xBF"_b, kIllegal, u"a", kIllegal, u"a"},
      {"overlong in four bytes", "a\xF0\x8F\xBF\xBF"_b, kIllegal, u"a", kIllegal, u"a"},
      {"surrogate", "a\xED\xA0\x80"_b, kIllegal, u"a", kIllegal, u"a"},
      {"beyond Unicode", "a\xF4\x90\x80\x80"_b, kIllegal, u"a", kIllegal, u"a"},
      {"a trail byte", "a\x80z"_b, kIllegal, u"a", kIllegal, u"a"},
      {"a wrong trail byte", "a\xE2\x82z"_b, kIllegal, u"a", kIllegal, u"a"},
      {"five bytes", "a\xF8\x88\x80\x80\x80"_b, kIllegal, u"a", kIllegal, u"a"},
      {"cut", "a\xE2\x82"_b, kExhausted, u"a", kExhausted, u"a"},
      {"cut, whatever follows", "a\xE2z"_b, kExhausted, u"a", kExhausted, u"a"},
      {"cut form of five bytes", "a\xF8\x88\x80\x80"_b, kExhausted, u"a", kExhausted, u"a"},
  };
  CheckRows(ConvertUTF8toUTF16, kFrom8);
  const Row<UTF16, UTF8> kFrom16[] = {
      {"well-formed", u"a\U0010FFFF", kOK, "a\U0010FFFF"_b, kOK, "a\U0010FFFF"_b},
      {"high surrogate", u"\xD83Dz", kIllegal, ""_b, kOK, "\xED\xA0\xBDz"_b},
      {"low surrogate", u"\xDE00z", kIllegal, ""_b, kOK, "\xED\xB8\x80z"_b},
      {"cut", u"a\xD83D", kExhausted, "a"_b, kExhausted, "a"_b},
  };
  CheckRows(ConvertUTF16toUTF8, kFrom16);
  const Row<UTF16, UTF32> kWiden[] = {
      {"well-formed", u"a\U0001F600", kOK, U"a\U0001F600", kOK, U"a\U0001F600"},
      {"low surrogate", u"\xDE00z", kIllegal, U"", kOK, U"\xDE00z"},
      {"cut", u"a\xD83D", kExhausted, U"a", kExhausted, U"a"},
  };
  CheckRows(ConvertUTF16toUTF32, kWiden);
  const Row<UTF32, UTF8> kFrom32[] = {
      {"well-formed", U"a\u00e4\u20ac\U0010FFFF", kOK, "a\u00e4\u20ac\U0010FFFF"_b, kOK,
       "a\u00e4\u20ac\U0010FFFF"_b},
      {"surrogate", U"a\xD83D", kIllegal, "a"_b, kOK, "a\xED\xA0\xBD"_b},
      {"beyond Unicode", U"a\x110000z", kIllegal, "a"_b, kOK, "a\uFFFDz"_b},
  };
  CheckRows(ConvertUTF32toUTF8, kFrom32);
  const Row<UTF32, UTF16> kNarrow[] = {
      {"surrogate", U"a\xD83Dz", kIllegal, u"a", kOK, u"a\uFFFDz"},
      {"beyond Unicode", U"a\x110000z", kIllegal, u"a", kOK, u"a\uFFFDz"},
  };
  CheckRows(ConvertUTF32toUTF16, kNarrow);
}

TEST(ConvertUTF, KnowsLegalText) {
  const auto check = [](const Bytes& bytes, bool want) {
    EXPECT_EQ(isLegalUTF8(bytes.data(), static_cast<int>(bytes.size())), want);
    EXPECT_EQ(isLegalUTF8Sequence(bytes.data(), bytes.data() + bytes.size()), want);
    const Bytes two = "zz"_b + bytes + bytes;
    EXPECT_EQ(isLegalUTF8Substring(two.data(), two.data() + two.size()), want || bytes.empty());
    EXPECT_FALSE(isLegalUTF8(two.data(), static_cast<int>(two.size()))) << "more than one character";
  };
  for (const Bytes& legal : {"a"_b, "\u00e4"_b, "\u20ac"_b, "\U0001F600"_b}) check(legal, true);
  for (const Bytes& illegal : {""_b, "\x80"_b, "\xC1\xBF"_b, "\xE2\x82"_b, "\xED\xBF\xBF"_b, "\xE2\x82z"_b,
                               "\xF5\x80\x80\x80"_b, "\xFC\x84\x80\x80\x80\x80"_b})
    check(illegal, false);
}

std::u32string RandomText(std::mt19937& random) {
  const auto whole = [&](char32_t low, char32_t high) {
    return static_cast<char32_t>(std::uniform_int_distribution<std::uint32_t>(low, high)(random));
  };
  std::u32string text;
  for (char32_t n = whole(0, 12); n > 0; --n) {
    const char32_t kind = whole(0, 4);
    if (kind == 0)
      text.append(whole(1, 40), whole(0, 0x7F));
    else
      text += kind == 1   ? whole(0x80, 0x7FF)
              : kind == 2 ? whole(0x800, 0xD7FF)
              : kind == 3 ? whole(0xE000, 0xFFFF)
                          : whole(0x10000, 0x10FFFF);
  }
  return text;
}

// Converts with room for 0 to all units: what was written is the characters that fit, and what was read goes
// with it.
template <class From, class To>
void CheckAllRooms(Converter<From, To> convert, Converter<To, From> back, const std::basic_string<From>& from,
                   const std::basic_string<To>& want) {
  for (std::size_t room = 0; room <= want.size(); ++room) {
    const auto run = Run(convert, from, room, strictConversion);
    ASSERT_EQ(run.result, room == want.size() ? conversionOK : targetExhausted);
    ASSERT_EQ(run.text, want.substr(0, run.text.size()));
    ASSERT_LT(room - run.text.size(), 4u);
    ASSERT_EQ(Run(back, run.text, from.size(), strictConversion).text, from.substr(0, run.read));
  }
}

std::u16string Swapped(std::u16string text) {
  for (char16_t& unit : text) unit = static_cast<char16_t>(unit << 8 | unit >> 8);
  return text;
}

TEST(ConvertUTF, AgreesWithICU) {
  std::mt19937 random(11);
  for (int i = 0; i < 100; ++i) {
    const std::u32string wide = RandomText(random);
    char16_t units[1000];
    char bytes[2000];
    std::int32_t unitCount = 0;
    std::int32_t byteCount = 0;
    UErrorCode status = U_ZERO_ERROR;
    u_strFromUTF32(units, 1000, &unitCount, reinterpret_cast<const UChar32*>(wide.data()),
                   static_cast<std::int32_t>(wide.size()), &status);
    u_strToUTF8(bytes, 2000, &byteCount, units, unitCount, &status);
    ASSERT_TRUE(U_SUCCESS(status));
    const std::u16string utf16(units, static_cast<std::size_t>(unitCount));
    const Bytes utf8(bytes, bytes + byteCount);
    const auto bothWays = [](auto there, auto back, const auto& from, const auto& to) {
      CheckAllRooms(there, back, from, to);
      CheckAllRooms(back, there, to, from);
    };
    bothWays(ConvertUTF8toUTF16, ConvertUTF16toUTF8, utf8, utf16);
    bothWays(ConvertUTF8toUTF32, ConvertUTF32toUTF8, utf8, wide);
    bothWays(ConvertUTF16toUTF32, ConvertUTF32toUTF16, utf16, wide);
    bothWays(ConvertUTF8toUTF16Rev, ConvertUTF16RevtoUTF8, utf8, Swapped(utf16));
    if (HasFatalFailure()) return;

    // The same units at an odd address, with an odd byte behind them.
    for (const bool swap : {false, true}) {
      const std::u16string ordered = swap ? Swapped(utf16) : utf16;
      Bytes odd(utf16.size() * 2 + 2, 0x55);
      unsigned char* target = odd.data() + 1;
      const UTF8* source = utf8.data();
      ASSERT_EQ(LocalUTF8toUTF16(&source, utf8.data() + utf8.size(), &target, odd.data() + odd.size(),
                                 strictConversion, swap),
                conversionOK);
      ASSERT_EQ(target, odd.data() + odd.size() - 1);
      ASSERT_EQ(odd.back(), 0x55);
      ASSERT_EQ(std::memcmp(odd.data() + 1, ordered.data(), ordered.size() * 2), 0);
      Bytes back(utf8.size(), 0);
      UTF8* end = back.data();
      const unsigned char* from = odd.data() + 1;
      ASSERT_EQ(LocalUTF16toUTF8(&from, odd.data() + odd.size(), &end, back.data() + back.size(),
                                 strictConversion, swap),
                sourceExhausted);
      ASSERT_EQ(from, odd.data() + odd.size() - 1);
      ASSERT_EQ(back, utf8);
    }
  }
}

}  // namespace
