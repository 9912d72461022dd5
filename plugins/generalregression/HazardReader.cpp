#include "generalregression/HazardReader.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string>

#include "error/Raise.h"
#include "generalregression/GeneralRegressionTranslator.h"
#include "generalregression/Settings.h"
#include "translate/DomReader.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;
using xercesc::DOMElement;

namespace {

// Where one table stands.
struct TableElement {
  const DOMElement* element;  // holds the cells
  const DOMElement* stratum;  // names the stratum; null for the table of all cases
};

// The words of the two forms.
struct TableWords {
  const char* list;
  const char* cell;
};
constexpr TableWords kStandardWords = {Tags::XML_ELM_BASECUMHAZARDTABLES, Tags::XML_ELM_BASELINECELL};
constexpr TableWords kExtensionWords = {Tags::XML_EXT_NAME_COXREG_XBASE_CUMHAZARD_TABLES,
                                        Tags::XML_EXT_ELE_COXREG_BASELINE};

class HazardReader {
 public:
  HazardReader(GeneralRegressionTranslator& translator, const DOMElement& element, PluginModel& model)
      : fTranslator(translator), fElement(element), fModel(model) {}

  BaselineHazards Read() {
    ReadTime();
    for (const char* const name :
         {Tags::XML_EXT_NAME_COXREG_STARTTIMEVARIABLE, Tags::XML_EXT_NAME_COXREG_SUBJECT_VARIABLE,
          StandardTags::XML_ATT_STATUSVARIABLE}) {
      RequireField(FindSetting(fElement, name));
    }
    ReadEventValues();
    FindTables();
    if (fTables.empty()) Raise(MessageId::kNoChildElement, {fWords.list});
    if (fTables.front().stratum == nullptr) {
      fRead.hazards.SetTable(ReadTable(fTables.front()));
    } else {
      ReadStrata();
    }
    return std::move(fRead);
  }

 private:
  void ReadTime() {
    const Setting time = FindSetting(fElement, Tags::XML_EXT_NAME_COXREG_ENDTIMEVARIABLE);
    if (!time.IsGiven()) {
      Raise(MessageId::kMissingAttributeOf,
            {Tags::XML_EXT_NAME_COXREG_ENDTIMEVARIABLE, Tags::XML_ELE_REGRESSMODEL});
    }
    fRead.timeInput = fTranslator.FindNumber(*time.element, time.attribute, fModel);
  }

  // A field that plays no part in a case need not be an input.
  void RequireField(const Setting& field) const {
    if (!field.IsGiven()) return;
    const std::string name = fTranslator.EncodedText(FindAttribute(*field.element, field.attribute));
    const ScoreDictionary* derived = fModel.GetTransformationDictionary();
    const bool isDerived = derived != nullptr && derived->GetVar(name) != nullptr;
    if (isDerived || fModel.GetDictionary()->GetVar(name) != nullptr) return;
    Raise(MessageId::kMissingVariableInBoth,
          {name, Tags::XML_ELE_DATADICTIONARY, Tags::XML_ELE_TRANSFORMATION});
  }

  // Which values of the status are events: that mattered when the hazards were found.
  void ReadEventValues() const {
    ForEachChildElement(
        BaseTranslator::GetChildByTag(&fElement, StandardTags::XML_ELE_EVENTVALUES),
        [](const DOMElement& child) {
          if (HasTag(child, Tags::XML_ELE_VALUE)) {
            RequiredAttribute(child, Tags::XML_ATT_VALUE);
          } else if (!HasTag(child, Tags::XML_ELE_INTERVAL) && !HasTag(child, Tags::XML_ELE_EXTENSION)) {
            Raise(MessageId::kInvalidNodeIn,
                  {PMMLTranslator::ToString(child.getTagName()), StandardTags::XML_ELE_EVENTVALUES});
          }
        });
  }

  void FindTables() {
    if (const auto* tables = BaseTranslator::GetChildByTag(&fElement, Tags::XML_ELM_BASECUMHAZARDTABLES)) {
      return FindStandardTables(*tables);
    }
    const DOMElement* extension = FindExtension(fElement, Tags::XML_EXT_NAME_COXREG_XBASE_CUMHAZARD_TABLES);
    if (extension == nullptr) {
      Raise(MessageId::kRequiredIn, {Tags::XML_ELM_BASECUMHAZARDTABLES, Tags::XML_ELE_REGRESSMODEL});
    }
    fWords = kExtensionWords;
    ForEachElementBelow(*extension, Tags::XML_EXT_ELE_COXREG_HAZARD_TABLE, [&](const DOMElement& table) {
      const DOMElement* stratum = BaseTranslator::GetChildByTag(&table, Tags::XML_EXT_ELE_COXREG_STRATUM);
      const xercesc::DOMNode* parent = table.getParentNode();
      if (stratum == nullptr && HasTag(*parent, Tags::XML_EXT_ELE_COXREG_STRATUM)) {
        stratum = static_cast<const DOMElement*>(parent);
      }
      fTables.push_back({&table, stratum});
    });
    const bool isMixed = std::ranges::any_of(
        fTables, [&](const TableElement& table) { return table.stratum == nullptr && fTables.size() > 1; });
    if (isMixed) Raise(MessageId::kMoreThanOneIn, {Tags::XML_EXT_ELE_COXREG_HAZARD_TABLE, fWords.list});
  }

