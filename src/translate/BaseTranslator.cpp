#include "translate/BaseTranslator.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/util/XMLString.hpp>

#include "data/DateTimeValue.h"
#include "data/NumericValue.h"
#include "data/ReadNumber.h"
#include "data/StringValue.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/VeyraTranscoder.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {
namespace {

using namespace PMMLModelTags;
using KxXML_940::ToUTF8;
using KxXML_940::View;
using xercesc::DOMDocument;
using xercesc::DOMElement;
using xercesc::DOMNode;
using xercesc::DOMNodeList;

constexpr char kDefaultEncoding[] = "UTF-8";
constexpr char kEncodingArgument[] = "encoding";

// A DOM text in UTF-8: short ASCII ones, which numbers are, stay on the stack.
class NarrowText {
 public:
  explicit NarrowText(std::u16string_view text) {
    if (text.size() > sizeof(fBuffer) || !KxXML_940::IsAscii(text)) {
      fLong = ToUTF8(text);
      fView = fLong;
      return;
    }
    std::transform(text.begin(), text.end(), fBuffer, [](XMLCh unit) { return static_cast<char>(unit); });
    fView = std::string_view(fBuffer, text.size());
  }
  NarrowText(const NarrowText&) = delete;
  NarrowText& operator=(const NarrowText&) = delete;

  std::string_view Get() const { return fView; }

 private:
  char fBuffer[64];
  std::string fLong;
  std::string_view fView;
};

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Where a character stands in a text.
struct Occurrences {
  std::size_t count = 0;
  std::size_t first = std::string_view::npos;
  std::size_t last = std::string_view::npos;

  void Note(std::size_t position) {
    if (count++ == 0) first = position;
    last = position;
  }
};

// The rules of a number's text look at signs, point and exponent letters alone, each by itself, so that an
// odd text such as 1e2E3 passes; what number it writes is for the reader of numbers to say.
bool IsDoubleText(std::string_view text) {
  if (text.empty()) return false;
  const std::size_t end = text.size() - 1;
  Occurrences lower, upper, minus, plus, point;
  for (std::size_t i = 0; i <= end; ++i) {
    switch (text[i]) {
      case 'e':
        lower.Note(i);
        break;
      case 'E':
        upper.Note(i);
        break;
      case '-':
        minus.Note(i);
        break;
      case '+':
        plus.Note(i);
        break;
      case '.':
        point.Note(i);
        break;
      default:
        if (!IsDigit(text[i])) return false;
    }
  }

  const auto isExponent = [&](const Occurrences& letter) {
    return letter.count == 0 || (letter.count == 1 && letter.first != 0 && letter.first != end);
  };
  if (!isExponent(lower) || !isExponent(upper)) return false;

  const bool hasExponent = lower.count + upper.count > 0;
  if (!hasExponent && minus.count + plus.count > 1) return false;
  const auto isSign = [&](const Occurrences& sign) {
    if (sign.count == 0) return true;
    if (sign.last == end) return false;
    return sign.last == 0 || text[sign.last - 1] == 'e' || text[sign.last - 1] == 'E';
  };
  if (!isSign(minus) || !isSign(plus)) return false;

  if (point.count == 0) return true;
  const auto standsBefore = [&](const Occurrences& letter) {
    return letter.count == 0 || point.first + 1 < letter.first;
  };
  return point.count == 1 && point.first != end && standsBefore(lower) && standsBefore(upper);
}

bool IsIntegerText(std::string_view text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  for (const char c : text)
    if (!IsDigit(c)) return false;
  return !text.empty();
}

int ReadInteger(std::string_view text) {
  const bool isNegative = text.front() == '-';
  if (text.front() == '+') text.remove_prefix(1);
  int value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec == std::errc()) return value;
  return isNegative ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
}

double NumberOfDateTime(const std::string& text, ScoreDictVar::DateTimeType type) {
  if (!DateTimeValue::IsValidDateTime(text, type))
    Raise(MessageId::kInvalidValueOfType, {text, XML_VAL_DATETIME});
  return DateTimeValue(text, type).GetDoubleValue(type);
}

}  // namespace

BaseTranslator::BaseTranslator() = default;
BaseTranslator::~BaseTranslator() = default;

ScoreModel* BaseTranslator::ParseFromTree(std::istream&, const std::string&) { return nullptr; }
ScoreModel* BaseTranslator::ParseFromTree(const std::string&, const std::string&) { return nullptr; }
ScoreModel* BaseTranslator::ParseFromTree(DOMElement*, ScoreDictionary*, ScoreDictionary*,
                                          const std::string&) {
  return nullptr;
}
ScoreModel* BaseTranslator::ParseFromTree(DOMElement*, ScoreModel*, const std::string&) { return nullptr; }
ScoreModel* BaseTranslator::ParseFromTree(DOMElement*, DOMElement*, DOMElement*, const std::string&) {
  return nullptr;
}
void BaseTranslator::SetSupportOldParser(bool) {}
ScoreModel* BaseTranslator::ParseFromTree(std::istream&, const std::string&, const std::string&) {
  return nullptr;
}
ScoreModel* BaseTranslator::ParseFromTree(DOMDocument*, ScoreDictionary*, const std::string&) {
  return nullptr;
}

DOMElement* BaseTranslator::GetFirstChildElt(const DOMNode* node) { return FirstChildElement(node); }

