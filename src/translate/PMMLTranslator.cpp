#include "translate/PMMLTranslator.h"

#include <memory>

#include "translate/CategoryListsInternal.h"
#include "xml/VeyraTranscoder.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

PMMLTranslator::PMMLTranslator(const std::string& encoding)
    : fEncoding(encoding), fCategories(std::make_unique<CategoryLists>()) {}
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
  if (converted == nullptr || KxXML_940::View(text) != converted.get()) return false;
  // A conversion stops at what it cannot convert and does not tell.  One of a longer text stops there too.
  const std::unique_ptr<XMLCh[]> longer(ToUTF16((std::string(narrow) + ' ').c_str()));
  const std::u16string_view units = KxXML_940::View(longer.get());
  return units.size() == KxXML_940::View(text).size() + 1 && units.starts_with(KxXML_940::View(text));
}

std::string PMMLTranslator::ToUTF8Argument(const std::string& narrow) const {
  const std::unique_ptr<XMLCh[]> converted(ToUTF16(narrow.c_str()));
  return converted == nullptr ? narrow : KxXML_940::ToUTF8(converted.get());
}

}  // namespace KxVeyra_940
