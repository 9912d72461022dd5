#include "data/VarStats.h"

namespace KxVeyra_940 {

VarStats::VarStats(double min, double max, double mean, double stddev)
    : fMin(min), fMax(max), fMean(mean), fStddev(stddev) {}

VarStats::~VarStats() = default;

ScoreVarStats* VarStats::Clone() const { return new VarStats(*this); }

void VarStats::SetMin(double value) { fMin = value; }

void VarStats::SetMax(double value) { fMax = value; }

void VarStats::SetStddev(double value) { fStddev = value; }

void VarStats::SetMean(double value) { fMean = value; }

void VarStats::SetMissingReplacement(const ScoreValue* value) {
  // The clone first: `value` may be the replacement held.
  fMissingReplacement.Replace(value == nullptr ? nullptr : value->Clone());
}

double VarStats::GetMin() const { return fMin; }

double VarStats::GetMax() const { return fMax; }

double VarStats::GetStddev() const { return fStddev; }

double VarStats::GetMean() const { return fMean; }

ScoreValue* VarStats::GetMissingReplacement() const { return fMissingReplacement.Get(); }

}  // namespace KxVeyra_940
