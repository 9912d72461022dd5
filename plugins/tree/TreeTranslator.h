// Translates "TreeModel" elements.

#ifndef VEYRA_PLUGINS_TREE_TREETRANSLATOR_H_
#define VEYRA_PLUGINS_TREE_TREETRANSLATOR_H_

#include "common/PluginTranslator.h"
#include "tree/TreeModel.h"

namespace KxVeyra_940::Plugin {

// How the nodes of a model are tested; the answers are the same.
enum class NodeEvaluation {
  kCompiled,    // plain comparisons and sets of categories in place
  kPredicates,  // every node by its predicate object
};

class TreeTranslator final : public PluginTranslator {
 public:
  explicit TreeTranslator(NodeEvaluation evaluation = NodeEvaluation::kCompiled);
  ~TreeTranslator() override;

 protected:
  std::unique_ptr<PluginModel> NewModel() const override;
  void BuildModel(const xercesc::DOMElement& element, PluginModel& model) override;

 private:
  void NameDerivedInputs(const xercesc::DOMElement& root, const PluginModel& model);

  NodeEvaluation fEvaluation;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_TREE_TREETRANSLATOR_H_
