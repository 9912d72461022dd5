// The building blocks that turn elements of a PMML document into dictionaries and values.
//
//   class MyTranslator : public PMMLTranslator {          // in a plug-in
//     using PMMLTranslator::PMMLTranslator;
//     ScoreModel* ParseFromTree(DOMDocument* document, const std::string&) override {
//       std::unique_ptr<ScoreDictionary> dictionary(ParseDictionary(..., true));   // first: makes the
//       transcoder
//       ...
//
// Threads, texts and errors as in translate/BaseTranslator.h.

#ifndef VEYRA_TRANSLATE_PMMLTRANSLATOR_H_
#define VEYRA_TRANSLATE_PMMLTRANSLATOR_H_

#include <map>
#include <memory>
#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "translate/BaseTranslator.h"
#include "veyra/Export.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/ScoreValueRange.h"
#include "veyra/TransformFunction.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace KxVeyra_940 {

class CategoryLists;
class DiscreteSplit;
class FunctionTree;
class ScaleSplit;
class ScorePredicate;
class SetPredicate;
class SimplePredicate;
class TransformVar;
class TransformationDictionary;

class VEYRA_API PMMLTranslator : public BaseTranslator {
 public:
  // `encoding` names the encoding of the narrow texts of everything built; empty means UTF-8.
  explicit PMMLTranslator(const std::string& encoding);
  ~PMMLTranslator() override;

  // Neither form is supported until a subclass overrides it.
  using BaseTranslator::ParseFromTree;
  ScoreModel* ParseFromTree(xercesc::DOMDocument* document, const std::string& encoding) override;
  ScoreModel* ParseFromTree(xercesc::DOMElement* first, xercesc::DOMElement* second,
                            xercesc::DOMElement* modelElement, const std::string& encoding) override;

  // The text in UTF-8, whatever the translator's encoding; empty for null.
  static std::string ToString(const XMLCh* text);
  // A new UTF-16 text from one in the translator's encoding, which the caller releases with delete[]; null
  // without a transcoder.
  XMLCh* ToUTF16(const char* text) const;
  // Whether the text equals a narrow one in the translator's encoding; false without a transcoder, and for a
  // narrow text of which not all can be converted.
  bool XStrEqualsUTF8Str(const XMLCh* text, const char* narrow) const;

  // --- Arrays

  // The numbers of an "Array" element or of a basis row.  A basis row must hold `count` items, an "Array" as
  // many as its "n" says when it has one.  Errors 260114, 260151, 260172, 260241, 260283, 260284.
  static std::vector<double> VerifyDoubleArray(const xercesc::DOMElement* element, int count);
  static std::vector<int> VerifyIntArray(const xercesc::DOMElement* element, int count);
  // The texts of an "Array" element, checked by its "type"; empty for null.
  std::vector<std::string> ParseStrArray(const xercesc::DOMElement* element) const;
  // The texts of an array in the translator's encoding.  Items are parted by spaces (U+0020 only); a quoted
  // item may hold spaces, and \" stands for a quote unless one of `variable`'s categories is a lone
  // backslash. A line feed parts nothing, but those at the end of an unquoted item are no part of it.  `type`
  // "real" and "int" demand numbers.  A positive "n" must match.  `variable` may be null. Errors 260115,
  // 260151, 260156 (an unterminated quote), 260241, 260284.
  std::vector<std::string> GetArrayElements(const xercesc::DOMElement* node, const std::string& type,
                                            const ScoreDictVar* variable) const;
  // The first child named "Array".  Error 260115 when there is none.
  static xercesc::DOMElement* GetArrayNode(const xercesc::DOMNode* node);

  // --- DataDictionary

  // A new dictionary of the element's fields; the caller owns it.  Makes the transcoder when there is none
  // yet. With `setUpEncoders` every string field gets a category encoder.
  ScoreDictionary* ParseDictionary(const xercesc::DOMNode* node, bool setUpEncoders);
  // The type that the text of a "dataType" names; kNoDateTime for any other text.
  static ScoreDictVar::DateTimeType ParseDateTimeType(const XMLCh* text);
  // Turns the variable's usage off when the extension says so.
  static void ParseUsageTypeExtension(const xercesc::DOMElement* extension, ScoreDictVar* variable);
  // Adds what lies outside a valid interval to the missing values.  The variable and the number play no part.
  static void handleInterval(const ScoreDictVar* variable, const xercesc::DOMElement* interval,
                             ScoreMissingValueSet* missingValues, int unused);
  // Adds the interval itself to the missing values.
  static void handleTreeInterval(const xercesc::DOMElement* interval, ScoreMissingValueSet* missingValues);
  // Adds the range of the invalid-range extensions and answers whether there was one.  `code` is 1 for each
  // lower bound given plus 10 for each upper one.  Error 260272 when a bound was given twice.
  static bool HandleZENTMissingInterval(ScoreMissingValueSet* missingValues, int code, double lower,
                                        double upper);
  // Gives a categorical or ordinal variable an encoder, unless it has one, and encodes its labelled values in
  // their order; false for a continuous variable.
  static bool SetupCatEncoder(ScoreDictVar* variable);

