// Documents of trees, from their parts, for tests.

#ifndef VEYRA_TESTS_PLUGINS_TREEDOCUMENT_H_
#define VEYRA_TESTS_PLUGINS_TREEDOCUMENT_H_

#include <string>

#include "plugins/Scoring.h"

namespace VeyraTest {

inline const char* const kTreeFields =
    "<DataField name='x' optype='continuous' dataType='double'/>"
    "<DataField name='c' optype='categorical' dataType='string'><Value value='a'/><Value value='b'/>"
    "<Value value='d'/><Value value='m' property='missing'/></DataField>"
    "<DataField name='free' optype='categorical' dataType='string'/>"
    "<DataField name='n' optype='categorical' dataType='integer'><Value value='5'/><Value "
    "value='7'/></DataField>"
    "<DataField name='o' optype='ordinal' dataType='string'><Value value='low'/><Value value='mid'/>"
    "<Value value='high'/></DataField>"
    "<DataField name='r' optype='ordinal' dataType='integer'><Value value='3'/><Value value='1'/>"
    "<Value value='2'/></DataField>"
    "<DataField name='rank' optype='ordinal' dataType='integer'/>"
    "<DataField name='day' optype='continuous' dataType='dateDaysSince[1970]'/>"
    "<DataField name='y' optype='continuous' dataType='double'/>"
    "<DataField name='class' optype='categorical' dataType='string'>"
    "<Value value='yes' displayValue='Yes'/><Value value='no' displayValue='No'/><Value "
    "value='may'/></DataField>";

struct TreeDocument {
  std::string content;
  std::string attributes = "functionName='regression'";
  std::string target = "y";
  std::string rules = "";  // of the mining field `ruled`
  std::string ruled = "x";

  std::string Text() const {
    std::string schema;
    for (const char* name : {"x", "c", "free", "n", "o", "r", "rank", "day"}) {
      schema += "<MiningField name='" + std::string(name) + "' " + (name == ruled ? rules : "") + "/>";
    }
    return std::string("<PMML version='4.4'><Header/><DataDictionary numberOfFields='10'>") + kTreeFields +
           "</DataDictionary><TreeModel " + attributes + "><MiningSchema>" + schema + "<MiningField name='" +
           target + "' usageType='target'/></MiningSchema>" + content + "</TreeModel></PMML>";
  }
};

inline std::string Simple(const std::string& field, const std::string& op, const char* value = nullptr) {
  return "<SimplePredicate field='" + field + "' operator='" + op + "'" +
         (value == nullptr ? std::string() : " value='" + std::string(value) + "'") + "/>";
}

inline std::string Set(const std::string& field, const std::string& op, const std::string& items,
                       const std::string& type = "string") {
  return "<SimpleSetPredicate field='" + field + "' booleanOperator='" + op + "'><Array type='" + type +
         "'>" + items + "</Array></SimpleSetPredicate>";
}

inline std::string Compound(const std::string& op, const std::string& content) {
  return "<CompoundPredicate booleanOperator='" + op + "'>" + content + "</CompoundPredicate>";
}

inline std::string Node(const std::string& attributes, const std::string& content) {
  return "<Node " + attributes + ">" + content + "</Node>";
}

inline TreeDocument OfNumber(const std::string& content, const std::string& attributes = "") {
  return {.content = content, .attributes = "functionName='regression' " + attributes};
}

inline TreeDocument OfClass(const std::string& content, const std::string& attributes = "") {
  return {.content = content, .attributes = "functionName='classification' " + attributes, .target = "class"};
}

}  // namespace VeyraTest

#endif  // VEYRA_TESTS_PLUGINS_TREEDOCUMENT_H_
