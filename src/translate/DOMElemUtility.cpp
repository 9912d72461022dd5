#include "translate/DOMElemUtility.h"

#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "veyra/VYException.h"
#include "xml/VeyraTranscoder.h"

namespace KxVeyra_940 {
namespace {

using xercesc::DOMElement;
using xercesc::DOMNodeList;

template <typename Result, typename Read>
Result ReadOr(Result fallback, bool forced, Read read) {
  try {
    return read();
  } catch (const VYException&) {
    if (forced) throw;
    return fallback;
  }
}

// Reads an attribute's text.  One that is absent gives the default at once unless it is forced: it is no
// surprise to these callers, so nothing is thrown.
template <typename Result, typename Read>
Result ReadAttributeOr(Result fallback, const DOMElement& element, const std::string& name, bool forced,
                       Read read) {
  if (!forced && !element.hasAttribute(XmlName(name).Get())) return fallback;
  return ReadOr(fallback, forced, [&] { return read(RequiredAttribute(element, name.c_str())); });
}

}  // namespace

DOMElemUtility::DOMElemUtility(const PMMLTranslator* translator, const VeyraTranscoder* transcoder)
    : fTranslator(translator), fTranscoder(transcoder) {}

DOMElemUtility::~DOMElemUtility() = default;

DOMElement* DOMElemUtility::GetChildElemByName(const DOMElement* element, const std::string& name,
                                               bool forced) const {
  if (element == nullptr || name.empty() || fTranslator == nullptr) return nullptr;
  return forced ? PMMLTranslator::GetChildByTagForced(element, name.c_str())
                : PMMLTranslator::GetChildByTag(element, name.c_str());
}

std::string DOMElemUtility::GetAttributeToString(const DOMElement* element, const std::string& name,
                                                 bool forced) const {
  if (element == nullptr || name.empty() || fTranslator == nullptr || fTranscoder == nullptr) return {};
  return ReadAttributeOr(std::string(), *element, name, forced,
                         [this](const XMLCh* text) { return fTranscoder->transcodeTo(text); });
}

int DOMElemUtility::GetAttributeToInt(const DOMElement* element, const std::string& name, bool forced) const {
  if (element == nullptr || name.empty() || fTranslator == nullptr) return -1;
  return ReadAttributeOr(-1, *element, name, forced,
                         [](const XMLCh* text) { return PMMLTranslator::VerifyInt(text); });
}

double DOMElemUtility::GetAttributeToDouble(const DOMElement* element, const std::string& name,
                                            bool forced) const {
  if (element == nullptr || name.empty() || fTranslator == nullptr) return -1.0;
  return ReadAttributeOr(-1.0, *element, name, forced,
                         [](const XMLCh* text) { return PMMLTranslator::VerifyDouble(text); });
}

int DOMElemUtility::GetNodeListLength(const DOMElement* element, const std::string& name, bool) const {
  if (element == nullptr || name.empty() || fTranslator == nullptr) return 0;
  return static_cast<int>(PMMLTranslator::GetElementsByTagName(element, name.c_str())->getLength());
}

DOMElement* DOMElemUtility::GetElemFromNodeList(const DOMElement* element, const std::string& name, int index,
                                                bool) const {
  if (element == nullptr || name.empty() || fTranslator == nullptr || index < 0) return nullptr;
  // The list goes on from the item last asked for; its length would make it start again from the beginning.
  const DOMNodeList* list = PMMLTranslator::GetElementsByTagName(element, name.c_str());
  return static_cast<DOMElement*>(list->item(static_cast<XMLSize_t>(index)));
}

DOMNodeList* DOMElemUtility::GetDOMNodeList(const DOMElement* element, const std::string& name, bool) const {
  if (element == nullptr || name.empty()) return nullptr;
  DOMNodeList* list = PMMLTranslator::GetElementsByTagName(element, name.c_str());
  return list->item(0) == nullptr ? nullptr : list;
}

}  // namespace KxVeyra_940
