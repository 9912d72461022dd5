// Adding variables to a dictionary by the names that documents give them.

#ifndef VEYRA_TRANSLATE_VARIABLESINTERNAL_H_
#define VEYRA_TRANSLATE_VARIABLESINTERNAL_H_

#include <memory>
#include <string>
#include <type_traits>

#include "error/Raise.h"
#include "translate/BaseTranslator.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreDictionary.h"
#include "vocabulary/PMMLModelTags.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

// The name in the translator's encoding, which may be shorter there.  Error 260303 (name, "name") when the
// encoding leaves nothing of it: no dictionary takes a variable without a name.
inline std::string NameOf(const BaseTranslator& translator, const XMLCh* text) {
  std::string name = translator.EncodedText(text);
  if (name.empty())
    Raise(MessageId::kUnsupportedValue, {KxXML_940::ToUTF8(text), PMMLModelTags::XML_ATT_DATAFIELD_NAME});
  return name;
}

// Hands the variable to the dictionary; a refusal is that of a doubled name.
inline void TakeVariable(ScoreDictionary& dictionary, const std::string& name,
                         std::unique_ptr<ScoreDictVar> variable, const XMLCh* text, const char* element) {
  if (!dictionary.AddVar(name, variable.get()))
    Raise(MessageId::kDuplicateVariableIn, {KxXML_940::ToUTF8(text), element});
  static_cast<void>(variable.release());
}

// Adds the variable that `read` makes, which is called when the name will do.  Errors: those of NameOf,
// 260202 (name, `element`) when the dictionary has the name, be it another one in the document, and those of
// `read`.
template <class Read>
void AddVariable(ScoreDictionary& dictionary, const BaseTranslator& translator, const XMLCh* text,
                 const char* element, Read read) {
  const std::string name = NameOf(translator, text);
  if (static_cast<const ScoreDictionary&>(dictionary).GetVar(name) != nullptr)
    Raise(MessageId::kDuplicateVariableIn, {KxXML_940::ToUTF8(text), element});
  TakeVariable(dictionary, name, read(), text, element);
}

// Gives the variable a part in place of the one that it holds, which the setter would leave to nobody.
template <class Part>
void ReplacePart(ScoreDictVar& variable, Part* (ScoreDictVar::*get)() const, void (ScoreDictVar::*set)(Part*),
                 std::type_identity_t<std::unique_ptr<Part>> part) {
  const std::unique_ptr<Part> replaced((variable.*get)());
  (variable.*set)(part.release());
}

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_VARIABLESINTERNAL_H_
