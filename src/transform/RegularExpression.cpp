#include <unicode/regex.h>
#include <unicode/unistr.h>
#include <algorithm>

#include "transform/FunctionCallInternal.h"

namespace KxVeyra_940 {

namespace {

// Of searches: a unit is 10,000 steps of ICU's engine, some tenths of a second in all.
constexpr int32_t kMaxSearchUnits = 1000;
constexpr int32_t kMaxSearchStack = 8'000'000;  // bytes

// How often a replacement refers to a group, at most.
std::int64_t CountReferences(std::string_view replacement) {
  std::int64_t count = 0;
  for (std::size_t i = 0; i < replacement.size(); ++i) {
    if (replacement[i] == '\\')
      ++i;
    else if (replacement[i] == '$')
      ++count;
  }
  return count;
}

// The units of the longest group of the match.
std::int64_t LongestGroup(const icu::RegexMatcher& matcher) {
  std::int64_t longest = 0;
  for (int group = 0; group <= matcher.groupCount(); ++group) {
    UErrorCode status = U_ZERO_ERROR;
    longest = std::max<std::int64_t>(longest, matcher.end(group, status) - matcher.start(group, status));
  }
  return longest;
}

icu::UnicodeString Units(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<int>(text.size())));
}

}  // namespace

icu::RegexMatcher* RegularExpression::Matcher(std::string_view pattern, const icu::UnicodeString& text) {
  if (!fIsKnown || fPattern != pattern) {
    UErrorCode status = U_ZERO_ERROR;
    fMatcher = std::make_unique<icu::RegexMatcher>(Units(pattern), 0, status);
    fMatcher->setTimeLimit(kMaxSearchUnits, status);
    fMatcher->setStackLimit(kMaxSearchStack, status);
    if (U_FAILURE(status)) fMatcher.reset();
    fPattern = pattern;
    fIsKnown = true;
  }
  if (fMatcher != nullptr) fMatcher->reset(text);
  return fMatcher.get();
}

bool FindsMatch(RegularExpression& expression, std::string_view text, std::string_view pattern) {
  const icu::UnicodeString units = Units(text);
  icu::RegexMatcher* const matcher = expression.Matcher(pattern, units);
  UErrorCode status = U_ZERO_ERROR;
  return matcher != nullptr && matcher->find(status) && U_SUCCESS(status);
}

bool ReplaceMatches(RegularExpression& expression, std::string_view text, std::string_view pattern,
                    std::string_view replacement, std::int64_t maxSize, std::string& out) {
  const icu::UnicodeString units = Units(text);
  const icu::UnicodeString wanted = Units(replacement);
  const std::int64_t references = CountReferences(replacement);
  icu::RegexMatcher* const matcher = expression.Matcher(pattern, units);
  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString replaced;
  while (matcher != nullptr && matcher->find(status)) {
    // A unit takes a byte at least.
    const std::int64_t atMost = replaced.length() + wanted.length() + references * LongestGroup(*matcher);
    if (atMost > maxSize) return false;
    matcher->appendReplacement(replaced, wanted, status);
    if (U_FAILURE(status)) break;
  }
  if (matcher == nullptr || U_FAILURE(status) || replaced.isBogus()) {
    out.assign(text);
    return true;
  }
  matcher->appendTail(replaced);
  std::string bytes;
  replaced.toUTF8String(bytes);
  if (static_cast<std::int64_t>(bytes.size()) > maxSize) return false;
  out.swap(bytes);
  return true;
}

}  // namespace KxVeyra_940
