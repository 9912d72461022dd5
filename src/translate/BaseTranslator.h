// What every translator does with DOM text: walk elements, read attributes, check numbers, make typed values.
//
// DOM texts are UTF-16 (XMLCh) and lent by the document.  Narrow texts of names are UTF-8; texts that go into
// dictionaries are in the translator's encoding.  Error arguments are UTF-8.
// Threads: a translator is used by one thread, for one document.
// Errors: VYException; an operation that raises returns nothing and leaks nothing.

#ifndef VEYRA_TRANSLATE_BASETRANSLATOR_H_
#define VEYRA_TRANSLATE_BASETRANSLATOR_H_

#include <memory>
#include <string>
#include <string_view>
#include <xercesc/dom/DOMNodeList.hpp>
#include <xercesc/util/XercesDefs.hpp>

#include "veyra/Export.h"
#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreTranslator.h"
#include "veyra/ScoreValue.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMNode;
XERCES_CPP_NAMESPACE_END

namespace KxVeyra_940 {

class VeyraTranscoder;

class VEYRA_API BaseTranslator : public ScoreTranslator {
 public:
  BaseTranslator();
  ~BaseTranslator() override;
  BaseTranslator(const BaseTranslator&) = delete;
  BaseTranslator& operator=(const BaseTranslator&) = delete;

  // No form is supported until a subclass overrides it: each returns null.
  ScoreModel* ParseFromTree(xercesc::DOMDocument* document, const std::string& encoding) override = 0;
  ScoreModel* ParseFromTree(std::istream& in, const std::string& encoding) override;
  ScoreModel* ParseFromTree(const std::string& path, const std::string& encoding) override;
  ScoreModel* ParseFromTree(xercesc::DOMElement* modelElement, ScoreDictionary* dictionary,
                            ScoreDictionary* transformationDictionary, const std::string& encoding) override;
  ScoreModel* ParseFromTree(xercesc::DOMElement* modelElement, ScoreModel* baseModel,
                            const std::string& encoding) override;
  ScoreModel* ParseFromTree(xercesc::DOMElement* first, xercesc::DOMElement* second,
                            xercesc::DOMElement* modelElement, const std::string& encoding) override;
  void SetSupportOldParser(bool supportOldParser) override;  // does nothing
  ScoreModel* ParseFromTree(std::istream& in, const std::string& encoding,
                            const std::string& auxPath) override;
  ScoreModel* ParseFromTree(xercesc::DOMDocument* document, ScoreDictionary* dictionary,
                            const std::string& encoding) override;

  // Element children; null when there is none, and for null.
  static xercesc::DOMElement* GetFirstChildElt(const xercesc::DOMNode* node);
  static xercesc::DOMElement* GetNextSiblingElt(const xercesc::DOMNode* node);
  // The first child element of that tag: null, or for the forced forms error 260114 (tag), when there is
  // none.
  static xercesc::DOMElement* GetChildTag(const xercesc::DOMNode* node, const XMLCh* tag);
  static xercesc::DOMElement* GetChildTagForced(const xercesc::DOMNode* node, const XMLCh* tag);
  static xercesc::DOMElement* GetChildByTag(const xercesc::DOMNode* node, const char* name);
  static xercesc::DOMElement* GetChildByTagForced(const xercesc::DOMNode* node, const char* name);
  // The document's live list of all descendants of that name.  Error 260114 (name) for a null element.
  static xercesc::DOMNodeList* GetElementsByTagName(const xercesc::DOMElement* element, const char* name);
  static xercesc::DOMNodeList* GetElementsByTagName(const xercesc::DOMDocument* document, const char* name);

  // The attribute's text: empty, or for the forced form error 260120 (name, tag), when it is absent.
  // REQUIRES: element is not null.
  static const XMLCh* GetAttribute(const xercesc::DOMElement* element, const char* name);
  static const XMLCh* GetAttributeForced(const xercesc::DOMElement* element, const char* name);

  // The number that the text writes; spaces around it are ignored, other white space is not.  Error 260151
  // (trimmed text, "double").
  static double VerifyDouble(const XMLCh* text);
  static double VerifyDouble(std::u16string_view text);
  static double VerifyDouble(std::string_view text);
  // The whole number that the text writes, without any space; one outside the range of int gives the nearest
  // int.  Error 260151 (text, "integer").
  static int VerifyInt(const XMLCh* text);
  static int VerifyInt(std::u16string_view text);
  static int VerifyInt(std::string_view text);
  // The date or time as a number in the representation of `type`; system-missing for an empty text and for
  // kNoDateTime.  Error 260151 (text, "dateTime").
  static double VerifyDateTime(const XMLCh* text, ScoreDictVar::DateTimeType type);
  static double VerifyDateTime(const std::string& text, ScoreDictVar::DateTimeType type);

  // A new value of the variable's type; the caller owns it.  Numbers, and date-times as numbers in the
  // variable's representation, are checked by VerifyDouble.  A narrow text of a string variable is taken as
  // it is.  Null for an unknown variable type.  REQUIRES: variable is not null.
  ScoreValue* CarefullyMakeVarValue(const ScoreDictVar* variable, const XMLCh* text) const;
  ScoreValue* CarefullyMakeVarValue(const ScoreDictVar* variable, const std::string& text) const;

  // A copy without the spaces (U+0020 only) at both ends.
  static std::string TrimBlanks(const std::string& text);

  // Whether the text equals the UTF-8 name.  A null text equals the empty name.
  static bool IsEqual(const XMLCh* text, const char* name);
  // The same with the text converted by `transcoder`; a null transcoder stands for UTF-8.
  static bool IsEqual(const VeyraTranscoder* transcoder, const XMLCh* text, const char* name);

  // Makes the transcoder of the encoding, "UTF-8" when it is empty, and drops the one before.  Error 260303
  // (encoding, "encoding") when the encoding is unknown; the one before then stays.
  void CreateTranscoder(const std::string& encoding);
  // The text in the translator's encoding, in UTF-8 without a transcoder; empty for null.
  std::string EncodedText(const XMLCh* text) const;
  // EncodedText.  A PMMLTranslator has an operation of that name which answers in UTF-8.
  std::string ToString(const XMLCh* text) const;

  VeyraTranscoder* GetTranscoder() const { return fTranscoder.get(); }  // lent; null before it is created

 protected:
  std::unique_ptr<VeyraTranscoder> fTranscoder;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_TRANSLATE_BASETRANSLATOR_H_
