#include "veyra/DerivingDocument.h"

#include <cstdio>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "veyra/Adaptations.h"
#include "veyra/Failures.h"
#include "veyra/LibrarySession.h"
#include "veyra/MemoryStream.h"
#include "veyra/ModelFactory.h"
#include "xml/XmlText.h"

namespace VeyraTool {

using KxVeyra_940::ModelFactory;
using KxVeyra_940::ScoreDictionary;
using KxVeyra_940::TransformationDictionary;
using KxVeyra_940::VYException;

namespace {

// What in the document type makes the parser read or build more than the document; empty for nothing.
std::string DangerOf(const xercesc::DOMDocument& document) {
  const xercesc::DOMDocumentType* const type = document.getDoctype();
  if (type == nullptr) return {};
  const auto isGiven = [](const XMLCh* text) { return text != nullptr && *text != 0; };
  if (isGiven(type->getSystemId()) || isGiven(type->getPublicId())) return "refers to an external DTD";
  const std::string subset = KxXML_940::ToUTF8(type->getInternalSubset());
  if (subset.find("<!ENTITY") != std::string::npos) return "declares an entity";
  if (subset.find('%') != std::string::npos) return "uses a parameter entity";
  return {};
}

}  // namespace

DerivingDocument::DerivingDocument(const DocumentFile& file, bool trustsDtd, bool isLenient) {
  const std::string& path = file.path;
  std::string text = ReadWhole(file);
  if (!trustsDtd || isLenient) {
    const ParsedDocument parsed(text);
    const bool isParsed = parsed.GetRoot() != nullptr;
    if (!isParsed && !trustsDtd) throw CommandFailure(kModelRefused, path + ": " + parsed.GetFault());
    const std::string danger = isParsed ? DangerOf(*parsed.GetRoot()->getOwnerDocument()) : std::string();
    if (!trustsDtd && !danger.empty())
      throw CommandFailure(kModelRefused,
                           path + ": the document " + danger + ", which is read only with --trust-dtd");
    if (isLenient && isParsed) {
      const std::vector<Applied> adapted = Adapt(*parsed.GetRoot()->getOwnerDocument());
      for (const Applied& one : adapted)
        std::fprintf(stderr, "veyra: %s: adapted: %s\n", path.c_str(), Describe(one).c_str());
      if (!adapted.empty()) text = parsed.Serialise();
    }
  }
  const auto build = [this](std::string_view document) {
    MemoryStream in(document);
    ScoreDictionary* fields = nullptr;
    try {
      transformations.reset(ModelFactory::GetTransformationDictionaryFromXML(in, fields, {}));
    } catch (...) {
      data.reset(fields);
      throw;
    }
    data.reset(fields);
  };
  try {
    build(text);
  } catch (const VYException& exception) {
    throw CommandFailure(kModelRefused, ExplainRefusal(file, exception, isLenient, build));
  }
  if (transformations == nullptr)
    throw CommandFailure(kModelRefused, path + ": the document derives no field");
}

DerivingDocument::Library::Library() { ModelFactory::Initialize({}); }

DerivingDocument::Library::~Library() { ModelFactory::Terminate(); }

}  // namespace VeyraTool