DOMElement* BaseTranslator::GetNextSiblingElt(const DOMNode* node) { return NextSiblingElement(node); }

DOMElement* BaseTranslator::GetChildTag(const DOMNode* node, const XMLCh* tag) {
  DOMElement* child = FirstChildElement(node);
  while (child != nullptr && !xercesc::XMLString::equals(child->getNodeName(), tag))
    child = NextSiblingElement(child);
  return child;
}

DOMElement* BaseTranslator::GetChildTagForced(const DOMNode* node, const XMLCh* tag) {
  DOMElement* child = GetChildTag(node, tag);
  if (child == nullptr) Raise(MessageId::kMissingNode, {ToUTF8(tag)});
  return child;
}

DOMElement* BaseTranslator::GetChildByTag(const DOMNode* node, const char* name) {
  return GetChildTag(node, XmlName(name).Get());
}

DOMElement* BaseTranslator::GetChildByTagForced(const DOMNode* node, const char* name) {
  return GetChildTagForced(node, XmlName(name).Get());
}

DOMNodeList* BaseTranslator::GetElementsByTagName(const DOMElement* element, const char* name) {
  if (element == nullptr) Raise(MessageId::kMissingNode, {name});
  return element->getElementsByTagName(XmlName(name).Get());
}

DOMNodeList* BaseTranslator::GetElementsByTagName(const DOMDocument* document, const char* name) {
  if (document == nullptr) Raise(MessageId::kMissingNode, {name});
  return document->getElementsByTagName(XmlName(name).Get());
}

const XMLCh* BaseTranslator::GetAttribute(const DOMElement* element, const char* name) {
  return Attribute(*element, name);
}

const XMLCh* BaseTranslator::GetAttributeForced(const DOMElement* element, const char* name) {
  return RequiredAttribute(*element, name);
}

double BaseTranslator::VerifyDouble(const XMLCh* text) { return VerifyDouble(View(text)); }

double BaseTranslator::VerifyDouble(std::u16string_view text) { return VerifyDouble(NarrowText(text).Get()); }

double BaseTranslator::VerifyDouble(std::string_view text) {
  const std::string_view trimmed = WithoutBlanks(text);
  if (!IsDoubleText(trimmed)) Raise(MessageId::kInvalidValueOfType, {trimmed, XML_VAL_DOUBLE});
  return ReadNumber(trimmed);
}

int BaseTranslator::VerifyInt(const XMLCh* text) { return VerifyInt(View(text)); }

int BaseTranslator::VerifyInt(std::u16string_view text) { return VerifyInt(NarrowText(text).Get()); }

int BaseTranslator::VerifyInt(std::string_view text) {
  if (!IsIntegerText(text)) Raise(MessageId::kInvalidValueOfType, {text, XML_VAL_INTEGER});
  return ReadInteger(text);
}

double BaseTranslator::VerifyDateTime(const XMLCh* text, ScoreDictVar::DateTimeType type) {
  return NumberOfDateTime(ToUTF8(text), type);
}

double BaseTranslator::VerifyDateTime(const std::string& text, ScoreDictVar::DateTimeType type) {
  return NumberOfDateTime(text, type);
}

ScoreValue* BaseTranslator::CarefullyMakeVarValue(const ScoreDictVar* variable, const XMLCh* text) const {
  switch (variable->GetVarType()) {
    case ScoreDictVar::STRING_VAR:
      return new StringValue(EncodedText(text));
    case ScoreDictVar::kNUMERIC_VAR:
      return new NumericValue(VerifyDouble(text));
    case ScoreDictVar::kDATETIME_VAR:
      return new DateTimeValue(VerifyDouble(text), variable->GetDateTimeType());
  }
  return nullptr;
}

ScoreValue* BaseTranslator::CarefullyMakeVarValue(const ScoreDictVar* variable,
                                                  const std::string& text) const {
  switch (variable->GetVarType()) {
    case ScoreDictVar::STRING_VAR:
      return new StringValue(text);
    case ScoreDictVar::kNUMERIC_VAR:
      return new NumericValue(VerifyDouble(text));
    case ScoreDictVar::kDATETIME_VAR:
      return new DateTimeValue(VerifyDouble(text), variable->GetDateTimeType());
  }
  return nullptr;
}

std::string BaseTranslator::TrimBlanks(const std::string& text) { return std::string(WithoutBlanks(text)); }

bool BaseTranslator::IsEqual(const XMLCh* text, const char* name) {
  return KxXML_940::EqualsUTF8(text, name);
}

bool BaseTranslator::IsEqual(const VeyraTranscoder* transcoder, const XMLCh* text, const char* name) {
  if (transcoder == nullptr) return IsEqual(text, name);
  return transcoder->transcodeTo(text) == name;
}

void BaseTranslator::CreateTranscoder(const std::string& encoding) {
  auto transcoder = std::make_unique<VeyraTranscoder>(encoding.empty() ? kDefaultEncoding : encoding);
  if (!transcoder->IsKnown()) Raise(MessageId::kUnsupportedValue, {encoding, kEncodingArgument});
  fTranscoder = std::move(transcoder);
}

std::string BaseTranslator::ToString(const XMLCh* text) const { return EncodedText(text); }

std::string BaseTranslator::EncodedText(const XMLCh* text) const {
  return fTranscoder == nullptr ? ToUTF8(text) : fTranscoder->transcodeTo(text);
}

}  // namespace KxVeyra_940
