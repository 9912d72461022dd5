#include "predicate/ConstantPredicates.h"

#include <ostream>

namespace KxVeyra_940 {

TruePredicate::~TruePredicate() = default;

ScorePredicate* TruePredicate::Clone() const { return new TruePredicate; }

ScorePredicate::PredicateResult TruePredicate::Evaluate(const ScoreCaseRecord*,
                                                        const ScoreCaseRecord*) const {
  return kTrue;
}

ScorePredicate::PredicateResult TruePredicate::Evaluate(const std::vector<double>&) const { return kTrue; }

ScorePredicate::PredicateType TruePredicate::GetPredType() const { return kTruePredicate; }

bool TruePredicate::IsDerivedPredictor() const { return false; }

void TruePredicate::SetSplit(ScoreSplitVar*) {}

ScoreSplitVar* TruePredicate::GetSplit() const { return nullptr; }

void TruePredicate::Display(std::ostream& out) const { out << "Constant TRUE\n"; }

FalsePredicate::~FalsePredicate() = default;

ScorePredicate* FalsePredicate::Clone() const { return new FalsePredicate; }

ScorePredicate::PredicateResult FalsePredicate::Evaluate(const ScoreCaseRecord*,
                                                         const ScoreCaseRecord*) const {
  return kFalse;
}

ScorePredicate::PredicateResult FalsePredicate::Evaluate(const std::vector<double>&) const { return kFalse; }

ScorePredicate::PredicateType FalsePredicate::GetPredType() const { return kFalsePredicate; }

bool FalsePredicate::IsDerivedPredictor() const { return false; }

void FalsePredicate::SetSplit(ScoreSplitVar*) {}

ScoreSplitVar* FalsePredicate::GetSplit() const { return nullptr; }

void FalsePredicate::Display(std::ostream& out) const { out << "Constant FALSE\n"; }

}  // namespace KxVeyra_940