  void FindStandardTables(const DOMElement& tables) {
    bool hasCells = false;
    ForEachChildElement(&tables, [&](const DOMElement& child) {
      if (HasTag(child, Tags::XML_ELM_BASELINESTRATUM)) {
        fTables.push_back({&child, &child});
      } else if (HasTag(child, fWords.cell)) {
        hasCells = true;
      } else if (!HasTag(child, Tags::XML_ELE_EXTENSION)) {
        Raise(MessageId::kInvalidNodeIn, {PMMLTranslator::ToString(child.getTagName()), fWords.list});
      }
    });
    if (hasCells && !fTables.empty())
      Raise(MessageId::kConflictingElements, {Tags::XML_ELM_BASELINESTRATUM, fWords.cell});
    if (hasCells) fTables.push_back({&tables, nullptr});
    const bool hasVariable = FindSetting(fElement, Tags::XML_ATT_BASELINESTRATAVARIABLE).IsGiven();
    if (hasCells && hasVariable)
      Raise(MessageId::kMissingNodeIn, {Tags::XML_ELM_BASELINESTRATUM, fWords.list});
  }

  void ReadStrata() {
    const Setting variable = FindSetting(fElement, Tags::XML_ATT_BASELINESTRATAVARIABLE);
    if (variable.IsGiven()) {
      fRead.strataInput = fTranslator.FindInput(*variable.element, variable.attribute);
    } else if (fWords.list == kExtensionWords.list) {
      fRead.strataInput =
          fTranslator.FindInput(*fTables.front().stratum, Tags::XML_EXT_ELE_ATT_COXREG_STRATUM_VARNAME);
    } else {
      Raise(MessageId::kMissingAttributeOf,
            {Tags::XML_ATT_BASELINESTRATAVARIABLE, Tags::XML_ELE_REGRESSMODEL});
    }
    CategoryTable& strata = fModel.GetInputs().UseAsCategory(fRead.strataInput);
    const ScoreDictVar& field = fModel.GetInputs().GetVar(fRead.strataInput);
    std::set<int> known;
    for (const TableElement& table : fTables) {
      const XMLCh* text = RequiredAttribute(*table.stratum, Tags::XML_ATT_VALUE);
      const std::unique_ptr<ScoreValue> value(fTranslator.CarefullyMakeVarValue(&field, text));
      const int code = strata.Add(*value);
      if (!known.insert(code).second) {
        Raise(MessageId::kDuplicateValueIn,
              {Tags::XML_ELM_BASELINESTRATUM, PMMLTranslator::ToString(text), fWords.list});
      }
      fRead.hazards.SetTable(code, ReadTable(table));
    }
  }

  // An element of its own in the older form.
  static double ReadMaxTime(const DOMElement& table) {
    const auto* own = BaseTranslator::GetChildByTag(&table, Tags::XML_EXT_ELE_COXREG_BASEMAXTIME);
    if (own == nullptr) return RequiredNumber(table, Tags::XML_ATT_MAXTIME);
    const bool hasTime = FindAttribute(*own, Tags::XML_EXT_ELE_ATT_COXREG_BASELINE_TIME) != nullptr;
    return RequiredNumber(*own, hasTime ? Tags::XML_EXT_ELE_ATT_COXREG_BASELINE_TIME : Tags::XML_ATT_VALUE);
  }

  HazardTable ReadTable(const TableElement& element) const {
    HazardTable table;
    table.maxTime = ReadMaxTime(*element.element);
    ForEachChildElement(element.element, [&](const DOMElement& cell) {
      if (!HasTag(cell, fWords.cell)) return;
      const HazardStep step{RequiredNumber(cell, Tags::XML_EXT_ELE_ATT_COXREG_BASELINE_TIME),
                            RequiredNumber(cell, Tags::XML_EXT_ELE_ATT_COXREG_BASELINE_CUMHAZARD)};
      if (!(step.hazard >= 0)) {
        const char* const name = Tags::XML_EXT_ELE_ATT_COXREG_BASELINE_CUMHAZARD;
        Raise(MessageId::kNegative, {OptionalText(cell, name), name});
      }
      table.steps.push_back(step);
    });
    if (table.steps.empty()) {
      Raise(MessageId::kNoChildElement, {PMMLTranslator::ToString(element.element->getTagName())});
    }
    std::ranges::sort(table.steps, {}, &HazardStep::time);
    VerifySteps(table);
    return table;
  }

  void VerifySteps(const HazardTable& table) const {
    const auto text = [](double number) { return NumericValue(number).GetString(); };
    for (std::size_t i = 1; i < table.steps.size(); ++i) {
      const HazardStep& before = table.steps[i - 1];
      const HazardStep& step = table.steps[i];
      if (step.time == before.time) {
        Raise(MessageId::kDuplicateValueIn,
              {Tags::XML_EXT_ELE_ATT_COXREG_BASELINE_TIME, text(step.time), fWords.list});
      }
      if (step.hazard < before.hazard) {
        const char* const name = Tags::XML_EXT_ELE_ATT_COXREG_BASELINE_CUMHAZARD;
        Raise(MessageId::kValuesMismatch, {text(before.hazard), name, text(step.hazard), name, fWords.list});
      }
    }
  }

  GeneralRegressionTranslator& fTranslator;
  const DOMElement& fElement;
  PluginModel& fModel;
  TableWords fWords = kStandardWords;
  std::vector<TableElement> fTables;
  BaselineHazards fRead;
};

}  // namespace

BaselineHazards ReadHazards(GeneralRegressionTranslator& translator, const DOMElement& element,
                            PluginModel& model) {
  return HazardReader(translator, element, model).Read();
}

}  // namespace KxVeyra_940::Plugin
