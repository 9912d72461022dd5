// Documents from texts, and what translating them gives as one line of text, for tables of cases.

#ifndef VEYRA_TESTS_TRANSLATE_DOCUMENTS_H_
#define VEYRA_TESTS_TRANSLATE_DOCUMENTS_H_

#include <gtest/gtest.h>
#include <memory>
#include <sstream>
#include <string>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "translate/PMMLTranslator.h"
#include "veyra/VYException.h"

namespace veyra_tests {

// The parser platform is up while a document lives.
class Document {
 public:
  explicit Document(const std::string& xml) {
    xercesc::XMLPlatformUtils::Initialize();
    fParser = std::make_unique<xercesc::XercesDOMParser>();
    const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(xml.data()), xml.size(), "text");
    fParser->parse(source);
    EXPECT_NE(Root(), nullptr) << xml;
  }
  ~Document() {
    fParser.reset();
    xercesc::XMLPlatformUtils::Terminate();
  }
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  xercesc::DOMDocument* Get() const { return fParser->getDocument(); }
  xercesc::DOMElement* Root() const { return Get()->getDocumentElement(); }

 private:
  std::unique_ptr<xercesc::XercesDOMParser> fParser;
};

// What an action raises, as "id argument|argument"; "nothing" when it does not.
template <typename Action>
std::string Refusal(Action action) {
  try {
    action();
  } catch (const KxVeyra_940::VYException& e) {
    std::string text = std::to_string(e.GetErrorCode());
    char mark = ' ';
    for (const std::string& argument : e.GetErrors().back().arguments) {
      text.append(1, mark).append(argument);
      mark = '|';
    }
    return text;
  }
  return "nothing";
}

class PlainTranslator : public KxVeyra_940::PMMLTranslator {
 public:
  explicit PlainTranslator(const std::string& encoding = "") : PMMLTranslator(encoding) {}
};

inline std::unique_ptr<KxVeyra_940::ScoreDictionary> ParseDictionary(const std::string& xml,
                                                                     bool setUpEncoders = false,
                                                                     const std::string& encoding = "") {
  const Document document(xml);
  PlainTranslator translator(encoding);
  return std::unique_ptr<KxVeyra_940::ScoreDictionary>(
      translator.ParseDictionary(document.Root(), setUpEncoders));
}

// A dictionary of one field "x" with these attributes and content.
inline std::string OneField(const std::string& attributes, const std::string& content) {
  return "<DataDictionary numberOfFields='1'><DataField name='x' " + attributes + ">" + content +
         "</DataField></DataDictionary>";
}

// The ranges that count as missing, such as "[-inf, 0) [9, 9]".
inline std::string MissingRanges(const KxVeyra_940::ScoreDictVar& variable) {
  if (variable.GetMissingValues() == nullptr) return "none";
  std::ostringstream text;
  text.precision(17);
  const auto write = [&](const KxVeyra_940::ScoreValue& bound) {
    if (bound.GetType() == KxVeyra_940::ScoreValue::kStringValueType)
      text << '\'' << bound.GetString() << '\'';
    else
      text << bound.GetDouble();
  };
  for (const auto* range : variable.GetMissingValues()->GetMissingValues()) {
    if (text.tellp() > 0) text << ' ';
    text << (range->GetLowEnd() ? '[' : '(');
    write(*range->GetMin());
    text << ", ";
    write(*range->GetMax());
    text << (range->GetHighEnd() ? ']' : ')');
  }
  return text.str();
}

// The valid values with their labels, such as "1=one 2=two".
inline std::string Labels(const KxVeyra_940::ScoreDictVar& variable) {
  if (variable.GetValueLabels() == nullptr) return "none";
  std::ostringstream text;
  for (const auto* label : variable.GetValueLabels()->GetAllValueLabels())
    text << (text.tellp() > 0 ? " " : "") << label->GetValue()->GetString() << '=' << label->GetLabel();
  return text.str();
}

}  // namespace veyra_tests

#endif  // VEYRA_TESTS_TRANSLATE_DOCUMENTS_H_
