#include "transform/TransformationDictionary.h"

namespace KxVeyra_940 {

TransformationDictionary::~TransformationDictionary() = default;

ScoreDictionary* TransformationDictionary::Clone() const { return new TransformationDictionary(*this); }

}  // namespace KxVeyra_940
