#include "veyra/ModelFactory.h"

#include <fstream>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include "error/ProcessState.h"
#include "error/Raise.h"
#include "error/ScoringLog.h"
#include "factory/DocumentParserInternal.h"
#include "factory/FactoryInternal.h"
#include "transform/TransformationDictionary.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"
#include "vocabulary/ZENTModelTags.h"
#include "xml/ScoreSax2Parser.h"
#include "xml/XercesWrapper.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

std::vector<std::string> ModelFactory::fModelNames;
bool ModelFactory::fInitialized = false;

namespace {

using xercesc::DOMDocument;
using xercesc::DOMElement;
using Names = std::vector<std::string>;

constexpr const char* kMakeModel = "MakeModelFromXML";
constexpr const char* kGetLibraryPath = "GetLibraryPath";

void FillCatalogueOnce(const Names& names) {
  const sfGuard lock(XercesLock, sfMutex::kWaitLock);
  if (&names != &ModelFactory::fModelNames && ModelFactory::fModelNames.empty()) {
    ModelFactory::fModelNames = names;
  }
}

// What a root tag stands for: a search of the catalogue, or one model kind.
struct RootRow {
  const char* tag;
  const char* modelName;  // null: search the catalogue
};

const RootRow* FindRoot(const std::string& tag) {
  static const RootRow kRoots[] = {
      {PMMLModelTags::XML_ELE_PMML, nullptr},
      {ZENTModelTags::XML_ELE_ZENTML.c_str(), nullptr},
      {PMMLStandardTags::XML_ROOT_TREE, PMMLModelTags::XML_ELE_TREEMODEL},
      {PMMLStandardTags::XML_ROOT_ASSOCLATTICE, nullptr},
      {PMMLStandardTags::XML_ROOT_SEQUENTIALASSOCIATIONLATTICE, nullptr},
  };
  for (const RootRow& row : kRoots) {
    if (tag == row.tag) return &row;
  }
  return nullptr;
}

// The model kind that the root alone decides; empty when the catalogue is searched.
std::string KindOfRoot(const RootRow& row, const DocumentParser& parser) {
  if (row.modelName != nullptr) return row.modelName;
  if (row.tag == ZENTModelTags::XML_ELE_ZENTML &&
      FindModelElement(parser.GetFirstElements(), {ZENTModelTags::XML_ELE_REGRESS_MODEL}) != nullptr) {
    return PMMLModelTags::XML_ELE_REGRESSMODEL;
  }
  return {};
}

std::string SearchCatalogue(const DocumentParser& parser, const Names& names) {
  const DOMElement* element = FindModelElement(parser.GetFirstElements(), names);
  if (element == nullptr) Raise(MessageId::kUnsupportedModel, {""});
  return KxXML_940::ToUTF8(element->getNodeName());
}

// One start of the parser platform that no stop follows.
void KeepPlatformUp() {
  if (!ModelFactory::fInitialized) xercesc::XMLPlatformUtils::Initialize();
}

// Runs a plug-in's translator under the guard.  An exception of the parser uses the platform's memory manager
// until the host is done with it, which is after the guard has ended: it keeps the platform up.
template <typename Build>
ScoreModel* Translate(Build build) {
  try {
    return build();
  } catch (const xercesc::XMLException&) {
    KeepPlatformUp();
    throw;
  } catch (const xercesc::DOMException&) {
    KeepPlatformUp();
    throw;
  } catch (const xercesc::SAXException&) {
    KeepPlatformUp();
    throw;
  }
}

// Builds with the plug-in of `givenName`, or of the first catalogue name that the document holds when it is
// empty.  `build` gets the translator.
template <typename Build>
ScoreModel* BuildFromDocument(const Names& names, const DocumentParser& parser, const std::string& givenName,
                              Build build) {
  TraceEnter(kGetLibraryPath);
  const std::string modelName = givenName.empty() ? SearchCatalogue(parser, names) : givenName;
  const std::unique_ptr<ScoreTranslator> translator = GetNamedTranslator(names, modelName);
  ScoreModel* model = Translate([&] { return build(*translator); });
  ScoringLog::GetInstance()->TraceText(kTraceEnterAndExit, "Make Model End.");
  return model;
}

void Rewind(std::istream& in) {
  if (in.bad()) return;
  in.clear();
  in.seekg(0);
}

// True, with the stream rewound either way, when the document holds a nearest-neighbour model: such models
// are built from the stream, for their training instances may be large.
bool IsNearestNeighborDocument(std::istream& in) {
  const bool found = ScoreSax2Parser::IsModelType(PMMLModelTags::XML_ELE_KNNMODEL, in);
  Rewind(in);
  return found;
}

ScoreModel* BuildNearestNeighborModel(std::istream& in, const Names& names, const std::string& auxPath) {
  const std::unique_ptr<ScoreTranslator> translator =
      GetScoreTranslator(names, PMMLModelTags::XML_ELE_KNNMODEL);
  if (translator == nullptr) return nullptr;
  ScoreModel* model = Translate([&] { return translator->ParseFromTree(in, std::string(), auxPath); });
  ScoringLog::GetInstance()->TraceText(kTraceEnterAndExit, "Make Model End");
  return model;
}

std::string RootTag(const DOMElement& root) {
  std::string tag = KxXML_940::ToUTF8(root.getTagName());
  if (tag.empty()) Raise(MessageId::kEmptyRootTag);
  return tag;
}

// Builds from a stream.  `build` gets the parser, the document and the tag of its root; a nearest-neighbour
// model is built without it.
template <typename Build>
ScoreModel* BuildFromStream(std::istream& in, const Names& names, const std::string& auxPath, Build build) {
  TraceEnter(kMakeModel);
  // Everything ends in the reverse of this order: translator, parser, guard.
  const XercesWrapper guard(ModelFactory::fInitialized);
  FillCatalogueOnce(names);
  if (IsNearestNeighborDocument(in)) return BuildNearestNeighborModel(in, names, auxPath);
  DocumentParser parser;
  DOMDocument* document = GetDocElement(parser, in, "");
  return build(parser, document, RootTag(*document->getDocumentElement()));
}

// The plug-in of a model element that stands on its own; two element names of older documents have another.
std::string PluginOfElement(const DOMElement& element) {
  const std::string tag = KxXML_940::ToUTF8(element.getTagName());
  if (tag == PMMLModelTags::XML_ELE_DECISIONTREE) return PMMLModelTags::XML_ELE_TREEMODEL;
  if (tag == PMMLModelTags::XML_ELE_REGRESSION) return PMMLModelTags::XML_ELE_REGMODEL;
  return tag;
}

template <typename Build>
ScoreModel* BuildFromElement(void* modelElement, const Names& modelNames, Build build) {
  const XercesWrapper guard(ModelFactory::fInitialized);
  TraceEnter(kMakeModel);
  ScoreModel* model = nullptr;
  if (auto* element = static_cast<DOMElement*>(modelElement)) {
    const std::string name = PluginOfElement(*element);
    ScoringLog::GetInstance()->TraceText(kTraceDetails, "Model name is :%s", name.c_str());
    const Names names = modelNames.empty() ? ModelFactory::fModelNames : modelNames;
    const std::unique_ptr<ScoreTranslator> translator = GetScoreTranslator(names, name);
    if (translator != nullptr) model = Translate([&] { return build(*translator, element); });
  }
  TraceExit(kMakeModel);
  return model;
}

template <typename Build>
ScoreModel* BuildFromElements(DOMElement* modelElement, const Names& names, bool supportOldParser,
                              Build build) {
  TraceEnter(kGetLibraryPath);
  if (modelElement == nullptr) return nullptr;
  const std::unique_ptr<ScoreTranslator> translator =
      GetNamedTranslator(names, KxXML_940::ToUTF8(modelElement->getNodeName()));
  translator->SetSupportOldParser(supportOldParser);
  ScoreModel* model = build(*translator);
  ScoringLog::GetInstance()->TraceText(kTraceEnterAndExit, "Make Model End.");
  return model;
}

}  // namespace

