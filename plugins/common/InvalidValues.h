// Which values of a field the document calls invalid.
//
// A dictionary variable counts invalid values as missing ones.  A mining schema treats the two differently,
// so what the DataDictionary says about invalid values is read again here, once, when a model is built.

#ifndef VEYRA_PLUGINS_INVALIDVALUES_H_
#define VEYRA_PLUGINS_INVALIDVALUES_H_

#include <map>
#include <memory>
#include <string>
#include <xercesc/dom/DOMElement.hpp>

#include "common/CategoryTable.h"
#include "data/MissingValueSet.h"
#include "translate/PMMLTranslator.h"
#include "veyra/ScoreDictionary.h"

namespace KxVeyra_940::Plugin {

class InvalidValues {
 public:
  // REQUIRES: `dataField` is the element that `field` was made from.
  InvalidValues(const PMMLTranslator& translator, const xercesc::DOMElement& dataField,
                const ScoreDictVar& field);

  // Whether a value that the variable counts as missing is invalid rather than missing.
  bool Contains(const ScoreValue& value) const;

 private:
  CategoryTable fInvalid;
  CategoryTable fMissing;
  std::unique_ptr<MissingValueSet> fOutsideInterval;  // null without an interval
};

// By field name; fields about which the document says nothing have no entry.
using InvalidValuesByField = std::map<std::string, std::shared_ptr<const InvalidValues>>;

// Reads a "DataDictionary" element that was translated into `dictionary`; null gives no entries.
InvalidValuesByField ReadInvalidValues(const PMMLTranslator& translator,
                                       const xercesc::DOMElement* dataDictionary,
                                       const ScoreDictionary& dictionary);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_INVALIDVALUES_H_
