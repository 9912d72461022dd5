// The measurement levels by the words of "optype".

#ifndef VEYRA_TRANSLATE_OPTYPESINTERNAL_H_
#define VEYRA_TRANSLATE_OPTYPESINTERNAL_H_

#include "error/Raise.h"
#include "veyra/ScoreDictVar.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

struct OptypeRow {
  const char* text;
  ScoreDictVar::MeasureLevel level;
};

inline constexpr OptypeRow kOptypes[] = {
    {PMMLModelTags::XML_VAL_OT_CONTINUOUS, ScoreDictVar::kContinuous},
    {PMMLModelTags::XML_VAL_OT_CATEGORICAL, ScoreDictVar::kNominal},
    {PMMLModelTags::XML_VAL_OT_ORDINAL, ScoreDictVar::kOrdinal},
};

// Error 260152 (text, "optype") for any other word.
inline ScoreDictVar::MeasureLevel LevelOf(const XMLCh* optype) {
  for (const OptypeRow& row : kOptypes)
    if (KxXML_940::EqualsAscii(optype, row.text)) return row.level;
  Raise(MessageId::kInvalidAttributeValue,
        {KxXML_940::ToUTF8(optype), PMMLModelTags::XML_ATT_DATAFIELD_OPTYPE});
}

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_OPTYPESINTERNAL_H_
