#include "data/ResultVar.h"

namespace KxVeyra_940 {

ResultVar::ResultVar(const std::string& name, VariableType type) : DictVar(name, type) {}

ResultVar::~ResultVar() = default;

ScoreDictVar* ResultVar::Clone() const { return new ResultVar(*this); }

}  // namespace KxVeyra_940
