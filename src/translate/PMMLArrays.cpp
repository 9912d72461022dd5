// Arrays of numbers and of texts.

#include <optional>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLString.hpp>

#include "error/Raise.h"
#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "veyra/ScoreEncoder.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {
namespace {

using namespace PMMLModelTags;
using KxXML_940::EqualsAscii;
using KxXML_940::ToUTF8;
using KxXML_940::View;
using xercesc::DOMElement;

constexpr char kArrayOrRow[] = "Array, x-BasisRow,X-BasisRow";
constexpr char16_t kWhiteSpace[] = u" \t\n\r";
constexpr char16_t kEscapedQuote[] = u"\\\"";

// The next run of characters that are no white space; `rest` becomes what follows it.  Empty at the end.
std::u16string_view NextRun(std::u16string_view& rest) {
  const std::size_t start = rest.find_first_not_of(kWhiteSpace);
  if (start == std::u16string_view::npos) return rest = {};
  const std::size_t end = std::min(rest.find_first_of(kWhiteSpace, start), rest.size());
  const std::u16string_view run = rest.substr(start, end - start);
  rest.remove_prefix(end);
  return run;
}

std::size_t CountRuns(std::u16string_view text) {
  std::size_t count = 0;
  while (!NextRun(text).empty()) ++count;
  return count;
}

void RequireItems(std::u16string_view text) {
  if (text.find_first_not_of(kWhiteSpace) == std::u16string_view::npos)
    Raise(MessageId::kEmptyIn, {XML_ELE_VALUE, XML_ELE_ARRAY});
}

[[noreturn]] void RaiseSizeMismatch(int expected, std::size_t found) {
  Raise(MessageId::kArraySizeMismatch, {std::to_string(expected), XML_ATT_ARRAY_N, std::to_string(found)});
}

// How many items a numeric array must hold; nothing when any number will do.
std::optional<int> ExpectedItems(const DOMElement& element, int count) {
  if (HasTag(element, XML_ELE_XBASISROW) || HasTag(element, XML_ELE_UPERXBASISROW)) return count;
  if (HasTag(element, XML_ELE_ARRAY)) return OptionalInteger(element, XML_ATT_ARRAY_N);
  Raise(MessageId::kUnexpectedValue, {ToUTF8(element.getTagName()), XML_ELE_ARRAY});
}

template <typename Number>
std::vector<Number> NumericArray(const DOMElement* element, int count,
                                 Number (*verify)(std::u16string_view)) {
  if (element == nullptr) Raise(MessageId::kMissingNode, {kArrayOrRow});
  const std::optional<int> expected = ExpectedItems(*element, count);
  if (!element->hasChildNodes()) Raise(MessageId::kNoChildElement, {XML_ELE_ARRAY});

  std::u16string buffer;
  std::u16string_view rest = View(TextOf(*element, buffer));
  RequireItems(rest);
  const std::size_t found = CountRuns(rest);
  if (expected.has_value() && (*expected < 0 || static_cast<std::size_t>(*expected) != found))
    RaiseSizeMismatch(*expected, found);

  std::vector<Number> numbers;
  numbers.reserve(found);
  for (auto run = NextRun(rest); !run.empty(); run = NextRun(rest)) numbers.push_back(verify(run));
  return numbers;
}

// Cuts the text of a string array into items.
class ItemScanner {
 public:
  ItemScanner(std::u16string_view text, bool escapes) : fText(text), fEscapes(escapes) {}

  // The next item: what stands between the quotes of a quoted one.  False at the end.
  bool Next(std::u16string& item) {
    std::size_t start = kNone;
    while (fPosition < fText.size()) {
      const char16_t unit = fText[fPosition];
      if (unit == u'"') {
        TakeQuoted(item);
        return true;
      }
      if (unit == u' ' && start != kNone) break;
      if (IsEscapedQuote(fPosition)) {
        fPosition += 2;
        continue;
      }
      if (unit != u' ' && unit != u'\n' && start == kNone) start = fPosition;
      ++fPosition;
    }
    if (start == kNone) return false;
    item = fText.substr(start, fPosition - start);
    item.erase(item.find_last_not_of(u'\n') + 1);
    return true;
  }

 private:
  static constexpr std::size_t kNone = std::u16string_view::npos;

  bool IsEscapedQuote(std::size_t position) const {
    return fEscapes && fText.substr(position, 2) == kEscapedQuote;
  }

  // Drops an unquoted item under way.
  void TakeQuoted(std::u16string& item) {
    item.clear();
    for (std::size_t i = fPosition + 1; i < fText.size(); ++i) {
      if (IsEscapedQuote(i)) {
        item += fText[++i];
      } else if (fText[i] == u'"') {
        fPosition = i + 1;
        return;
      } else {
        item += fText[i];
      }
    }
    Raise(MessageId::kInvalidContent, {ToUTF8(fText), XML_ELE_ARRAY});
  }

  std::u16string_view fText;
  bool fEscapes;
  std::size_t fPosition = 0;
};

// A backslash that is a category of its own cannot introduce a quote.  Only texts are decoded to texts.
bool HasBackslashCategory(const ScoreDictVar* variable) {
  const ScoreEncoder* encoder = variable == nullptr ? nullptr : variable->GetEncoder();
  return encoder != nullptr && encoder->GetEncoderType() == ScoreEncoder::kCatStringEncoder &&
         encoder->EncodeConst(std::string("\\")) >= 0;
}

}  // namespace

std::vector<double> PMMLTranslator::VerifyDoubleArray(const DOMElement* element, int count) {
  return NumericArray<double>(element, count, &BaseTranslator::VerifyDouble);
}

std::vector<int> PMMLTranslator::VerifyIntArray(const DOMElement* element, int count) {
  return NumericArray<int>(element, count, &BaseTranslator::VerifyInt);
}

std::vector<std::string> PMMLTranslator::ParseStrArray(const DOMElement* element) const {
  if (element == nullptr) return {};
  return GetArrayElements(element, OptionalText(*element, XML_ATT_ARRAY_TYPE), nullptr);
}

std::vector<std::string> PMMLTranslator::GetArrayElements(const DOMElement* node, const std::string& type,
                                                          const ScoreDictVar* variable) const {
  const bool escapes = !HasBackslashCategory(variable);
  const int declared = node == nullptr ? 0 : OptionalInteger(*node, XML_ATT_ARRAY_N).value_or(0);
  if (node == nullptr || !node->hasChildNodes())
    Raise(MessageId::kMissingNodeIn, {XML_ELE_ARRAY, XML_ELE_SETPREDICATE});

  std::u16string buffer;
  const std::u16string_view text = View(TextOf(*node, buffer));
  RequireItems(text);

  std::vector<std::string> items;
  ItemScanner scanner(text, escapes);
  for (std::u16string item; scanner.Next(item);) {
    if (type == XML_VAL_ARRAY_TYPE_REAL) VerifyDouble(item);
    if (type == XML_VAL_ARRAY_TYPE_INT) VerifyInt(item);
    items.push_back(EncodedText(item.c_str()));
  }
  if (declared != 0 && (declared < 0 || static_cast<std::size_t>(declared) != items.size()))
    RaiseSizeMismatch(declared, items.size());
  return items;
}

DOMElement* PMMLTranslator::GetArrayNode(const xercesc::DOMNode* node) {
  DOMElement* array = GetChildByTag(node, XML_ELE_ARRAY);
  if (array == nullptr) Raise(MessageId::kMissingNodeIn, {XML_ELE_ARRAY, XML_ELE_SETPREDICATE});
  return array;
}

}  // namespace KxVeyra_940