  // --- Targets and result fields

  // A new dictionary of ResultVar variables from the "ResultField" elements at any depth below the node; the
  // caller owns it.  Null when there are none.  Errors 260120, 260152, 260153, 260285.
  ScoreDictionary* ParseResultDictionary(const xercesc::DOMNode* node);
  // Completes the variables of the "Target" children: categories, prior probabilities, a default value.
  // Always true.  Errors 260120, 260124, 260151, 260152, 260203, 260214, 260271, 260285, 260294; the
  // dictionary may then have been completed in part.
  bool HandleTargets(const xercesc::DOMElement* targets, ScoreDictionary* dictionary);
  // The word of "optype"; empty for any other number.
  static std::string ToString(ScoreDictVar::MeasureLevel level);

  // --- Derived fields

  // A new dictionary of the "DerivedField" elements at any depth below the element, in document order, which
  // is the order of their evaluation; the caller owns it.  Null when there are none.  A field may refer to
  // fields defined before it.  Restarts the numbers of expression nodes.  Errors as the rules below.
  TransformationDictionary* HandleTransformationDictionary(xercesc::DOMElement* element,
                                                           const ScoreDictionary* dataDictionary);
  // The same into a dictionary that has fields already: numbers go on, and names are refused across both.
  void ExtendTransformationDictionary(const xercesc::DOMElement& element,
                                      const ScoreDictionary* dataDictionary,
                                      TransformationDictionary& dictionary);
  // Fills the map of function names; a name that is there keeps its function.
  void InitFunctionMap();
  // A new expression node with what lies below it; `parent`, when there is one, takes it, else the caller
  // owns it.  Which nested functions a parent takes is said at VerifyParentAndChildFunction.  Errors 260120,
  // 260151, 260153, 260173, 260174, 260215, 260221 (also for expressions nested deeper than kMaxApplyDepth),
  // 260243, 260245, 260303.
  FunctionTree* HandleApply(xercesc::DOMElement* apply, const ScoreDictVar* derivedVar, FunctionTree* parent,
                            const ScoreDictionary* dataDictionary, const ScoreDictionary* transformations);
  static constexpr int kMaxApplyDepth = 500;
  // The name of the field, which must be known and, for a derived variable, of its type; that takes the
  // replacement of missing values.  Errors 260120, 260125, 260215.
  std::string HandleFieldRef(xercesc::DOMElement* fieldRef, const ScoreDictionary* dataDictionary,
                             const ScoreDictionary* transformations, const ScoreDictVar* derivedVar);
  // The text of a constant: seconds since 1970 for a date-time.  Errors 260114, 260151.
  std::string HandelConstant(const xercesc::DOMElement* constant, double& number,
                             ScoreValue::ValueType& type) const;
  // A new value; the caller owns it.  Errors 260114, 260151.
  ScoreValue* HandelConstant(const xercesc::DOMElement* constant) const;
  // A new text; the caller owns it.  Errors 260114, 260153 (another data type).
  ScoreValue* HandelConstantDefaultStringType(const xercesc::DOMElement* constant) const;
  // Gives the variable the listed values as its categories.  Errors 260120, 260151, 260153.
  void HandleValueList(const xercesc::DOMElement* derivedField, TransformVar* variable) const;
  // Inserts a leaf for a field, or a constant, below `parent`.  Takes the value.
  void SetLeafNodeStats(const std::string& name, FunctionTree* parent, int position, bool isConstant,
                        ScoreValue* fieldMissingValue);

  // The checks of an expression's parameters, described by their names ("Constant_D_", "Constant_T_" or
  // "Constant_S_" for constants), kinds (0 nested, 1 field, 2 constant) and, for nested ones, functions.
  void VerifyApplyFunction(const std::vector<std::string>& names, const std::vector<int>& kinds,
                           const ScoreDictionary* dataDictionary, const ScoreDictionary* transformations,
                           TransformFunction function, const std::vector<TransformFunction>& childFunctions,
                           const ScoreDictVar* derivedVar) const;
  // Error 260243 for a nested function whose result the parent does not take.  Logic functions, "if",
  // "value", the recasts and "greaterOrEqual" take any: what documents nest most is conditions, which a
  // parent that took functions of its own class only could not hold.  Nothing is refused there.
  void VerifyParentAndChildFunction(TransformFunction parent, TransformFunction child) const;
  // Error 260245 for a field or constant of the wrong kind; a field that no dictionary has passes as a
  // number.
  void VerifyOneElem(TransformFunction function, bool numericExpected, bool isConstant,
                     const std::string& name, const ScoreDictionary* dataDictionary,
                     const ScoreDictionary* transformations) const;

