// What a model says about itself as a whole: its type, its link, its offset and trials.
//
// Older documents write some of it as extensions, <Extension name="link" value="log"/>, which are read as the
// attributes of the same meaning.

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_SETTINGS_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_SETTINGS_H_

#include <optional>
#include <string>
#include <xercesc/dom/DOMElement.hpp>

#include "common/Keywords.h"
#include "common/Links.h"
#include "factory/BaseModel.h"

namespace KxVeyra_940::Plugin {

enum class ModelType {
  kLinear,
  kLogLinear,
  kGeneralizedLinear,
  kMultinomialLogistic,
  kOrdinalMultinomial,
  kCoxRegression,
};

// Where a document gives one thing: an attribute that is not empty, or none.
struct Setting {
  const xercesc::DOMElement* element = nullptr;  // null: nowhere
  const char* attribute = nullptr;

  bool IsGiven() const { return element != nullptr; }
  std::string GetText() const;  // empty when it is nowhere
  std::optional<double> ReadNumber() const;
  // The value of the text's row; 260152 (text, attribute) for any other text.  REQUIRES: IsGiven().
  template <typename Value, std::size_t kCount>
  Value ReadWord(const Keyword<Value> (&words)[kCount]) const {
    return ReadKeyword(*element, attribute, words);
  }
};

// The attribute of that name, else the value of the child extension of that name.
Setting FindSetting(const xercesc::DOMElement& element, const char* name);
// The child extension of that name, or null.
const xercesc::DOMElement* FindExtension(const xercesc::DOMElement& element, const char* name);

struct Settings {
  ModelType type = ModelType::kLinear;
  Link link;               // of a mean, or of cumulative probabilities
  Setting offsetVariable;  // a field
  double offset = 0;
  Setting trialsVariable;  // a field
  double trials = 1;
  Setting referenceCategory;
};

// Reads the settings of a PMML model.  Raises 260120 for a model type, a link or a parameter of it that is
// missing, 260152 and 260151 for values, 260182 for a number that must be positive, 260211 for a type that
// does not go with the function or the trials, 260212 for what is given in two ways.
Settings ReadPmmlSettings(const xercesc::DOMElement& element, BaseModel::FUNCNAME_TYPE function);

// Reads those of a zent-ml model.  Raises 260120, 260151, 260152 and 260285.
Settings ReadZentSettings(const xercesc::DOMElement& element);

// What a model of that type predicts.
BaseModel::FUNCNAME_TYPE FunctionOf(ModelType type);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_SETTINGS_H_