ScoreModel* ModelFactory::MakeModelFromXML(const std::string& pmmlPath, const std::string& catalogPath,
                                           const std::string& encoding) {
  return MakeModelFromXML(pmmlPath, catalogPath, encoding, std::string());
}

ScoreModel* ModelFactory::MakeModelFromXML(const std::string& pmmlPath, const std::string& catalogPath,
                                           const std::string& encoding, const std::string& auxPath) {
  const XercesWrapper guard(fInitialized);
  TraceEnter(kMakeModel);
  const std::string path = ConvertedPath(pmmlPath);
  Names names;
  GetModelNames(ConvertedPath(catalogPath), names);
  FillCatalogueOnce(names);
  std::ifstream in(path, std::ios::binary);
  if (!in.is_open() || IsDirectory(path)) Raise(MessageId::kCannotOpenDocument, {path});
  return MakeModelFromXML(in, names, encoding, ConvertedPath(auxPath));
}

ScoreModel* ModelFactory::MakeModelFromXML(std::istream& in, const Names& modelNames,
                                           const std::string& encoding, const std::string& auxPath) {
  const auto build = [&](const DocumentParser& parser, DOMDocument* document, const std::string& tag) {
    const RootRow* row = FindRoot(tag);
    if (row == nullptr) Raise(MessageId::kUnsupportedModel, {tag});
    return BuildFromDocument(modelNames, parser, KindOfRoot(*row, parser), [&](ScoreTranslator& translator) {
      return translator.ParseFromTree(document, encoding);
    });
  };
  return BuildFromStream(in, modelNames, auxPath, build);
}

