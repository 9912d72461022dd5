// What every model has: its dictionaries, the roles of variables, the missing-value policy, the version of
// its document, and the answer for a case that cannot be scored.
//
// A plug-in derives its model from it and adds the six operations that ScoreModel leaves open.
// Threads: as ScoreModel.

#ifndef VEYRA_FACTORY_BASEMODEL_H_
#define VEYRA_FACTORY_BASEMODEL_H_

#include <string>
#include <unordered_map>

#include "veyra/Export.h"
#include "veyra/ScoreModel.h"

namespace KxVeyra_940 {

class VEYRA_API BaseModel : public ScoreModel {
 public:
  enum FUNCNAME_TYPE : int {
    kNoMiningFunction = 0,
    kAssociationRules = 1,
    kSequences = 2,
    kClassification = 3,
    kRegression = 4,
    kClustering = 5,
    kTimeSeries = 6,
  };

  // Status code of a case without an answer.
  static constexpr long kNoAnswer = 90027;
  // Status code of a case that memory ran out for.
  static constexpr long kOutOfMemory = 90029;

  BaseModel();
  // Deletes the version info, the dictionaries it owns and the result dictionary.
  ~BaseModel() override;
  BaseModel& operator=(const BaseModel&) = delete;

  // The one-argument setters leave the ownership as it is (owned until said otherwise).  No setter deletes
  // what it replaces.
  void SetScoreDictionary(ScoreDictionary* dictionary) override;
  void SetTransformationScoreDictionary(TransformationDictionary* dictionary) override;
  void SetResultScoreDictionary(ScoreDictionary* dictionary) override;
  bool SetVarRole(const ScoreDictVar* var, VarRole role) override;
  bool SetVarRole(const std::string& name, VarRole role) override;
  void SetMissingValuePolicy(MVPolicy policy) override;
  void SetVersionInfo(ScoreVersionInfo* info) override;
  VarRole GetVarRole(const ScoreDictVar* var) const override;
  VarRole GetVarRole(const std::string& name) const override;
  ScoreVersionInfo* GetVersionInfo() const override;
  ScoreDictVar* GetTargetVar() const override;
  ScoreDictionary* GetDictionary() const override;
  TransformationDictionary* GetTransformationDictionary() const override;
  ScoreDictionary* GetResultDictionary() const override;
  MVPolicy GetMissingValuePolicy() const override;
  void SetScoreDictionary(ScoreDictionary* dictionary, bool owned) override;
  void SetTransformationScoreDictionary(TransformationDictionary* dictionary, bool owned) override;

  // The answer for a case that cannot be scored: the target's most probable value by its prior
  // probabilities, or its default value.  An error status with code kNoAnswer when there is neither, and
  // when there is no target.  A prior probability of no value plays no part.  Values go into the result as
  // clones.  A null result is left alone: OK.
  KxScore::KxStatus HandleMissingValue(ScoreResult* result);

  std::string GetAlgorithmName() const { return fAlgorithmName; }
  void SetAlgorithmName(std::string name) { fAlgorithmName = std::move(name); }
  FUNCNAME_TYPE GetMiningFunction() const { return fMiningFunction; }
  void SetMiningFunction(FUNCNAME_TYPE function) { fMiningFunction = function; }
  static FUNCNAME_TYPE MiningFunctionFromString(const std::string& name);
  // A regression model whose target no dictionary holds.
  bool NeedToMakeupATarget() const;
  bool isKMorPDF() const;

 protected:
  // Clones every part; the copy owns its dictionaries whoever owns the other's.
  BaseModel(const BaseModel& other);

 private:
  KxScore::KxStatus AnswerFromPriors(const ScoreDictVar& target, ScoreResult& result) const;

  ScoreDictionary* fDictionary = nullptr;
  bool fOwnsDictionary = true;
  TransformationDictionary* fTransformationDictionary = nullptr;
  bool fOwnsTransformationDictionary = true;
  ScoreDictionary* fResultDictionary = nullptr;  // owned
  ScoreVersionInfo* fVersionInfo = nullptr;      // owned
  std::unordered_map<std::string, VarRole> fRoles;
  MVPolicy fMissingValuePolicy = kFallbackAnswer;
  std::string fTargetName;
  std::string fAlgorithmName;
  FUNCNAME_TYPE fMiningFunction = kNoMiningFunction;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_FACTORY_BASEMODEL_H_
