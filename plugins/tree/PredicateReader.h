// Reads the predicates of tree nodes and makes them say what the PMML standard says.
//
// The library's translation stays as it is documented, with three gaps that only who sees the operators can
// close: the split of "notEqual" on categories holds the named value itself, that of "isNotIn" holds nothing
// that no predicate names, and a question about missing values may be unknown.

#ifndef VEYRA_PLUGINS_TREE_PREDICATEREADER_H_
#define VEYRA_PLUGINS_TREE_PREDICATEREADER_H_

#include <memory>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

#include "predicate/SetPredicate.h"
#include "predicate/SimplePredicate.h"
#include "translate/PMMLTranslator.h"
#include "veyra/ScoreDictionary.h"

namespace KxVeyra_940::Plugin {

class PredicateReader {
 public:
  // Makes the inputs among the dictionary's variables (those with an encoded value index) ready for the
  // predicates below `tree`: gives categorical ones their categories and encoders; numeric ordinal ones
  // without listed values become continuous.  Derived fields are looked up second, in `transformations`,
  // which may be null.  Everything is lent.
  PredicateReader(const PMMLTranslator& translator, ScoreDictionary& dictionary,
                  ScoreDictionary* transformations, const xercesc::DOMElement& tree);

  static bool IsPredicate(const xercesc::DOMElement& element);
  // Never null.  Beside what the translator raises: 260159 for an element that is no predicate, 260161 for a
  // field that is no input, 260153 and 260303 for an operator, 260185 for a set of numbers of a continuous
  // field.
  std::unique_ptr<ScorePredicate> Read(const xercesc::DOMElement& element);

  // The variables of the predicates read so far, by encoded value index; null where none has it.
  const std::vector<const ScoreDictVar*>& GetUsedVariables() const { return fUsed; }

 private:
  ScoreDictVar* FindField(const xercesc::DOMElement& element) const;
  void LearnCategories(const xercesc::DOMElement& tree);
  void LearnCategory(ScoreDictVar& variable, const XMLCh* text) const;
  std::unique_ptr<ScorePredicate> Translate(const xercesc::DOMElement& element) const;
  void VerifyCompound(const xercesc::DOMElement& element) const;
  void VerifySet(const xercesc::DOMElement& element) const;
  [[noreturn]] static void RaiseUnknownOperator(const xercesc::DOMElement& element);
  std::unique_ptr<ScorePredicate> Corrected(std::unique_ptr<ScorePredicate> predicate,
                                            const xercesc::DOMElement& element);
  static std::unique_ptr<ScorePredicate> CorrectedSimple(std::unique_ptr<SimplePredicate> predicate,
                                                         const xercesc::DOMElement& element);
  static std::unique_ptr<ScorePredicate> CorrectedSet(std::unique_ptr<SetPredicate> predicate);
  void Use(const ScoreDictVar& variable);

  const PMMLTranslator& fTranslator;
  ScoreDictionary& fDictionary;
  ScoreDictionary* fTransformations;  // null for none
  std::vector<const ScoreDictVar*> fUsed;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_TREE_PREDICATEREADER_H_
