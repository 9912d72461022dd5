#include "veyra/DoctorCommand.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include "error/Messages.h"
#include "translate/DomReader.h"
#include "translate/ModelElements.h"
#include "translate/PMMLTranslator.h"
#include "translate/ZENTTranslator.h"
#include "veyra/Adaptations.h"
#include "veyra/ElementPath.h"
#include "veyra/KnownFunctions.h"
#include "veyra/LibrarySession.h"
#include "veyra/ModelFactory.h"
#include "veyra/OutputCheck.h"
#include "veyra/OutputFile.h"
#include "veyra/ParsedDocument.h"
#include "veyra/PluginSearch.h"
#include "veyra/ZentDocument.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/ZENTModelTags.h"
#include "xml/XmlText.h"

namespace VeyraTool {

namespace Tags = KxVeyra_940::PMMLModelTags;
using KxVeyra_940::ForEachChildElement;
using KxVeyra_940::HasTag;
using KxVeyra_940::MessageId;
using KxVeyra_940::OptionalText;
using KxVeyra_940::ScoreDictVar;
using KxVeyra_940::ScoreModel;
using KxVeyra_940::VYException;
using xercesc::DOMElement;
using xercesc::DOMNode;

namespace {

// Whether elements below this one are the writer's own.
bool IsOpen(const DOMElement& element) {
  return HasTag(element, Tags::XML_ELE_EXTENSION) || HasTag(element, Tags::XML_ELE_INLTABLE);
}

// By the prefix of its constant.
bool IsElementTag(std::string_view name) {
  return name.starts_with("XML_EL") || name.starts_with("XML_MSTAT_");
}

std::set<std::string_view> MakeVocabulary() {
  std::set<std::string_view> words;
#define VEYRA_TAG(name, text) \
  if (IsElementTag(#name)) words.insert(text);
#include "vocabulary/PMMLModelTags.def"
#include "vocabulary/PMMLStandardTags.def"
#undef VEYRA_TAG
  return words;
}

// The next element in document order that does not lie below `element`; null behind the last one.
const DOMElement* NextBeside(const DOMElement& root, const DOMElement& element) {
  const DOMNode* node = &element;
  while (node != &root) {
    if (const DOMElement* sibling = KxVeyra_940::NextSiblingElement(node)) return sibling;
    node = node->getParentNode();
  }
  return nullptr;
}

// Every element but those that are the writer's own.  Needs no stack, so that a deep document is no concern.
void ForEachElement(const DOMElement& root, const std::function<void(const DOMElement&)>& action) {
  for (const DOMElement* element = &root; element != nullptr;) {
    action(*element);
    const DOMElement* child = IsOpen(*element) ? nullptr : KxVeyra_940::FirstChildElement(element);
    element = child != nullptr ? child : NextBeside(root, *element);
  }
}

// The same thing at several places: how often, and where first.
struct Places {
  std::size_t count = 0;
  std::string first;

  void Add(const DOMElement& element) {
    if (count++ == 0) first = PathOf(element);
  }
  std::string GetText() const {
    return first + (count > 1 ? " (and " + std::to_string(count - 1) + " more)" : "");
  }
};

class Doctor {
 public:
  Doctor(const DoctorOptions& options, std::string& out)
      : fLibrary(options.catalog), fFile(options.model), fAuxPath(options.auxPath), fOut(out) {}

  ExitStatus Run() {
    fDocument = std::make_unique<ParsedDocument>(fFile, ParsedDocument::Extent::kWhole);
    if (!fDocument->GetFault().empty()) {
      Say("not well-formed", fDocument->GetFault(), {});
      return Conclude(1);
    }
    FindUnknownElements();
    FindUnknownFunctions();
    FindDroppedOperands();
    TryToLoad();
    ListColumns();
    return Conclude(fFindings);
  }

 private:
  const DOMElement& Root() const { return *fDocument->GetRoot(); }

  void Say(const std::string& what, const std::string& text, const std::string& place) {
    fOut.append(what).append(": ").append(text).append("\n");
    if (!place.empty()) fOut.append("    in ").append(place).append("\n");
  }

  void Find(const std::string& what, const std::string& text, const std::string& place) {
    ++fFindings;
    Say(what, text, place);
  }

  ExitStatus Conclude(std::size_t findings) {
    if (findings == 0) {
      fOut += "Nothing keeps it from being scored.\n";
      return kDone;
    }
    fOut += fIsScoredLeniently ? "It can be scored with --lenient only.\n" : "It cannot be scored.\n";
    return kModelRefused;
  }

  // They are passed over when a document is scored, which may or may not be what its writer meant.
  void FindUnknownElements() {
    const bool isZent = IsZent(Root());
    const std::set<std::string_view> vocabulary = isZent ? ZentVocabulary() : MakeVocabulary();
    std::map<std::string, Places> unknown;
    ForEachElement(Root(), [&](const DOMElement& element) {
      const std::string tag = KxXML_940::ToUTF8(element.getTagName());
      // Lists of values of tables and names with a prefix are the writer's own.
      if (!vocabulary.contains(tag) && tag.find(':') == std::string::npos) unknown[tag].Add(element);
    });
    for (const auto& [tag, places] : unknown) {
      Say("unknown element",
          "'" + tag + "' is no element of " +
              (isZent ? KxVeyra_940::ZENTModelTags::XML_ELE_ZENTML.c_str() : Tags::XML_ELE_PMML),
          places.GetText());
    }
  }

  void FindUnknownFunctions() {
    std::set<std::string> defined;
    std::map<std::string, Places> unknown;
    ForEachElement(Root(), [&](const DOMElement& element) {
      const bool isDefinition = HasTag(element, Tags::XML_ELE_DEFINEFUNCTION);
      if (isDefinition) defined.insert(OptionalText(element, Tags::XML_ATT_NAME));
      if (!HasTag(element, Tags::XML_ELE_APPLY)) return;
      const std::string function = OptionalText(element, Tags::XML_ATT_APPLY_FUNCTION);
      if (!IsKnownFunction(function)) unknown[function].Add(element);
    });
    for (const auto& [function, places] : unknown) {
      Find("unknown function",
           "'" + function + "'" +
               (defined.contains(function) ? " is defined by the document, which is not supported"
                                           : " is no function of the library"),
           places.GetText());
    }
  }

  // The function of such an Apply has an operand less than its writer meant.
  void FindDroppedOperands() {
    constexpr const char* kOperands[] = {Tags::XML_ELE_APPLY, Tags::XML_ELE_FIELDREF, Tags::XML_ELE_CONSTANT,
                                         Tags::XML_ELE_EXTENSION};
    std::map<std::string, Places> dropped;
    ForEachElement(Root(), [&](const DOMElement& element) {
      const DOMNode* const parent = element.getParentNode();
      if (parent == nullptr || !HasTag(*parent, Tags::XML_ELE_APPLY)) return;
      if (std::ranges::any_of(kOperands, [&](const char* tag) { return HasTag(element, tag); })) return;
      dropped[KxXML_940::ToUTF8(element.getTagName())].Add(element);
    });
    for (const auto& [tag, places] : dropped)
      Say("dropped operand", "'" + tag + "' below an Apply is passed over: the function lacks an operand",
          places.GetText());
  }

  static bool IsInCatalogue(const std::string& kind) {
    const std::vector<std::string>& names = KxVeyra_940::ModelFactory::fModelNames;
    return std::find(names.begin(), names.end(), kind) != names.end();
  }

  // What the catalogue has, else what says what it reads.
  const DOMElement* FindModelElement() const {
    if (IsZent(Root())) return FindZentModel(Root());
    const DOMElement* known = nullptr;
    const DOMElement* other = nullptr;
    ForEachChildElement(&Root(), [&](const DOMElement& child) {
      if (!KxVeyra_940::IsModelElement(child)) return;
      if (known == nullptr && IsInCatalogue(KxXML_940::ToUTF8(child.getTagName()))) known = &child;
      const bool hasSchema =
          KxVeyra_940::BaseTranslator::GetChildByTag(&child, Tags::XML_ELE_MININGSCHEMA) != nullptr;
      if (other == nullptr && hasSchema) other = &child;
    });
    return known != nullptr ? known : other;
  }

  void FindPlugin() {
    const DOMElement* model = FindModelElement();
    if (model == nullptr) return Find("no model", "there is nothing to score with", PathOf(Root()));
    // The root of the other format decides by itself.
    const bool isZent = IsZent(Root());
    const std::string kind = isZent ? Tags::XML_ELE_REGRESSMODEL : KxXML_940::ToUTF8(model->getTagName());
    if (!isZent && !IsInCatalogue(kind)) {
      return Find("unknown model", "'" + kind + "' does not stand in the catalogue", PathOf(*model));
    }
    const PluginSearch search = SearchPlugin(kind);
    if (search.fault.empty()) return;
    Find("no plug-in", "'" + kind + "' needs " + search.library + ": " + search.fault, PathOf(*model));
    for (const std::string& directory : search.tried)
      fOut.append("    looked in ").append(directory).append("\n");
  }

  // Why the library refuses the document; and why it refuses its dictionary, when it did not come to that.
  std::vector<VYException> Try() {
    std::vector<VYException> refusals;
    try {
      fModel = fLibrary.MakeModel(fDocument->Serialise(), fAuxPath);
    } catch (const VYException& exception) {
      refusals.push_back(exception);
      const auto id = static_cast<MessageId>(exception.GetErrorCode());
      if (id == MessageId::kNoPlugin || id == MessageId::kUnsupportedModel) TryDictionary(refusals);
    }
    return refusals;
  }

  void TryDictionary(std::vector<VYException>& refusals) const {
    const bool isZent = IsZent(Root());
    const DOMElement* dictionary = KxVeyra_940::BaseTranslator::GetChildByTag(
        &Root(),
        isZent ? KxVeyra_940::ZENTModelTags::XML_ELE_DICTIONARY.c_str() : Tags::XML_ELE_DATADICTIONARY);
    if (dictionary == nullptr) return;
    try {
      const std::unique_ptr<KxVeyra_940::ScoreDictionary> made(
          isZent ? KxVeyra_940::ZENTTranslator(std::string()).ParseDictionary(dictionary)
                 : KxVeyra_940::PMMLTranslator(std::string()).ParseDictionary(dictionary, false));
    } catch (const VYException& exception) {
      refusals.push_back(exception);
    }
  }

  // Each refusal once.  About a missing plug-in more is said elsewhere.
  void FindRefusals(const std::vector<VYException>& refusals, const char* when) {
    for (const VYException& refusal : refusals) {
      const bool isPlugin = static_cast<MessageId>(refusal.GetErrorCode()) == MessageId::kNoPlugin;
      if (isPlugin || !fRefusals.insert(RefusalText(refusal)).second) continue;
      const DOMElement* element = FindRefused(Root(), refusal);
      Find("refused", RefusalText(refusal) + when, element == nullptr ? "" : PathOf(*element));
    }
  }

  // As the document is, then with everything that --lenient adapts.
  void TryToLoad() {
    const std::vector<VYException> refusals = Try();
    FindRefusals(refusals, "");
    const std::vector<Applied> adapted = Adapt(*Root().getOwnerDocument());
    for (const Applied& one : adapted) {
      Say(refusals.empty() ? "--lenient would adapt, without need" : "--lenient adapts", Describe(one), {});
    }
    if (refusals.empty()) return;
    const std::vector<VYException> left = adapted.empty() ? refusals : Try();
    FindRefusals(left, " (with --lenient)");
    FindPlugin();
    fIsScoredLeniently = left.empty() && fFindings == fRefusals.size();
  }

  // From the model when there is one, else from the document.
  void ListColumns() {
    std::vector<std::string> columns;
    if (fModel != nullptr) {
      for (const std::string& name : fModel->GetDictionary()->GetVarNames()) {
        if (fModel->GetVarRole(name) != ScoreModel::kPredictorRole) continue;
        columns.push_back("'" + name + "' (" + KindOf(*fModel->GetDictionary()->GetVar(name)) + ")");
      }
    } else if (const DOMElement* model = FindModelElement(); model != nullptr && IsZent(Root())) {
      for (const std::string& name : PredictorsOf(*model)) columns.push_back("'" + name + "'");
    } else if (model != nullptr) {
      const DOMElement* schema =
          KxVeyra_940::BaseTranslator::GetChildByTag(model, Tags::XML_ELE_MININGSCHEMA);
      ForEachChildElement(schema, [&](const DOMElement& field) {
        const std::string usage = OptionalText(field, Tags::XML_ATT_MININGFIELD_USAGETYPE);
        if (!HasTag(field, Tags::XML_ELE_MININGFIELD) ||
            (!usage.empty() && usage != Tags::XML_ATT_MF_FUT_ACTIVE))
          return;
        columns.push_back("'" + OptionalText(field, Tags::XML_ATT_MININGFIELD_NAME) + "'");
      });
    }
    fOut += "data columns needed: " + std::string(columns.empty() ? "none that is known" : "");
    for (std::size_t i = 0; i < columns.size(); ++i) fOut.append(i == 0 ? "" : ", ").append(columns[i]);
    fOut += "\n";
  }

  static const char* KindOf(const ScoreDictVar& field) {
    if (field.GetVarType() == ScoreDictVar::STRING_VAR) return "text";
    return field.GetVarType() == ScoreDictVar::kNUMERIC_VAR ? "number" : "date or time";
  }

  LibrarySession fLibrary;
  DocumentFile fFile;
  std::string fAuxPath;
  std::string& fOut;
  std::unique_ptr<ParsedDocument> fDocument;
  std::unique_ptr<ScoreModel> fModel;
  std::size_t fFindings = 0;
  std::set<std::string> fRefusals;  // those that were found
  bool fIsScoredLeniently = false;
};

}  // namespace

ExitStatus RunDoctor(const DoctorOptions& options) {
  CheckOutput({}, {{"the document", options.model.path},
                   {"the training data", options.auxPath},
                   {"the catalogue", ChooseCatalog(options.catalog)}});
  OutputFile output{std::string()};
  std::string text;
  const ExitStatus status = Doctor(options, text).Run();
  output.Write(text);
  return status;
}

}  // namespace VeyraTool
