// A model that scores cases.
//
//   CaseRecord record(4);                          // add every input field once, in any order
//   model->PrepareForCases(record);                // resolves names to slots
//   std::unique_ptr<ScoreResult> result(model->NewResult());
//   KxStatus status = model->Score(record, *result);
//
// Threads: a model keeps working state and scores for one thread at a time; Clone() makes one for another
// thread that shares nothing mutable.

#ifndef VEYRA_SCOREMODEL_H_
#define VEYRA_SCOREMODEL_H_

#include <string>

#include "veyra/Export.h"
#include "veyra/KxStatus.h"
#include "veyra/ScoreCaseRecord.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/ScoreResult.h"
#include "veyra/ScoreVersionInfo.h"

namespace KxVeyra_940 {

class TransformationDictionary;

class VEYRA_API ScoreModel {
 public:
  // The role of a variable; -1 is no role.
  enum VarRole : int {
    kNoRole = -1,
    kPredictorRole = 0,
    kTargetRole = 1,
    kSupplementaryRole = 2,
  };

  // What a model does with a case that it cannot score normally; plug-ins give other numbers meaning.
  enum MVPolicy : int {
    kFallbackAnswer = 1,  // HandleMissingValue decides
  };

  virtual ~ScoreModel();
  // Take the dictionary; what was held before is not deleted.
  virtual void SetScoreDictionary(ScoreDictionary* dictionary) = 0;
  virtual void SetTransformationScoreDictionary(TransformationDictionary* dictionary) = 0;
  virtual void SetResultScoreDictionary(ScoreDictionary* dictionary) = 0;
  // False for a null variable, an empty name and a name that neither dictionary holds.
  virtual bool SetVarRole(const ScoreDictVar* var, VarRole role) = 0;
  virtual bool SetVarRole(const std::string& name, VarRole role) = 0;
  virtual void SetMissingValuePolicy(MVPolicy policy) = 0;
  virtual void SetVersionInfo(ScoreVersionInfo* info) = 0;  // takes it
  // Resolves the names of the model's inputs to the slots of `layout`, once for all cases of that layout.
  // An error status with code 90028 when an input has no slot: the model scores that input as missing.
  virtual KxScore::KxStatus PrepareForCases(const ScoreCaseRecord& layout) = 0;
  virtual VarRole GetVarRole(const ScoreDictVar* var) const = 0;
  virtual VarRole GetVarRole(const std::string& name) const = 0;
  virtual ScoreVersionInfo* GetVersionInfo() const = 0;                       // lent; null when unset
  virtual std::string GetModelKind() const = 0;                               // the model element's name
  virtual ScoreDictVar* GetTargetVar() const = 0;                             // lent; null when there is none
  virtual ScoreDictionary* GetDictionary() const = 0;                         // lent
  virtual TransformationDictionary* GetTransformationDictionary() const = 0;  // lent; may be null
  virtual ScoreDictionary* GetResultDictionary() const = 0;                   // lent; may be null
  virtual ScoreResult* NewResult() const = 0;  // an empty result of this model; the caller owns it
  virtual MVPolicy GetMissingValuePolicy() const = 0;
  // Scores one case into `result`, which this model made.  An error status with code 90027 means that there
  // is no answer: the predicted value is missing.  One with code 90029 means that memory ran out: the result
  // is reset, and the model can score other cases.  Never throws.
  // REQUIRES: PrepareForCases was called with a record of the same layout.
  virtual KxScore::KxStatus Score(const ScoreCaseRecord& input, ScoreResult& result) = 0;
  virtual bool HasNoProbabilityOutput() const = 0;  // answers never carry probabilities of categories
  virtual ScoreModel* Clone() const = 0;            // new; the caller owns it
  // Take the dictionary; it is deleted with the model only when `owned`.
  virtual void SetScoreDictionary(ScoreDictionary* dictionary, bool owned) = 0;
  virtual void SetTransformationScoreDictionary(TransformationDictionary* dictionary, bool owned) = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREMODEL_H_
