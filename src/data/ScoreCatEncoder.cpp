#include "data/ScoreCatEncoder.h"

#include <utility>

namespace KxVeyra_940 {

ScoreCatEncoder::ScoreCatEncoder(const ScoreCatEncoder& other) : ScoreEncoder(other) {}

ScoreCatEncoder& ScoreCatEncoder::operator=(const ScoreCatEncoder&) { return *this; }

ScoreCatEncoder::~ScoreCatEncoder() = default;

void ScoreCatEncoder::SetValueLabels(const std::vector<std::string>& labels) { fValueLabels = labels; }

void ScoreCatEncoder::SetValueLabel(int code, const std::string& label) {
  const int categories = GetNumberOfCategories();
  std::string own(label);  // which may be one of the labels that growing frees
  if (fValueLabels.size() < static_cast<std::size_t>(categories))
    fValueLabels.resize(static_cast<std::size_t>(categories));
  if (code >= 0 && code < categories) fValueLabels[static_cast<std::size_t>(code)] = std::move(own);
}

const std::vector<std::string>* ScoreCatEncoder::GetValueLabels() const { return &fValueLabels; }

}  // namespace KxVeyra_940
