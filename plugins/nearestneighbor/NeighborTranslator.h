// Translates "NearestNeighborModel" elements.

#ifndef VEYRA_PLUGINS_NEARESTNEIGHBOR_NEIGHBORTRANSLATOR_H_
#define VEYRA_PLUGINS_NEARESTNEIGHBOR_NEIGHBORTRANSLATOR_H_

#include <vector>

#include "common/PluginTranslator.h"
#include "nearestneighbor/NeighborModel.h"

namespace KxVeyra_940::Plugin {

class NeighborTranslator final : public PluginTranslator {
 public:
  NeighborTranslator();
  ~NeighborTranslator() override;

 protected:
  std::unique_ptr<PluginModel> NewModel() const override;
  // Raises 260133, 260254 (the function does not fit a target), and for the elements 260114, 260115, 260120,
  // 260151 to 260153, 260159, 260161, 260174, 260182, 260183, 260187, 260203, 260241, 260258, 260272, 260303.
  void BuildModel(const xercesc::DOMElement& element, PluginModel& model) override;
  // The training instances are read when the model can read cases.
  void CompleteModel(const xercesc::DOMElement& element, PluginModel& model) override;
  bool TakesSeveralTargets() const override { return true; }

 private:
  void CheckTargets(const xercesc::DOMElement& element, const PluginModel& model) const;
  std::vector<ComparedField> ReadInputs(const xercesc::DOMElement& element, bool isBinary,
                                        PluginModel& model);
  ComparedField ReadInput(const xercesc::DOMElement& element, CompareFunction usual, bool isBinary,
                          PluginModel& model);
  void ReadMissingWeights(const xercesc::DOMElement& element, std::vector<ComparedField>& fields) const;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_NEARESTNEIGHBOR_NEIGHBORTRANSLATOR_H_
