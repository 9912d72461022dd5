#include "translate/PMMLTranslator.h"

#include <memory>

#include "xml/VeyraTranscoder.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

PMMLTranslator::PMMLTranslator(const std::string& encoding) : fEncoding(encoding) {}
PMMLTranslator::~PMMLTranslator() = default;

ScoreModel* PMMLTranslator::ParseFromTree(xercesc::DOMDocument*, const std::string&) { return nullptr; }
ScoreModel* PMMLTranslator::ParseFromTree(xercesc::DOMElement*, xercesc::DOMElement*, xercesc::DOMElement*,
                                          const std::string&) {
  return nullptr;
}

std::string PMMLTranslator::ToString(const XMLCh* text) { return KxXML_940::ToUTF8(text); }

XMLCh* PMMLTranslator::ToUTF16(const char* text) const {
  return fTranscoder == nullptr ? nullptr : fTranscoder->ChangeChar2XML(text);
}

bool PMMLTranslator::XStrEqualsUTF8Str(const XMLCh* text, const char* narrow) const {
  const std::unique_ptr<XMLCh[]> converted(ToUTF16(narrow));
  return converted != nullptr && KxXML_940::View(text) == converted.get();
}

std::string PMMLTranslator::ToUTF8Argument(const std::string& narrow) const {
  const std::unique_ptr<XMLCh[]> converted(ToUTF16(narrow.c_str()));
  return converted == nullptr ? narrow : KxXML_940::ToUTF8(converted.get());
}

}  // namespace KxVeyra_940
