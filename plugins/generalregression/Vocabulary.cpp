#include "generalregression/Vocabulary.h"

#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/ZENTModelTags.h"

namespace KxVeyra_940::Plugin {

const Vocabulary& PmmlWords() {
  using namespace PMMLModelTags;
  static constexpr Vocabulary kWords = {
      .model = XML_ELE_REGRESSMODEL,
      .parameterList = XML_ELE_PARAM_LIST,
      .parameter = XML_ELE_PARAM,
      .factorList = XML_ELE_FAC_LIST,
      .covariateList = XML_ELE_COV_LIST,
      .predictor = XML_ELE_PREDICTOR,
      .designMatrix = XML_ELE_PP_MATRIX,
      .designCell = XML_ELE_PP_CELL,
      .covarianceMatrix = XML_ELE_PCOV_MATRIX,
      .covarianceCell = XML_ELE_PCOV_CELL,
      .estimates = XML_ELE_PARAM_MATRIX,
      .estimate = XML_ELE_PCELL,
      .name = XML_ATT_PARAM_NAME,
      .value = XML_ATT_PPC_VALUE,
      .predictorName = XML_ATT_PPC_PREDNAME,
      .parameterName = XML_ATT_PPC_PARAMNAME,
      .targetCategory = XML_ATT_PC_TARGET_CAT,
      .referenceCategory = XML_ATT_TARGETREFCATEGORY,
      .beta = XML_ATT_PC_BETA,
      .degreesOfFreedom = XML_ATT_PC_DF,
      .rowParameter = XML_ATT_PCC_PROW,
      .columnParameter = XML_ATT_PCC_PCOL,
      .rowCategory = XML_ATT_PCC_TROW,
      .columnCategory = XML_ATT_PCC_TCol,
  };
  return kWords;
}

const Vocabulary& ZentWords() {
  using namespace ZENTModelTags;
  static const Vocabulary words = {
      .model = XML_ELE_REGRESS_MODEL.c_str(),
      .parameterList = XML_ELE_PARAM_LIST.c_str(),
      .parameter = XML_ELE_PARAM.c_str(),
      .factorList = XML_ELE_FAC_LIST.c_str(),
      .covariateList = XML_ELE_COV_LIST.c_str(),
      .predictor = XML_ELE_PREDICTOR.c_str(),
      .designMatrix = XML_ELE_PP_MATRIX.c_str(),
      .designCell = XML_ELE_PP_CELL.c_str(),
      .covarianceMatrix = XML_ELE_PCOV_MATRIX.c_str(),
      .covarianceCell = XML_ELE_PCOV_CELL.c_str(),
      .estimates = XML_ELE_P_TABLE.c_str(),
      .estimate = XML_ELE_P_CELL.c_str(),
      .name = XML_ATT_NAME.c_str(),
      .value = XML_ATT_VALUE.c_str(),
      .predictorName = XML_ATT_PP_PREDICTOR.c_str(),
      .parameterName = XML_ATT_PARAMETER_NAME.c_str(),
      .targetCategory = XML_ATT_PC_TARGET_CAT.c_str(),
      .referenceCategory = XML_ATT_PC_TARGET_CAT.c_str(),
      .beta = XML_ATT_PC_BETA.c_str(),
      .degreesOfFreedom = XML_ATT_PC_DF.c_str(),
      .rowParameter = XML_ATT_PCOV_P_ROW.c_str(),
      .columnParameter = XML_ATT_PCOV_P_COL.c_str(),
      .rowCategory = XML_ATT_PCOV_T_ROW.c_str(),
      .columnCategory = XML_ATT_PCOV_T_COL.c_str(),
  };
  return words;
}

}  // namespace KxVeyra_940::Plugin
