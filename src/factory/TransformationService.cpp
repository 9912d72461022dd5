// The factory's second service: the derived fields of a document, without a plug-in.

#include <fstream>
#include <memory>

#include "error/Raise.h"
#include "error/ScoringLog.h"
#include "factory/FactoryInternal.h"
#include "transform/TransformationDictionary.h"
#include "translate/PMMLTranslator.h"
#include "veyra/ModelFactory.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XercesWrapper.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

constexpr const char* kGetDictionary = "GetTransformationDictionaryFromXML";

}  // namespace

TransformationDictionary* ModelFactory::GetTransformationDictionaryFromXML(const std::string& pmmlPath,
                                                                           ScoreDictionary*& dictionary,
                                                                           const std::string& encoding) {
  TraceEnter(kGetDictionary);
  const XercesWrapper guard(fInitialized);
  std::ifstream in(pmmlPath, std::ios::binary);
  if (!in.is_open() || IsDirectory(pmmlPath)) Raise(MessageId::kCannotOpenFile, {pmmlPath});
  return GetTransformationDictionaryFromXML(in, dictionary, encoding);
}

TransformationDictionary* ModelFactory::GetTransformationDictionaryFromXML(std::istream& in,
                                                                           ScoreDictionary*& dictionary,
                                                                           const std::string& encoding) {
  const XercesWrapper guard(fInitialized);
  std::unique_ptr<TransformationDictionary> transformations;
  {
    xercesc::XercesDOMParser parser;
    const xercesc::DOMElement& root = *GetDocElement(parser, in, {})->getDocumentElement();
    if (KxXML_940::EqualsAscii(root.getTagName(), PMMLModelTags::XML_ELE_PMML)) {
      auto* const fields = BaseTranslator::GetChildByTagForced(&root, PMMLModelTags::XML_ELE_DATADICTIONARY);
      auto* const derived = BaseTranslator::GetChildByTagForced(&root, PMMLModelTags::XML_ELE_TRANSFORMATION);
      PMMLTranslator translator(encoding);
      dictionary = translator.ParseDictionary(fields, false);
      transformations.reset(translator.HandleTransformationDictionary(derived, dictionary));
      if (transformations != nullptr) transformations->SetUpDerivedCaseRecord();
    }
  }
  TraceExit(kGetDictionary);
  return transformations.release();
}

}  // namespace KxVeyra_940
