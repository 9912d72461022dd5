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
#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "translate/BaseTranslator.h"
#include "veyra/Export.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/TransformFunction.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace KxVeyra_940 {

class DiscreteSplit;
class ScaleSplit;
class ScorePredicate;
class SetPredicate;
class SimplePredicate;

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
  // Whether the text equals a narrow one in the translator's encoding; false without a transcoder.
  bool XStrEqualsUTF8Str(const XMLCh* text, const char* narrow) const;

  // --- Arrays ---------------------------------------------------------------------------------------------

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

  // --- DataDictionary -------------------------------------------------------------------------------------

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

  // --- Targets and result fields --------------------------------------------------------------------------

  // A new dictionary of ResultVar variables from the "ResultField" elements at any depth below the node; the
  // caller owns it.  Null when there are none.  Errors 260120, 260152, 260153, 260285.
  ScoreDictionary* ParseResultDictionary(const xercesc::DOMNode* node);
  // Completes the variables of the "Target" children: categories, prior probabilities, a default value.
  // Always true.  Errors 260120, 260124, 260151, 260152, 260203, 260214, 260271, 260285, 260294; the
  // dictionary may then have been completed in part.
  bool HandleTargets(const xercesc::DOMElement* targets, ScoreDictionary* dictionary);
  // The word of "optype"; empty for any other number.
  static std::string ToString(ScoreDictVar::MeasureLevel level);

  // What every list of categories must fulfil: a flag has at most two (260271), none is missing by the
  // variable's own account (260294), no two are equal (260203).  The variable has its labels and its missing
  // values already.
  void VerifyCategories(const ScoreDictVar& variable) const;

  // --- Predicates -----------------------------------------------------------------------------------------
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
  // has an encoder (of a numeric ordinal variable, the numbers).
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

 protected:
  // An error argument from a text in the translator's encoding.
  std::string ToUTF8Argument(const std::string& narrow) const;

  int fNodeCounter = 0;                                 // numbers the nodes of expression trees
  std::map<std::string, TransformFunction> fFunctions;  // built-in functions by name
  std::string fEncoding;
  double fReserved = 4.0;  // read by nothing in this library

 private:
  const std::vector<ScoreValueLabel*>& RequiredLabels(const ScoreDictVar& variable) const;  // error 260126
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_PMMLTRANSLATOR_H_
