#include "veyra/InspectCommand.h"

#include <algorithm>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <sstream>
#include <xercesc/dom/DOMElement.hpp>

#include "translate/DomReader.h"
#include "translate/ModelElements.h"
#include "translate/PMMLTranslator.h"
#include "translate/ZENTTranslator.h"
#include "veyra/DocumentSummary.h"
#include "veyra/Failures.h"
#include "veyra/LibrarySession.h"
#include "veyra/Number.h"
#include "veyra/OutputCheck.h"
#include "veyra/OutputFile.h"
#include "veyra/ParsedDocument.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/TextTable.h"
#include "veyra/TreeDrawing.h"
#include "veyra/ZentDocument.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/ZENTModelTags.h"
#include "xml/XercesWrapper.h"

namespace VeyraTool {

namespace Tags = KxVeyra_940::PMMLModelTags;
using KxVeyra_940::BaseTranslator;
using KxVeyra_940::PMMLTranslator;
using KxVeyra_940::ScoreDictionary;
using xercesc::DOMElement;

namespace {

constexpr std::size_t kShownValues = 12;
constexpr std::size_t kWideNames = 40;  // where no long text follows

// The first texts and how many there are.
std::string Joined(const std::vector<std::string>& texts) {
  std::string joined;
  for (std::size_t i = 0; i < std::min(texts.size(), kShownValues); ++i) {
    joined.append(i == 0 ? "" : ", ").append(texts[i].empty() ? "''" : texts[i]);
  }
  if (texts.size() > kShownValues) joined += ", ... (" + std::to_string(texts.size()) + " in all)";
  return joined;
}

std::string ValuesText(const FieldSummary& field) {
  std::vector<std::string> intervals;
  for (const IntervalSummary& interval : field.intervals) intervals.push_back(interval.GetText());
  std::vector<std::string> valid;
  for (const ValueSummary& value : field.valid) {
    const bool hasLabel = !value.label.empty() && value.label != value.value;
    valid.push_back(hasLabel ? value.value + " = " + value.label : value.value);
  }
  const struct {
    const char* title;
    const std::vector<std::string>& texts;
  } lists[] = {{"", intervals}, {"", valid}, {"missing: ", field.missing}, {"invalid: ", field.invalid}};
  std::string text;
  for (const auto& list : lists) {
    if (list.texts.empty()) continue;
    text.append(text.empty() ? "" : "; ").append(list.title).append(Joined(list.texts));
  }
  return text;
}

void AddLine(const std::string& text, std::string& out) {
  out.append(FitTo(text, kTerminalWidth)).append("\n");
}

void AddTable(const std::string& title, const TextTable& table, std::size_t count, std::string& out) {
  if (count == 0) return;
  out.append("\n").append(title).append(" (").append(std::to_string(count)).append(")\n");
  table.WriteTo(out);
}

void WriteDocument(const DocumentSummary& summary, std::string& out) {
  std::string line = summary.root + (summary.version.empty() ? "" : " " + summary.version);
  if (!summary.application.empty()) {
    line += ", written by " + summary.application;
    if (!summary.applicationVersion.empty()) line += " " + summary.applicationVersion;
  }
  if (!summary.timestamp.empty()) line += ", " + summary.timestamp;
  AddLine(line, out);
  if (!summary.description.empty()) AddLine(summary.description, out);
  if (summary.models.empty()) AddLine("no model", out);
  for (const ModelSummary& model : summary.models) {
    line = model.kind;
    if (!model.name.empty()) line += " '" + model.name + "'";
    if (!model.function.empty()) line += ", " + model.function;
    if (!model.type.empty()) line += ", type " + model.type;
    if (!model.algorithm.empty()) line += ", algorithm " + model.algorithm;
    AddLine(line, out);
  }
}

std::string WriteText(const DocumentSummary& summary) {
  std::string out;
  WriteDocument(summary, out);
  TextTable fields({"name", "type", "level", "role", "values"});
  for (const FieldSummary& field : summary.fields) {
    fields.AddRow(
        {field.name, field.type, field.level, field.role.empty() ? "-" : field.role, ValuesText(field)});
  }
  AddTable("Fields", fields, summary.fields.size(), out);
  TextTable derived({"name", "type", "level", "expression"}, kWideNames);
  for (const DerivedFieldSummary& field : summary.derivedFields) {
    derived.AddRow({field.name, field.type, field.level, field.expression});
  }
  AddTable("Derived fields", derived, summary.derivedFields.size(), out);
  TextTable outputs({"name", "type", "feature"}, kWideNames);
  for (const OutputSummary& output : summary.outputs) {
    outputs.AddRow({output.name, output.type, output.GetText()});
  }
  AddTable("Outputs", outputs, summary.outputs.size(), out);
  return out;
}

using Json = nlohmann::ordered_json;

// A bound as a number; null when there is none, and its text when it is no number.
Json Bound(const std::string& text) {
  if (text.empty()) return nullptr;
  const std::optional<double> number = ReadNumber(text);
  return number.has_value() ? Json(*number) : Json(text);
}

Json ToJson(const FieldSummary& field) {
  Json valid = Json::array();
  for (const ValueSummary& value : field.valid)
    valid.push_back({{"value", value.value}, {"label", value.label}});
  Json intervals = Json::array();
  for (const IntervalSummary& interval : field.intervals) {
    intervals.push_back(
        {{"closure", interval.closure}, {"left", Bound(interval.left)}, {"right", Bound(interval.right)}});
  }
  return {{"name", field.name},       {"label", field.label},     {"type", field.type},
          {"level", field.level},     {"role", field.role},       {"valid", std::move(valid)},
          {"missing", field.missing}, {"invalid", field.invalid}, {"intervals", std::move(intervals)}};
}

std::string WriteJson(const DocumentSummary& summary) {
  Json models = Json::array();
  for (const ModelSummary& model : summary.models) {
    models.push_back({{"kind", model.kind},
                      {"name", model.name},
                      {"function", model.function},
                      {"algorithm", model.algorithm},
                      {"type", model.type}});
  }
  Json fields = Json::array();
  for (const FieldSummary& field : summary.fields) fields.push_back(ToJson(field));
  Json derived = Json::array();
  for (const DerivedFieldSummary& field : summary.derivedFields) {
    derived.push_back({{"name", field.name},
                       {"type", field.type},
                       {"level", field.level},
                       {"expression", field.expression}});
  }
  Json outputs = Json::array();
  for (const OutputSummary& output : summary.outputs) {
    outputs.push_back({{"name", output.name},
                       {"feature", output.feature},
                       {"value", output.value},
                       {"type", output.type},
                       {"rank", output.rank},
                       {"target", output.target}});
  }
  const Json document = {{"root", summary.root},
                         {"version", summary.version},
                         {"application", summary.application},
                         {"applicationVersion", summary.applicationVersion},
                         {"description", summary.description},
                         {"timestamp", summary.timestamp}};
  const Json all = {{"document", document},
                    {"models", std::move(models)},
                    {"fields", std::move(fields)},
                    {"derivedFields", std::move(derived)},
                    {"outputs", std::move(outputs)}};
  return all.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string WriteZentDisplay(const DOMElement& root) {
  const DOMElement* element =
      BaseTranslator::GetChildByTag(&root, KxVeyra_940::ZENTModelTags::XML_ELE_DICTIONARY.c_str());
  const std::unique_ptr<ScoreDictionary> dictionary(
      KxVeyra_940::ZENTTranslator(std::string()).ParseDictionary(element));
  std::ostringstream out;
  dictionary->Display(out);
  return out.str();
}

// The library's display of what it translates: the dictionary with the targets of the first model, and the
// results that the document names.
std::string WriteDisplay(const DOMElement& root) {
  if (IsZent(root)) return WriteZentDisplay(root);
  PMMLTranslator translator{std::string()};
  const DOMElement* element = BaseTranslator::GetChildByTag(&root, Tags::XML_ELE_DATADICTIONARY);
  const std::unique_ptr<ScoreDictionary> dictionary(translator.ParseDictionary(element, false));
  const DOMElement* model = nullptr;
  KxVeyra_940::ForEachChildElement(&root, [&](const DOMElement& child) {
    if (model == nullptr && KxVeyra_940::IsModelElement(child)) model = &child;
  });
  std::ostringstream out;
  if (model == nullptr) {
    dictionary->Display(out);
    return out.str();
  }
  if (const DOMElement* targets = BaseTranslator::GetChildByTag(model, Tags::XML_ELE_TARGETS)) {
    translator.HandleTargets(targets, dictionary.get());
  }
  dictionary->Display(out);
  const std::unique_ptr<ScoreDictionary> results(translator.ParseResultDictionary(model));
  if (results != nullptr) results->Display(out);
  return out.str();
}

// Whether what is asked for lies behind the model's header.  A drawing of the tree belongs here as well.
bool NeedsWhole(const InspectOptions& options) {
  return options.display || options.tree || !options.svg.empty();
}

// The drawing of the first tree among the models; writes its picture to its file.
std::string DrawTree(const DOMElement& root, const InspectOptions& options) {
  if (!options.tree && options.svg.empty()) return {};
  const DOMElement* const tree = BaseTranslator::GetChildByTag(&root, Tags::XML_ELE_TREEMODEL);
  if (tree == nullptr)
    throw CommandFailure(kWrongUsage, options.document.path + ": there is no TreeModel to draw");
  std::ostringstream text;
  if (options.tree) {
    text << "\nTree:\n";
    DrawTreeAsText(*tree, options.treeDepth.value_or(kWholeTree), text);
  }
  if (!options.svg.empty()) {
    std::ostringstream picture;
    DrawTreeAsSvg(*tree, options.treeDepth.value_or(kPictureDepth), picture);
    OutputFile file(options.svg);
    file.Write(picture.str());
    file.Finish();
  }
  return text.str();
}

std::string Inspect(const InspectOptions& options) {
  const KxVeyra_940::XercesWrapper platform(false);
  const ParsedDocument document(options.document, NeedsWhole(options) ? ParsedDocument::Extent::kWhole
                                                                      : ParsedDocument::Extent::kHeader);
  if (!document.GetFault().empty()) {
    throw CommandFailure(kModelRefused, options.document.path + ": " + document.GetFault());
  }
  const DOMElement& root = *document.GetRoot();
  if (options.display) return WriteDisplay(root);
  const DocumentSummary summary = Summarise(root);
  const std::string drawing = DrawTree(root, options);
  return options.json ? WriteJson(summary) : WriteText(summary) + drawing;
}

}  // namespace

void RunInspect(const InspectOptions& options) {
  const std::vector<InputFile> inputs = {{"the document", options.document.path}};
  CheckOutput({}, inputs);
  if (!options.svg.empty()) CheckOutput(options.svg, inputs);
  OutputFile output{std::string()};
  try {
    output.Write(Inspect(options));
  } catch (const KxVeyra_940::VYException& exception) {
    throw CommandFailure(kModelRefused, options.document.path + ": " + RefusalText(exception));
  }
}

}  // namespace VeyraTool
