// Documents with a general regression model, from its parts.

#ifndef VEYRA_TESTS_PLUGINS_GENERALREGRESSIONDOCUMENT_H_
#define VEYRA_TESTS_PLUGINS_GENERALREGRESSIONDOCUMENT_H_

#include <string>

#include "plugins/Scoring.h"

namespace VeyraTest {

inline const char* const kGeneralRegression = "GeneralRegressionModel";

// Parameters p0 to p4; factors color, grade and free; covariates x and z.
struct GeneralRegressionDocument {
  std::string design;     // the cells
  std::string estimates;  // the cells
  std::string attributes = "functionName='regression' modelType='generalLinear'";
  std::string target = "y";
  std::string more = {};  // elements of the model
  std::string factors = "<Predictor name='color'/><Predictor name='grade'/><Predictor name='free'/>";
  std::string covariates = "<Predictor name='x'/><Predictor name='z'/>";
  std::string parameters =
      "<Parameter name='p0'/><Parameter name='p1'/><Parameter name='p2'/><Parameter name='p3'/>"
      "<Parameter name='p4'/>";

  std::string Text() const {
    static const std::string fields =
        "<DataField name='x' optype='continuous' dataType='double'/>"
        "<DataField name='z' optype='continuous' dataType='double'/>"
        "<DataField name='t' optype='continuous' dataType='double'/>"
        "<DataField name='color' optype='categorical' dataType='string'>"
        "<Value value='red'/><Value value='blue'/><Value value='green'/></DataField>"
        "<DataField name='grade' optype='categorical' dataType='double'>"
        "<Value value='1'/><Value value='2'/></DataField>"
        "<DataField name='free' optype='categorical' dataType='string'/>"
        "<DataField name='y' optype='continuous' dataType='double'/>"
        "<DataField name='class' optype='categorical' dataType='string'>"
        "<Value value='a'/><Value value='b'/></DataField>"
        "<DataField name='kind' optype='categorical' dataType='string'>"
        "<Value value='a'/><Value value='b'/><Value value='c'/></DataField>"
        "<DataField name='open' optype='categorical' dataType='string'/>"
        "<DataField name='size' optype='ordinal' dataType='string'>"
        "<Value value='S'/><Value value='M'/><Value value='L'/></DataField>";
    return "<PMML version='4.4'><DataDictionary numberOfFields='11'>" + fields +
           "</DataDictionary><GeneralRegressionModel " + attributes +
           "><MiningSchema><MiningField name='x'/><MiningField name='z'/><MiningField name='t'/>"
           "<MiningField name='color' invalidValueTreatment='asIs'/><MiningField name='grade'/>"
           "<MiningField name='free'/><MiningField name='" +
           target + "' usageType='target'/></MiningSchema><ParameterList>" + parameters +
           "</ParameterList><FactorList>" + factors + "</FactorList><CovariateList>" + covariates +
           "</CovariateList><PPMatrix>" + design + "</PPMatrix><ParamMatrix>" + estimates + "</ParamMatrix>" +
           more + "</GeneralRegressionModel></PMML>";
  }
};

inline std::string Cell(const std::string& parameter, const std::string& predictor, const std::string& value,
                        const std::string& more = "") {
  return "<PPCell parameterName='" + parameter + "' predictorName='" + predictor + "' value='" + value +
         "' " + more + "/>";
}

inline std::string Beta(const std::string& parameter, const std::string& beta,
                        const std::string& category = "") {
  const std::string target = category.empty() ? "" : "' targetCategory='" + category;
  return "<PCell parameterName='" + parameter + "' beta='" + beta + target + "'/>";
}

}  // namespace VeyraTest

#endif  // VEYRA_TESTS_PLUGINS_GENERALREGRESSIONDOCUMENT_H_
