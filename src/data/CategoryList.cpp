#include "data/CategoryList.h"

#include <cmath>

namespace KxVeyra_940 {

CategoryList::CategoryList(const std::vector<ScoreValueLabel*>& labels, std::vector<double> codes)
    : fCodes(std::move(codes)) {
  fValues.Reserve(labels.size());
  for (const ScoreValueLabel* label : labels) {
    const ScoreValue* const value = label->GetValue();
    fValues.Append(value == nullptr ? nullptr : value->Clone());
    fIndex.Append(value);
  }
  for (std::size_t i = 0; i < fCodes.size(); ++i) {
    if (!std::isnan(fCodes[i])) fByCode.emplace_back(fCodes[i], static_cast<int>(i));
  }
  std::sort(fByCode.begin(), fByCode.end());
}

CategoryList::~CategoryList() = default;

}  // namespace KxVeyra_940
