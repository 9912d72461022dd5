#include "veyra/InspectCommand.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <vector>
#include <xercesc/dom/DOM.hpp>

#include "translate/DomReader.h"
#include "translate/ModelElements.h"
#include "translate/PMMLModelTags.h"
#include "translate/PMMLTranslator.h"
#include "veyra/Failures.h"
#include "veyra/LibrarySession.h"
#include "veyra/Number.h"
#include "veyra/OutputFile.h"
#include "xml/KxXInputSource.h"
#include "xml/ParserLimits.h"
#include "xml/XercesWrapper.h"
#include "xml/XmlText.h"

namespace VeyraTool {

namespace Tags = KxVeyra_940::PMMLModelTags;
using KxVeyra_940::BaseTranslator;
using KxVeyra_940::OptionalText;
using KxVeyra_940::PMMLTranslator;
using KxVeyra_940::ScoreDictionary;
using KxVeyra_940::ScoreDictVar;
using KxVeyra_940::ScoreValue;
using xercesc::DOMElement;

namespace {

constexpr std::size_t kShownValues = 12;

constexpr const char* kLevels[] = {"continuous", "ordinal", "categorical"};

// A table of texts whose columns line up.
class Table {
 public:
  void AddRow(std::vector<std::string> cells) { fRows.push_back(std::move(cells)); }

  void WriteTo(std::string& out) const {
    std::vector<std::size_t> widths;
    for (const auto& row : fRows) {
      widths.resize(std::max(widths.size(), row.size()), 0);
      for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], Width(row[i]));
    }
    for (const auto& row : fRows) {
      std::string line;
      for (std::size_t i = 0; i < row.size(); ++i) {
        line.append("  ").append(row[i]).append(widths[i] - Width(row[i]), ' ');
      }
      line.erase(line.find_last_not_of(' ') + 1);
      out.append(line).append("\n");
    }
  }

 private:
  // Characters, not bytes.
  static std::size_t Width(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(
        text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U; }));
  }

  std::vector<std::vector<std::string>> fRows;
};

std::string ValueText(const ScoreValue& value) {
  if (value.GetType() != ScoreValue::kNumericValueType) return value.GetString();
  std::string text;
  AppendNumber(value.GetDouble(), text);
  return text;
}

std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (std::size_t i = 0; i < std::min(texts.size(), kShownValues); ++i) {
    if (i > 0) joined += ", ";
    joined += texts[i];
  }
  if (texts.size() > kShownValues) joined += ", ... (" + std::to_string(texts.size()) + " in all)";
  return joined;
}

std::string ValidValues(const ScoreDictVar& field) {
  const auto* labels = field.GetValueLabels();
  if (labels == nullptr) return {};
  std::vector<std::string> texts;
  for (const auto* label : labels->GetAllValueLabels()) {
    const std::string value = ValueText(*label->GetValue());
    texts.push_back(label->GetLabel() == value || label->GetLabel() == label->GetValue()->GetString()
                        ? value
                        : value + " = " + label->GetLabel());
  }
  return "valid: " + Joined(texts);
}

std::string MissingValues(const ScoreDictVar& field) {
  const auto* ranges = field.GetMissingValues();
  if (ranges == nullptr) return {};
  std::vector<std::string> texts;
  for (const auto* range : ranges->GetMissingValues()) {
    std::string text = ValueText(*range->GetMin());
    const std::string high = ValueText(*range->GetMax());
    if (text != high) {
      text.insert(0, range->GetLowEnd() ? "[" : "(");
      text.append(", ").append(high).append(range->GetHighEnd() ? "]" : ")");
    }
    texts.push_back(std::move(text));
  }
  return "missing: " + Joined(texts);
}

std::string TypeOf(const ScoreDictVar& field, const std::string& documented) {
  if (!documented.empty()) return documented;
  return field.GetVarType() == ScoreDictVar::STRING_VAR ? "string" : "numeric";
}

class Inspector {
 public:
  Inspector(const DOMElement& root, std::string& out) : fRoot(root), fOut(out) {}

  void Write() {
    const std::string tag = PMMLTranslator::ToString(fRoot.getTagName());
    const std::string version = OptionalText(fRoot, Tags::XML_ATT_VERSION);
    fOut += "Root:   " + tag + (version.empty() ? "" : ", version " + version) + "\n";
    FindModels();
    WriteModels();
    WriteFields();
    WriteDerivedFields();
  }

 private:
  void FindModels() {
    KxVeyra_940::ForEachChildElement(&fRoot, [this](const DOMElement& child) {
      if (KxVeyra_940::IsModelElement(child)) fModels.push_back(&child);
    });
  }

  void WriteModels() const {
    if (fModels.empty()) fOut += "Model:  none\n";
    for (const DOMElement* model : fModels) {
      fOut += "Model:  " + PMMLTranslator::ToString(model->getTagName());
      const std::string name = OptionalText(*model, Tags::XML_ATT_MODELNAME);
      const std::string function = OptionalText(*model, Tags::XML_ATT_FUNCTIONNAME);
      if (!name.empty()) fOut += " '" + name + "'";
      if (!function.empty()) fOut += ", " + function;
      fOut += "\n";
    }
  }

