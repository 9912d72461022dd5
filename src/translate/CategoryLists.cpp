#include <limits>

#include "data/ValueLabelSet.h"
#include "translate/CategoryListsInternal.h"
#include "veyra/ScoreEncoder.h"

namespace KxVeyra_940 {
namespace {

std::uint64_t ContentIdOf(const ScoreValueLabelSet* labels) {
  const auto* const own = dynamic_cast<const ValueLabelSet*>(labels);
  return own == nullptr ? 0 : own->GetContentId();
}

std::vector<double> CodesOf(const std::vector<ScoreValueLabel*>& labels, ScoreEncoder* encoder,
                            CategoryLists::Codes codes) {
  std::vector<double> all;
  if (codes == CategoryLists::Codes::kNone) return all;
  all.reserve(labels.size());
  for (const ScoreValueLabel* label : labels) {
    const ScoreValue* const value = label->GetValue();
    if (value == nullptr) {
      all.push_back(std::numeric_limits<double>::quiet_NaN());
    } else {
      all.push_back(codes == CategoryLists::Codes::kNumbers ? value->GetDouble() : encoder->Encode(value));
    }
  }
  return all;
}

}  // namespace

std::shared_ptr<const CategoryList> CategoryLists::Of(ScoreDictVar& variable, Codes codes) {
  const ScoreValueLabelSet* const set = variable.GetValueLabels();
  const std::uint64_t contentId = ContentIdOf(set);
  const auto key = std::pair<const ScoreDictVar*, Codes>(&variable, codes);
  const auto known = fEntries.find(key);
  if (known != fEntries.end() && contentId != 0 && known->second.contentId == contentId &&
      known->second.encoder == variable.GetEncoder())
    return known->second.list;

  const std::vector<ScoreValueLabel*> none;
  const std::vector<ScoreValueLabel*>& labels = set == nullptr ? none : set->GetAllValueLabels();
  auto list = std::make_shared<const CategoryList>(labels, CodesOf(labels, variable.GetEncoder(), codes));
  fEntries.insert_or_assign(key, Entry{contentId, variable.GetEncoder(), list});
  return list;
}

}  // namespace KxVeyra_940