  static bool IsArithmeticFunction(TransformFunction function);
  static bool IsMathematicsFunction(TransformFunction function);
  static bool IsStatisticFunction(TransformFunction function);
  static bool IsDateTimeFunction(TransformFunction function);
  static bool IsStringFunction(TransformFunction function);
  static bool IsLogicFunction(TransformFunction function);
  static bool IsMixInputFunction(TransformFunction function);
  static bool IsNumericFunction(TransformFunction function);
  static bool IsInputNumericFunction(TransformFunction function);
  static bool IsInputStringFunction(TransformFunction function);
  static bool IsOutputNumericFunction(TransformFunction function);
  static bool IsOutputStringFunction(TransformFunction function);
  static bool IsMixOutputFunction(TransformFunction function);
  // The display name; "<not defined>" for a number without a function.
  std::string ToString(TransformFunction function) const;

  // Each completes a derived variable (a TransformVar) and returns the name of its source field.  Errors
  // 260120, 260125, 260151 and what they are told apart by: 260176, 260180; 260214; 260115, 260132, 260153,
  // 260175, 260178, 260216, 260244, 260272, 260293; 260115, 260122, 260153, 260272 and code 1; 260151.
  std::string HandleNormContinuous(xercesc::DOMElement* element, ScoreDictVar* derived,
                                   const ScoreDictionary* dataDictionary,
                                   const ScoreDictionary* transformations);
  // A source field without listed values gets the value as a category: its dictionary changes.
  std::string HandleNormDiscrete(xercesc::DOMElement* element, ScoreDictVar* derived,
                                 const ScoreDictionary* dataDictionary,
                                 const ScoreDictionary* transformations);
  std::string HandleDiscritize(xercesc::DOMElement* element, ScoreDictVar* derived,
                               const ScoreDictionary* dataDictionary, const ScoreDictionary* transformations);
  std::string HandleMapValues(xercesc::DOMElement* element, ScoreDictVar* derived,
                              const ScoreDictionary* dataDictionary, const ScoreDictionary* transformations);
  std::string HandleLag(xercesc::DOMElement* element, ScoreDictVar* derived,
                        const ScoreDictionary* dataDictionary, const ScoreDictionary* transformations);
  // A new range; the caller owns it.  Errors 260120, 260151, 260153, 260175 (no margin, from index 2 on).
  static ScoreValueRange* HandleDiscretizeBinInterVal(const xercesc::DOMElement* interval, int index);
  // Gives the variable the missing values that the extension lists.  Errors 260120, 260151, 260216, 260272.
  void handleDerivedVarMissingValue(const xercesc::DOMElement* extension, TransformVar* derived) const;
  // Applies one recode extension; unknown names change nothing.  Errors 260120, 260216, 260244.
  void HandleZENTExtensions(const xercesc::DOMElement* extension, TransformVar* derived) const;

  // What every list of categories must fulfil: a flag has at most two (260271), none is missing by the
  // variable's own account (260294), no two are equal (260203).  The variable has its labels and its missing
  // values already.
  void VerifyCategories(const ScoreDictVar& variable) const;

  // --- Predicates
  //
  // The values for which a predicate holds go to child 0 of its split, a missing value too when it asks for a
  // missing value.  Fields are looked up in `dictionary`, then in `transformations`, which may be null; a
  // categorical field without listed values gets the values that predicates name as categories, which is why
  // neither is const.  With `ordinalAsScale` numeric ordinal fields are compared as numbers, otherwise by the
  // order of their listed values.  New predicates and splits are the caller's.

  // How deep compound predicates may be nested.
  static constexpr int kMaxCompoundDepth = 500;