  // The usage that the first model's mining schema gives each field.
  std::map<std::string, std::string> ReadUsages() const {
    std::map<std::string, std::string> usages;
    if (fModels.empty()) return usages;
    const DOMElement* schema = BaseTranslator::GetChildByTag(fModels.front(), Tags::XML_ELE_MININGSCHEMA);
    KxVeyra_940::ForEachChildElement(schema, [&](const DOMElement& field) {
      const std::string usage = OptionalText(field, Tags::XML_ATT_MININGFIELD_USAGETYPE);
      usages[OptionalText(field, Tags::XML_ATT_MININGFIELD_NAME)] = usage.empty() ? "active" : usage;
    });
    return usages;
  }

  void WriteFields() const {
    const DOMElement* element = BaseTranslator::GetChildByTag(&fRoot, Tags::XML_ELE_DATADICTIONARY);
    if (element == nullptr) {
      fOut += "Fields: none\n";
      return;
    }
    PMMLTranslator translator{std::string()};
    const std::unique_ptr<ScoreDictionary> dictionary(translator.ParseDictionary(element, false));
    const std::map<std::string, std::string> usages = ReadUsages();
    fOut += "Fields: " + std::to_string(dictionary->Size()) + "\n";
    Table table;
    KxVeyra_940::ForEachChildElement(element, [&](const DOMElement& child) {
      const ScoreDictVar* field = dictionary->GetVar(OptionalText(child, Tags::XML_ATT_DATAFIELD_NAME));
      if (field == nullptr || !KxVeyra_940::HasTag(child, Tags::XML_ELE_DATAFIELD)) return;
      const auto usage = usages.find(field->GetName());
      std::string values = ValidValues(*field);
      const std::string missing = MissingValues(*field);
      if (!values.empty() && !missing.empty()) values += "; ";
      table.AddRow({field->GetName(), kLevels[field->GetMLevel()],
                    TypeOf(*field, OptionalText(child, Tags::XML_ATT_DATATYPE)),
                    usage == usages.end() ? "" : usage->second, values + missing});
    });
    table.WriteTo(fOut);
  }

  void WriteDerivedFields() const {
    Table table;
    std::size_t count = 0;
    KxVeyra_940::ForEachElementBelow(fRoot, Tags::XML_ELE_DERIVEDFIELD, [&](const DOMElement& field) {
      ++count;
      const DOMElement* expression = BaseTranslator::GetFirstChildElt(&field);
      table.AddRow({OptionalText(field, Tags::XML_ATT_NAME),
                    OptionalText(field, Tags::XML_ATT_DATAFIELD_OPTYPE),
                    OptionalText(field, Tags::XML_ATT_DATATYPE),
                    expression == nullptr ? "" : PMMLTranslator::ToString(expression->getTagName())});
    });
    if (count == 0) return;
    fOut += "Derived fields: " + std::to_string(count) + "\n";
    table.WriteTo(fOut);
  }

  const DOMElement& fRoot;
  std::string& fOut;
  std::vector<const DOMElement*> fModels;
};

[[noreturn]] void Refuse(const std::string& file, const std::string& reason) {
  throw CommandFailure(kModelRefused, file + ": " + reason);
}

}  // namespace

void RunInspect(const InspectOptions& options) {
  std::ifstream in(options.document, std::ios::binary);
  if (!in.is_open()) Refuse(options.document, std::string("cannot open the file: ") + std::strerror(errno));
  OutputFile output{std::string()};
  std::string text;
  try {
    const KxVeyra_940::XercesWrapper platform(false);
    KxXML_940::LimitedDOMParser parser;
    parser.setLoadExternalDTD(false);
    parser.setValidationScheme(xercesc::XercesDOMParser::Val_Never);
    KxXML_940::ParseErrorRecorder errors;
    parser.setErrorHandler(&errors);
    const KxXML_940::KxXInputSource source(in);
    parser.parse(source);
    if (errors.HasFatalError()) {
      Refuse(options.document, "line " + std::to_string(errors.GetLine()) + ", column " +
                                   std::to_string(errors.GetColumn()) + ": " + errors.GetText());
    }
    const xercesc::DOMDocument* document = parser.getDocument();
    const DOMElement* root = document == nullptr ? nullptr : document->getDocumentElement();
    if (root == nullptr) Refuse(options.document, "there is no XML document in it");
    Inspector(*root, text).Write();
  } catch (const KxVeyra_940::VYException& exception) {
    Refuse(options.document, RefusalText(exception));
  } catch (const xercesc::XMLException& exception) {
    Refuse(options.document, KxXML_940::ToUTF8(exception.getMessage()));
  }
  output.Write(text);
}

}  // namespace VeyraTool