ScoreModel* ModelFactory::MakeModelFromXML(std::istream& in, const Names& modelNames,
                                           const std::string& encoding) {
  return MakeModelFromXML(in, modelNames, encoding, std::string());
}

ScoreModel* ModelFactory::MakeModelFromXML(std::istream& in, const std::string& modelName) {
  return MakeModelFromXML(in, Names{modelName}, std::string());
}

ScoreModel* ModelFactory::MakeModelFromXML(std::istream& in, std::string& catalogPath) {
  Names names;
  GetModelNames(ConvertedPath(catalogPath), names);
  return MakeModelFromXML(in, names, std::string());
}

ScoreModel* ModelFactory::MakeModelFromXML(std::istream& in, ScoreDictionary* dictionary,
                                           const Names& modelNames, const std::string& encoding) {
  const auto build = [&](const DocumentParser& parser, DOMDocument* document, const std::string& tag) {
    const RootRow* row = FindRoot(tag);
    const bool withDictionary = row == nullptr || tag == PMMLModelTags::XML_ELE_PMML;
    const std::string kind = withDictionary ? std::string() : KindOfRoot(*row, parser);
    return BuildFromDocument(modelNames, parser, kind, [&](ScoreTranslator& translator) {
      return withDictionary ? translator.ParseFromTree(document, dictionary, encoding)
                            : translator.ParseFromTree(document, encoding);
    });
  };
  return BuildFromStream(in, modelNames, std::string(), build);
}

ScoreModel* ModelFactory::MakeModelFromXML(void* modelElement, const Names& modelNames,
                                           ScoreDictionary* dictionary,
                                           ScoreDictionary* transformationDictionary,
                                           const std::string& encoding) {
  return BuildFromElement(modelElement, modelNames, [&](ScoreTranslator& translator, DOMElement* element) {
    return translator.ParseFromTree(element, dictionary, transformationDictionary, encoding);
  });
}

ScoreModel* ModelFactory::MakeModelFromXML(void* modelElement, const Names& modelNames, ScoreModel* baseModel,
                                           const std::string& encoding) {
  return BuildFromElement(modelElement, modelNames, [&](ScoreTranslator& translator, DOMElement* element) {
    return translator.ParseFromTree(element, baseModel, encoding);
  });
}

ScoreModel* ModelFactory::MakeModelFromXML(DOMElement* first, DOMElement* second, DOMElement* modelElement,
                                           const Names& modelNames, const std::string& encoding,
                                           bool supportOldParser) {
  return BuildFromElements(modelElement, modelNames, supportOldParser, [&](ScoreTranslator& translator) {
    return translator.ParseFromTree(first, second, modelElement, encoding);
  });
}

ScoreModel* ModelFactory::MakeModelFromXML(ScoreModel* baseModel, DOMElement* modelElement,
                                           const Names& modelNames, const std::string& encoding,
                                           bool supportOldParser) {
  return BuildFromElements(modelElement, modelNames, supportOldParser, [&](ScoreTranslator& translator) {
    ScoreDictionary* const dictionary = baseModel == nullptr ? nullptr : baseModel->GetDictionary();
    ScoreDictionary* const transformationDictionary =
        baseModel == nullptr ? nullptr : baseModel->GetTransformationDictionary();
    return translator.ParseFromTree(modelElement, dictionary, transformationDictionary, encoding);
  });
}

void ModelFactory::Initialize(std::string catalogPath) {
  xercesc::XMLPlatformUtils::Initialize();
  if (!catalogPath.empty()) {
    try {
      Names names;
      GetModelNames(ConvertedPath(catalogPath), names);
      fModelNames = std::move(names);
    } catch (...) {
      // The platform is as it was before: a second try starts clean.
      xercesc::XMLPlatformUtils::Terminate();
      throw;
    }
  }
  fInitialized = true;
}

void ModelFactory::Terminate() { xercesc::XMLPlatformUtils::Terminate(); }

}  // namespace KxVeyra_940
