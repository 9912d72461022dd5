// Getting a translator from a plug-in.

#include <algorithm>

#include "error/Raise.h"
#include "factory/DynamicLibrary.h"
#include "factory/FactoryInternal.h"
#include "vocabulary/PMMLStandardTags.h"

namespace KxVeyra_940 {

namespace {

using GiveTranslator = ScoreTranslator* (*)();
using PassNames = void (*)(ScoreTranslator*, const std::vector<std::string>&);

constexpr const char* kLibraryVersion = "940r";

// Raises 260113 with `shownName` when the library or its entry symbol is missing.
GiveTranslator FindEntry(VYDynamicLoadedLibrary& library, const std::string& shownName) {
  void* const entry = library.GetSymbolAddress("GiveMyTranslator");
  if (entry == nullptr) Raise(MessageId::kNoPlugin, {shownName});
  return reinterpret_cast<GiveTranslator>(entry);
}

std::string PluginPath(const std::string& modelName) {
  return VYDecorateDynamicPathName(modelName + kLibraryVersion);
}

}  // namespace

std::unique_ptr<ScoreTranslator> GetScoreTranslator(const std::vector<std::string>& names,
                                                    const std::string& modelName) {
  if (std::find(names.begin(), names.end(), modelName) == names.end()) {
    Raise(MessageId::kNoPlugin, {modelName});
  }
  VYDynamicLoadedLibrary library(PluginPath(modelName), VYDynamicLoadedLibrary::kLazyMode);
  return std::unique_ptr<ScoreTranslator>(FindEntry(library, modelName)());
}

std::unique_ptr<ScoreTranslator> GetNamedTranslator(const std::vector<std::string>& names,
                                                    const std::string& modelName) {
  // Lattices are built by the plug-in of association models; messages keep the document's name.
  const std::string pluginName = modelName == PMMLStandardTags::XML_ELE_ASSOCIATIONMODELLATTICE
                                     ? PMMLStandardTags::XML_ELE_ASSOCIATIONMODEL
                                     : modelName;
  VYDynamicLoadedLibrary library(PluginPath(pluginName), VYDynamicLoadedLibrary::kLazyMode);
  std::unique_ptr<ScoreTranslator> translator(FindEntry(library, modelName)());
  if (translator == nullptr) Raise(MessageId::kNoPlugin, {modelName});
  if (void* const passNames = library.GetSymbolAddress("PassModelNames")) {
    reinterpret_cast<PassNames>(passNames)(translator.get(), names);
  }
  return translator;
}

}  // namespace KxVeyra_940