  // Null when nothing is left of the children: set predicates of continuous fields and unknown elements are
  // passed over.  A single child is returned without a compound around it.  Errors 260153, 260221 with a
  // detail (nested too deep) and those of the children.
  ScorePredicate* ParseCompoundPredicate(const xercesc::DOMElement* node, ScoreDictionary* dictionary,
                                         ScoreDictionary* transformations, bool ordinalAsScale) const;
  // Errors 260119, 260120, 260125, 260126, 260151, 260153, 260171, 260212, 260291, 260303.
  SimplePredicate* ParsePredicate(const xercesc::DOMElement* node, ScoreDictionary* dictionary,
                                  ScoreDictionary* transformations, bool ordinalAsScale) const;
  // Null for a continuous field.  Errors 260115, 260120, 260125, 260151 to 260153, 260156, 260158, 260222,
  // 260241, 260284.
  SetPredicate* ParseSetPredicate(const xercesc::DOMElement* node, ScoreDictionary* dictionary,
                                  ScoreDictionary* transformations) const;
  // The split of a "SimplePredicate"; of another element nothing is read and the split is empty.  Tell the
  // operator, whether the predicate asks for a missing value, and the text of the value.
  ScaleSplit* HandleNodeScaleSplit(const xercesc::DOMElement* node, const ScoreDictVar* variable,
                                   std::string& predicateOperator, bool& isMissing, std::string& value) const;
  DiscreteSplit* HandleNodeDiscreteSplit(const xercesc::DOMElement* node, ScoreDictVar* variable,
                                         std::string& predicateOperator, bool& isMissing,
                                         std::string& value) const;
  // The split of a "SimpleSetPredicate": the values for which it is true, and their codes when the variable
  // has an encoder (of a numeric ordinal variable, the numbers).  Like SetDiscreteSplitValue, it teaches its
  // categories to a variable that is marked as one without listed values.
  DiscreteSplit* HandleArrayDiscreteSplit(const xercesc::DOMElement* node, ScoreDictVar* variable,
                                          std::string& setOperator, std::vector<double>& arrayData) const;
  // The bounds of a comparison with the value, infinite on the side that has none.
  static void GetScaleSplitValue(const XMLCh* value, const XMLCh* predicateOperator, double& low,
                                 double& high, bool& closed);
  // The positions of the categories that the comparison names, none when start > end: 0 for "equal", 2 for
  // "notEqual", whose position is that of the value itself, 1 for the others.
  int HandleOrdinalVariable(const xercesc::DOMElement* element, const ScoreDictVar* variable, int& start,
                            int& end) const;
  // The position of the value among the variable's listed ones; -1 when it is none of them.
  int GetIndexOfOrdinalValue(const XMLCh* value, const ScoreDictVar* variable) const;
  void SetDiscreteSplitValue(ScoreDictVar* variable, DiscreteSplit* split, const XMLCh* value,
                             int child) const;
  // The texts of the variable's listed values that are not among the given ones, values compared.
  std::vector<std::string> Remove(const ScoreDictVar* variable, const std::vector<std::string>& values) const;
  // Whether the text, in the translator's encoding, is one of the variable's listed values.
  static bool IsValidScoreValue(const ScoreDictVar* variable, const std::string& value);

  // --- Small services

  // The variable in one of the dictionaries, the first one first; either may be null.  Null, or error 260125,
  // when neither has it.
  static const ScoreDictVar* FindVariable(const std::string& name, const ScoreDictionary* dataDictionary,
                                          const ScoreDictionary* transformations);
  const ScoreDictVar& RequiredVariable(const XMLCh* name, const ScoreDictionary* dataDictionary,
                                       const ScoreDictionary* transformations) const;
  // A value of the variable's type from the attribute; null when it is absent or empty.
  std::unique_ptr<ScoreValue> OptionalValue(const xercesc::DOMElement& element, const char* attribute,
                                            const ScoreDictVar& variable) const;
  std::string NextNodeID() { return std::to_string(fNodeCounter++); }
  // An error argument from a text in the translator's encoding.
  std::string ToUTF8Argument(const std::string& narrow) const;

 protected:
  int fNodeCounter = 0;                                 // numbers the nodes of expression trees
  std::map<std::string, TransformFunction> fFunctions;  // built-in functions by name
  std::string fEncoding;
  double fReserved = 4.0;  // read by nothing in this library

 private:
  const std::vector<ScoreValueLabel*>& RequiredLabels(const ScoreDictVar& variable) const;  // error 260126
  // The value of the category of that text; null when it is none.  A field marked as one without listed
  // values learns it; any other needs a list (error 260126).  Errors of CarefullyMakeVarValue.
  std::unique_ptr<ScoreValue> FindOrLearnCategory(ScoreDictVar& variable, const std::string& text) const;
  void PutItems(ScoreDictVar& variable, const std::vector<std::string>& items, DiscreteSplit& split,
                std::vector<double>& codes) const;
  void PutOthers(ScoreDictVar& variable, const std::vector<std::string>& items, DiscreteSplit& split,
                 std::vector<double>& codes) const;

  const std::unique_ptr<CategoryLists>
      fCategories;  // what splits share; translating a predicate may add to it
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_PMMLTRANSLATOR_H_
