// Reads what both vocabularies write alike: parameters, predictors, design, estimates and their covariances.

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_DESCRIPTIONREADER_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_DESCRIPTIONREADER_H_

#include <string>
#include <unordered_map>
#include <xercesc/dom/DOMElement.hpp>

#include "generalregression/Description.h"
#include "generalregression/Vocabulary.h"

namespace KxVeyra_940::Plugin {

class GeneralRegressionTranslator;
class PluginModel;

// Reads one model.  Marks its inputs as the design uses them.  Raises 260114 for a list that is missing,
// 260283 for one without entries, 260159 for what does not belong there, 260203 for entries given twice,
// 260122 for a parameter and 260125 for a predictor that no list has, 260126, 260127, 260249 and 260303 for
// contrasts, 260258 for a covariance matrix that is not symmetric, and what the readers of fields, numbers
// and categories raise.
class DescriptionReader {
 public:
  // All are lent.
  DescriptionReader(GeneralRegressionTranslator& translator, const Vocabulary& words, PluginModel& model,
                    const xercesc::DOMElement& element)
      : fTranslator(translator), fWords(words), fModel(model), fElement(element) {}

  Description Read();

  // The position of the parameter that the attribute names.
  int FindParameter(const xercesc::DOMElement& element, const char* attribute) const;

 private:
  using Positions = std::unordered_map<std::string, int>;

  void ReadParameters();
  void ReadPredictors(const char* listTag, bool areFactors);
  void ReadFactor(const xercesc::DOMElement& element, Predictor& predictor);
  void ReadDesign();
  void ReadDesignCell(const xercesc::DOMElement& element);
  void ReadEstimates();
  void ReadCovariances();
  int FindPredictor(const xercesc::DOMElement& element) const;
  int FindTargetCategory(const xercesc::DOMElement& element, const char* attribute);
  bool PredictsCategories() const;

  GeneralRegressionTranslator& fTranslator;
  const Vocabulary& fWords;
  PluginModel& fModel;
  const xercesc::DOMElement& fElement;
  Description fDescription;
  Positions fParameters;
  Positions fPredictors;
  Positions fCategories;  // by the texts that name them
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_DESCRIPTIONREADER_H_
