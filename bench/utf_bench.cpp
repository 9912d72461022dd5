// The UTF converters, compared with ICU's functions for whole texts.

#include <unicode/ustring.h>

#include <string>
#include <string_view>
#include <vector>

#include "Comparison.h"
#include "xml/ConvertUTF.h"
#include "xml/Multibyte.h"

namespace {

using namespace VeyraBench;
using namespace KxXML_940;

// The converters take no more than twice the time.
constexpr double kLimit = 2;
constexpr std::size_t kUnits = 64 * 1024;

struct Language {
  const char* name;
  std::u16string_view sample;
};

constexpr Language kLanguages[] = {
    {"ASCII", u"The quick brown fox jumps over the lazy dog, again and again. "},
    {"Greek",
     u"\u039e\u03b5\u03c3\u03ba\u03b5\u03c0\u03ac\u03b6\u03c9 \u03c4\u03b7\u03bd "
     u"\u03c8\u03c5\u03c7\u03bf\u03c6\u03b8\u03cc\u03c1\u03b1 "
     u"\u03b2\u03b4\u03b5\u03bb\u03c5\u03b3\u03bc\u03af\u03b1. "},
    {"Japanese",
     u"\u3044\u308d\u306f\u306b\u307b\u3078\u3068\u3001\u65e5\u672c\u8a9e\u306e\u6587\u7ae0\u3067\u3059"
     u"\u3002"},
};

struct Text {
  std::u16string utf16;
  std::u32string utf32;
  std::string utf8;
};

Text MakeText(std::u16string_view sample) {
  Text text;
  while (text.utf16.size() < kUnits) text.utf16 += sample;
  text.utf32.assign(text.utf16.begin(), text.utf16.end());  // the samples have no surrogates
  ZENTMBU16ToU8(text.utf8, text.utf16);
  return text;
}

struct Run {
  std::string name;
  double ratio = 0;
};

// Measures one direction: `icu` and `ours` fill buffers of the size of `want`.
template <class Unit, class ICU, class Ours>
void Measure(std::vector<Run>& runs, std::size_t index, const std::basic_string<Unit>& want, ICU icu,
             Ours ours) {
  std::basic_string<Unit> out(want.size(), 0);
  ours(out);
  Require(out == want, "a conversion differs");
  out.assign(want.size(), 0);
  icu(out);
  Require(out == want, "ICU's conversion differs");
  benchmark::RegisterBenchmark(runs[index].name.c_str(),
                               [&run = runs[index], out, icu, ours](benchmark::State& state) mutable {
                                 run.ratio = Compare(
                                     state,
                                     [&] {
                                       icu(out);
                                       benchmark::DoNotOptimize(out.data());
                                     },
                                     [&] {
                                       ours(out);
                                       benchmark::DoNotOptimize(out.data());
                                     });
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMicrosecond);
}

// Runs a converter over a whole text.
template <class To, class Unit, class From, class Source>
void Convert(ConversionResult (*convert)(const From**, const From*, To**, To*, ConversionFlags),
             const std::basic_string<Source>& from, std::basic_string<Unit>& out) {
  const auto* source = reinterpret_cast<const From*>(from.data());
  auto* target = reinterpret_cast<To*>(out.data());
  convert(&source, source + from.size(), &target, target + out.size(), strictConversion);
}

template <class Unit>
std::int32_t Size(const std::basic_string<Unit>& text) {
  return static_cast<std::int32_t>(text.size());
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::vector<Text> texts;
  std::vector<Run> runs;
  for (const Language& language : kLanguages) {
    texts.push_back(MakeText(language.sample));
    for (const char* const direction :
         {"UTF-8 to UTF-16", "UTF-16 to UTF-8", "UTF-16 to UTF-32", "UTF-32 to UTF-16"})
      runs.push_back({std::string(direction) + ", " + language.name});
  }
  std::size_t index = 0;
  for (const Text& text : texts) {
    UErrorCode status = U_ZERO_ERROR;
    const auto from8 = [&text, status](std::u16string& out) mutable {
      u_strFromUTF8(out.data(), Size(out), nullptr, text.utf8.data(), Size(text.utf8), &status);
    };
    const auto to8 = [&text, status](std::string& out) mutable {
      u_strToUTF8(out.data(), Size(out), nullptr, text.utf16.data(), Size(text.utf16), &status);
    };
    const auto from32 = [&text, status](std::u16string& out) mutable {
      u_strFromUTF32(out.data(), Size(out), nullptr, reinterpret_cast<const UChar32*>(text.utf32.data()),
                     Size(text.utf32), &status);
    };
    const auto to32 = [&text, status](std::u32string& out) mutable {
      u_strToUTF32(reinterpret_cast<UChar32*>(out.data()), Size(out), nullptr, text.utf16.data(),
                   Size(text.utf16), &status);
    };
    Measure(runs, index++, text.utf16, from8,
            [&](std::u16string& out) { Convert(ConvertUTF8toUTF16, text.utf8, out); });
    Measure(runs, index++, text.utf8, to8,
            [&](std::string& out) { Convert(ConvertUTF16toUTF8, text.utf16, out); });
    Measure(runs, index++, text.utf32, to32,
            [&](std::u32string& out) { Convert(ConvertUTF16toUTF32, text.utf16, out); });
    Measure(runs, index++, text.utf16, from32,
            [&](std::u16string& out) { Convert(ConvertUTF32toUTF16, text.utf32, out); });
  }
  benchmark::RunSpecifiedBenchmarks();
  for (const Run& run : runs) PrintRatio("utf: " + run.name + ": converter / ICU", run.ratio, kLimit);
}
