// The translator that plug-ins derive from: finds the model element, translates the dictionary, the mining
// schema and the output fields.  A plug-in adds BuildModel, which reads its own elements.

#ifndef VEYRA_PLUGINS_PLUGINTRANSLATOR_H_
#define VEYRA_PLUGINS_PLUGINTRANSLATOR_H_

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/dom/DOMElement.hpp>

#include "common/FieldFinder.h"
#include "common/MiningSchema.h"
#include "common/PluginModel.h"
#include "transform/TransformationDictionary.h"
#include "translate/PMMLTranslator.h"

namespace KxVeyra_940::Plugin {

class PluginTranslator : public PMMLTranslator {
 public:
  // `modelTag` is the model element's name; it outlives the translator.
  explicit PluginTranslator(const char* modelTag);
  ~PluginTranslator() override;

  using PMMLTranslator::ParseFromTree;
  // The model element is a child of the root.  Raises 260178, naming what stands there, when it is not: a
  // model inside another model is a part, no model.
  ScoreModel* ParseFromTree(xercesc::DOMDocument* document, const std::string& encoding) override;
  // The document as a stream, parsed by the factory's rules.  Raises 260105, 260107, 260109 and 260110.
  ScoreModel* ParseFromTree(std::istream& in, const std::string& encoding) override;
  // The path may name a file with data that belongs to the document.
  ScoreModel* ParseFromTree(std::istream& in, const std::string& encoding,
                            const std::string& auxPath) override;
  // With a clone of the given dictionary in place of the document's.
  ScoreModel* ParseFromTree(xercesc::DOMDocument* document, ScoreDictionary* dictionary,
                            const std::string& encoding) override;
  // The transformations, when they are given, stand in place of the document's.
  ScoreModel* ParseFromTree(xercesc::DOMElement* modelElement, ScoreDictionary* dictionary,
                            ScoreDictionary* transformationDictionary, const std::string& encoding) override;
  // With clones of the base model's dictionaries.
  ScoreModel* ParseFromTree(xercesc::DOMElement* modelElement, ScoreModel* baseModel,
                            const std::string& encoding) override;
  // The first element is the DataDictionary; the second may be the TransformationDictionary.
  ScoreModel* ParseFromTree(xercesc::DOMElement* first, xercesc::DOMElement* second,
                            xercesc::DOMElement* modelElement, const std::string& encoding) override;

 protected:
  // What frames the mathematics of a model, whatever the vocabulary of its document.
  struct Frame {
    std::unique_ptr<ScoreDictionary> dictionary;
    MiningSchema schema;  // of variables of the dictionary
    InvalidValuesByField invalidValues;
    std::unique_ptr<TransformationDictionary> transformations;  // null: those of the document
    BaseModel::FUNCNAME_TYPE function = BaseModel::kNoMiningFunction;
    std::string algorithm;
  };

  // A new model of the element with its mathematics.  The target's variable is null when there is none.
  // The translator gives it its inputs beforehand and its output fields afterwards.
  virtual std::unique_ptr<PluginModel> NewModel() const = 0;
  virtual void BuildModel(const xercesc::DOMElement& element, PluginModel& model) = 0;
  // What remains to be done when the inputs are settled: the model can read cases by now.
  virtual void CompleteModel(const xercesc::DOMElement& element, PluginModel& model);
  // Whether the mining schema may name several targets; the first one is the model's target.
  virtual bool TakesSeveralTargets() const { return false; }

  // What the document calls invalid, by field, while a model is built.
  const InvalidValuesByField& GetInvalidValues() const { return fInvalidValues; }
  // The path that came with the document; empty when there is none.
  const std::string& GetAuxPath() const { return fAuxPath; }

  // Makes the transcoder of the document's texts, before anything of it is read.
  void SetEncoding(const std::string& encoding);
  // Builds the model of an element whose frame was read; the caller owns it.
  ScoreModel* BuildFrom(const xercesc::DOMElement& element, Frame frame);

  // The index of the model's input that the element names by the attribute; a derived field becomes an input
  // when it is first named.  Raises 260125 for a name that is no field, 260161 for a field that is no active
  // field of the mining schema.
  int FindInput(const xercesc::DOMElement& element, const char* attribute);
  // The same for an input that is read as a number; it is marked so.  Raises 260187 for a string field.
  int FindNumber(const xercesc::DOMElement& element, const char* attribute, PluginModel& model);

  // The category of the target that the attribute names, a text without a target, which may be null.  Raises
  // 260120 without the attribute, 260127 for a value that the target does not list.
  std::unique_ptr<ScoreValue> ReadTargetCategory(const xercesc::DOMElement& element, const char* attribute,
                                                 const ScoreDictVar* target) const;

 private:
  const xercesc::DOMElement& FindModelElement(const xercesc::DOMElement& root) const;
  // `transformations` are those that stand in place of the document's, null for none.
  ScoreModel* Build(const xercesc::DOMElement& element, std::unique_ptr<ScoreDictionary> dictionary,
                    const xercesc::DOMElement* dataDictionary,
                    std::unique_ptr<TransformationDictionary> transformations);
  void AddDerivedFields(const xercesc::DOMElement& element,
                        std::unique_ptr<TransformationDictionary> transformations, PluginModel& model);
  void UseDerivedFields(PluginModel& model) const;
  void AddFields(MiningSchema schema, PluginModel& model) const;

  const char* fModelTag;
  std::string fAuxPath;
  std::optional<FieldFinder> fFields;  // of the model under construction
  PluginModel* fModel = nullptr;       // the same
  std::vector<std::string> fDerivedInputs;
  InvalidValuesByField fInvalidValues;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_PLUGINTRANSLATOR_H_
