// Reads the "TrainingInstances" of a model: what the instances are compared by, and what they say about the
// targets.

#ifndef VEYRA_PLUGINS_NEARESTNEIGHBOR_INSTANCEREADER_H_
#define VEYRA_PLUGINS_NEARESTNEIGHBOR_INSTANCEREADER_H_

#include <memory>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "common/CategoryTable.h"
#include "common/InvalidValues.h"
#include "nearestneighbor/NeighborModel.h"
#include "nearestneighbor/TrainingRows.h"
#include "translate/PMMLTranslator.h"

namespace KxVeyra_940::Plugin {

class InstanceReader {
 public:
  // `auxPath` names the file of a "TableLocator".  Everything is lent.
  InstanceReader(const PMMLTranslator& translator, const InvalidValuesByField& invalidValues,
                 const std::string& auxPath, NeighborModel& model);
  ~InstanceReader();

  // Gives the model its instances and its targets their categories.  `model` is the model's element.  Raises,
  // with the place of the row where it is one of its cells: 260120, 260122, 260126, 260127, 260151, 260152,
  // 260158, 260174, 260175, 260203, 260242, and what TrainingRows.h says.
  void Read(const xercesc::DOMElement& model);

 private:
  struct Target {
    const ScoreDictVar* var;
    std::size_t column;
    std::shared_ptr<const InvalidValues> invalid;  // null: nothing is called so
    CategoryTable categories;
    TargetColumn values;
  };
  // An input that instances give a value of; not transformed ones give values of fields instead.
  struct InputColumn {
    const ScoreDictVar* var;
    std::size_t column;
    int input;  // -1: a field of the record
    CategoryTable* categories;
  };

  void ReadFields(const xercesc::DOMElement& instances);
  std::size_t ColumnOf(const std::string& field);
  void PlanInputs();
  void PlanTargets();
  void ReadRows(const xercesc::DOMElement& instances);
  void CheckCount(const xercesc::DOMElement& instances, const char* attribute, std::size_t count,
                  const char* what) const;

  void TakeRow(const TrainingRow& row);
  void TakeTransformed(const TrainingRow& row);
  void TakeFields(const TrainingRow& row);
  void FillSlot(const TrainingRow& row, const InputColumn& input, int slot);
  double NumberAt(const TrainingRow& row, const ScoreDictVar& var, std::size_t column) const;
  void TakeTarget(const TrainingRow& row, Target& target) const;
  std::unique_ptr<ScoreValue> ValueOf(const TrainingRow& row, const ScoreDictVar& var,
                                      std::size_t column) const;
  std::string PlaceOf(const TrainingRow& row, std::size_t column) const;
  [[noreturn]] void RefuseInvalid(const TrainingRow& row, const ScoreDictVar& var, std::size_t column,
                                  const ScoreValue& value) const;
  void SetCategories();

  const PMMLTranslator& fTranslator;
  const InvalidValuesByField& fInvalidValues;
  const std::string& fAuxPath;
  NeighborModel& fModel;
  bool fIsTransformed = false;
  std::vector<std::pair<std::string, std::string>> fColumnOfField;
  std::vector<std::string> fColumns;  // that are read
  std::vector<InputColumn> fInputs;
  std::vector<std::unique_ptr<Target>> fTargets;
  int fIdColumn = -1;

  std::unique_ptr<PluginModel> fReading;  // reads rows that are not transformed as cases
  CaseRecord fRecord;
  CaseValues fValues;
  std::vector<double> fPlace;
  std::shared_ptr<InstanceMatrix> fMatrix;
  std::vector<std::string> fIds;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_NEARESTNEIGHBOR_INSTANCEREADER_H_
