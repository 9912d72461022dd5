#include <iostream>
#include <memory>

#include "veyra/veyra.h"

int main(int, char** argv) try {
  using namespace KxVeyra_940;
  std::unique_ptr<ScoreModel> model(ModelFactory::MakeModelFromXML(argv[1], "modeldll.txt", ""));
  CaseRecord record;
  for (const auto& name : model->GetDictionary()->GetVarNames()) record.Add(name, nullptr);
  model->PrepareForCases(record);                                                // names to slots, once
  std::unique_ptr<ScoreResult> result(model->NewResult());                       // reused for every case
  for (const auto& name : record.GetVarNames(true)) record.SetValue(name, 0.2);  // a case
  if (model->Score(record, *result).IsOK()) std::cout << result->GetPredictedValue()->GetString() << '\n';
} catch (const KxVeyra_940::VYException& e) {
  std::cerr << e.GetErrorMessage() << '\n';
  return 1;
}
