// The vocabulary's texts where a wrong one would go unnoticed for long: odd spellings and pairs.

#include "vocabulary/PMMLModelTags.h"

#include <gtest/gtest.h>

namespace {

using namespace KxVeyra_940::PMMLModelTags;

TEST(Vocabulary, KeepsOddSpellings) {
  const std::pair<const char*, const char*> kRows[] = {
      {XML_ELE_PMML, "PMML"},
      {XML_ELE_DATADICTIONARY, "DataDictionary"},
      {XML_ELE_XBASISROW, "x-BasisRow"},
      {XML_ELE_UPERXBASISROW, "X-BasisRow"},
      {XML_ELE_MISCLASSIFICATIONCOST_OLD, "X-MisclassificatonCost"},
      {XML_ELE_MISCLASSIFICATIONCOST, "X-MisclassificationCost"},
      {XML_ATT_NAME, "name"},
      {XML_ATT_DATAFIELD_NAME, "name"},
      {XML_ATT_EXT_NAME, "name"},
      {XML_VAL_DATEDAYSSINCE_1960, "dateDaysSince[1960]"},
      {XML_ZENT_TRANFUNC_DEVISION, "/"},
      {XML_ELM_BASELINECELL, "BaselineCell"},
      {XML_MSTAT_UNIVARSTAT_CONTSTATS, "ContStats"},
  };
  for (const auto& [constant, text] : kRows) EXPECT_STREQ(constant, text);
}

}  // namespace
