// Derived fields of a document that a test writes as text, computed for cases that it writes as text.

#ifndef VEYRA_TESTS_TRANSFORM_DERIVEDFIELDS_H_
#define VEYRA_TESTS_TRANSFORM_DERIVEDFIELDS_H_

#include <gtest/gtest.h>

#include <charconv>
#include <memory>
#include <sstream>
#include <string>

#include "data/CaseRecord.h"
#include "data/DateTimeValue.h"
#include "transform/TransformVar.h"
#include "transform/TransformationDictionary.h"
#include "translate/Documents.h"
#include "veyra/ModelFactory.h"

namespace veyra_tests {

using KxVeyra_940::CaseRecord;
using KxVeyra_940::ScoreDictVar;
using KxVeyra_940::ScoreValue;
using KxVeyra_940::TransformationDictionary;

// x, y, z: numbers, of which z counts -9 as missing and is valid from 0 to 100; s, t: any text; c: the
// categories a and b; d: days since 1970; m: seconds since 1970; g: the numbers 1, 2 and 3 in order.
inline constexpr char kDataFields[] =
    "<DataField name='x' optype='continuous' dataType='double'/>"
    "<DataField name='y' optype='continuous' dataType='double'/>"
    "<DataField name='z' optype='categorical' dataType='double'><Value value='-9' property='missing'/>"
    "<Value value='0'/><Value value='50'/><Value value='100'/></DataField>"
    "<DataField name='s' optype='categorical' dataType='string'/>"
    "<DataField name='t' optype='categorical' dataType='string'/>"
    "<DataField name='c' optype='categorical' dataType='string'><Value value='a'/><Value value='b'/>"
    "<Value value='?' property='missing'/></DataField>"
    "<DataField name='d' optype='continuous' dataType='dateDaysSince[1970]'/>"
    "<DataField name='m' optype='continuous' dataType='dateTimeSecondsSince[1970]'/>"
    "<DataField name='g' optype='ordinal' dataType='integer'><Value value='1'/><Value value='2'/>"
    "<Value value='3'/></DataField>";

inline std::string DerivingDocument(const std::string& derived) {
  return "<PMML version='4.4'><DataDictionary numberOfFields='9'>" + std::string(kDataFields) +
         "</DataDictionary><TransformationDictionary>" + derived + "</TransformationDictionary></PMML>";
}

inline std::string Field(const std::string& expression, const std::string& dataType = "double",
                         const std::string& name = "v") {
  const bool isText = dataType == "string";
  return "<DerivedField name='" + name + "' optype='" + (isText ? "categorical" : "continuous") +
         "' dataType='" + dataType + "'>" + expression + "</DerivedField>";
}

inline std::string Ref(const std::string& name, const std::string& attributes = "") {
  return "<FieldRef field='" + name + "' " + attributes + "/>";
}
inline std::string Num(const std::string& number) {
  return "<Constant dataType='double'>" + number + "</Constant>";
}
inline std::string Txt(const std::string& text) {
  return "<Constant dataType='string'>" + text + "</Constant>";
}
inline std::string Call(const std::string& function, const std::string& parameters,
                        const std::string& attributes = "") {
  return "<Apply function='" + function + "' " + attributes + ">" + parameters + "</Apply>";
}

// Numbers in full, texts in quotes, "missing".
inline std::string Shown(const ScoreValue* value) {
  if (value == nullptr) return "none";
  if (value->GetType() == ScoreValue::kStringValueType) return "'" + value->GetString() + "'";
  if (value->IsSystemMissingValue()) return "missing";
  if (value->GetType() == ScoreValue::kDateTimeValueType) return value->GetString();
  char text[32];
  return std::string(text, std::to_chars(text, text + sizeof text, value->GetDouble()).ptr);
}

class DerivedFields {
 public:
  explicit DerivedFields(const std::string& derived) {
    std::istringstream in(DerivingDocument(derived));
    KxVeyra_940::ScoreDictionary* data = nullptr;
    TransformationDictionary* transformations = nullptr;
    try {
      transformations = KxVeyra_940::ModelFactory::GetTransformationDictionaryFromXML(in, data, "");
    } catch (...) {
      delete data;
      throw;
    }
    fData.reset(data);
    fTransformations.reset(transformations);
    for (const std::string& name : fData->GetVarNames()) fRecord.Add(name, nullptr);
  }

  // "x=1.5 s='a text' d=3": what is not named is absent.
  void Fill(const std::string& values) {
    for (int i = 0; i < fRecord.Size(); ++i) fRecord.Clear(i);
    for (std::size_t at = 0; (at = values.find_first_not_of(' ', at)) != std::string::npos;) {
      const std::size_t equals = values.find('=', at);
      const std::string name = values.substr(at, equals - at);
      const bool isText = values[equals + 1] == '\'';
      const std::size_t start = equals + (isText ? 2 : 1);
      const std::size_t end = std::min(values.find(isText ? '\'' : ' ', start), values.size());
      const std::string value = values.substr(start, end - start);
      at = end + (isText ? 1 : 0);
      const int slot = fRecord.GetIndex(name);
      const ScoreDictVar& variable = *fData->GetVar(name);
      if (isText) {
        ASSERT_TRUE(fRecord.SetText(slot, value)) << values;
      } else if (variable.GetVarType() == ScoreDictVar::kDATETIME_VAR) {
        ASSERT_TRUE(fRecord.SetValue(slot, std::stod(value), variable.GetDateTimeType())) << values;
      } else {
        ASSERT_TRUE(fRecord.SetValue(slot, std::stod(value))) << values;
      }
    }
  }
  void Compute() { fTransformations->GetValuesForDerivedVars(&fRecord, fData.get()); }
  std::string Value(const std::string& name) const { return Shown(fTransformations->GetVarValue(name)); }
  std::string ValueFor(const std::string& values, const std::string& name = "v") {
    Fill(values);
    Compute();
    return Value(name);
  }

  TransformationDictionary& Transformations() { return *fTransformations; }
  KxVeyra_940::ScoreDictionary& Data() { return *fData; }
  CaseRecord& Record() { return fRecord; }

 private:
  std::unique_ptr<KxVeyra_940::ScoreDictionary> fData;
  std::unique_ptr<TransformationDictionary> fTransformations;
  CaseRecord fRecord;
};

}  // namespace veyra_tests

#endif  // VEYRA_TESTS_TRANSFORM_DERIVEDFIELDS_H_
