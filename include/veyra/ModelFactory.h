// The front door: makes models from PMML documents through the plug-in of the document's model kind.
//
//   ModelFactory::Initialize("modeldll.txt");                // once, before threads start
//   std::unique_ptr<ScoreModel> model(ModelFactory::MakeModelFromXML("model.pmml", "", ""));
//   ...
//   ModelFactory::Terminate();                               // once, after the last call
//
// Threads: after Initialize, MakeModelFromXML runs in any number of threads at once; without it the calls
// run one at a time.  Initialize and Terminate run alone.
// Errors: VYException with one of the ids that docs/architecture.md lists; nothing leaks.

#ifndef VEYRA_MODELFACTORY_H_
#define VEYRA_MODELFACTORY_H_

#include <iosfwd>
#include <string>
#include <vector>
#include <xercesc/util/XercesDefs.hpp>

#include "veyra/Export.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/ScoreModel.h"

XERCES_CPP_NAMESPACE_BEGIN
class DOMElement;
XERCES_CPP_NAMESPACE_END

namespace KxVeyra_940 {

class TransformationDictionary;

class VEYRA_API ModelFactory {
 public:
  ModelFactory() = delete;

  // The catalogue of model names, in search order; filled by Initialize, or by the first call that finds it
  // empty.
  static std::vector<std::string> fModelNames;
  // Set by Initialize, never cleared.
  static bool fInitialized;

  // Every model belongs to the caller.  `encoding` names the encoding of the model's narrow texts, empty for
  // UTF-8; `catalogPath` is the catalogue file, empty for "modeldll.txt" in the current directory;
  // `auxPath` is handed to the translator of a "NearestNeighborModel".  Streams must be seekable.
  static ScoreModel* MakeModelFromXML(const std::string& pmmlPath, const std::string& catalogPath,
                                      const std::string& encoding);
  static ScoreModel* MakeModelFromXML(const std::string& pmmlPath, const std::string& catalogPath,
                                      const std::string& encoding, const std::string& auxPath);
  static ScoreModel* MakeModelFromXML(std::istream& in, const std::vector<std::string>& modelNames,
                                      const std::string& encoding, const std::string& auxPath);
  static ScoreModel* MakeModelFromXML(std::istream& in, const std::vector<std::string>& modelNames,
                                      const std::string& encoding);
  // A constant string is the one model name of the catalogue ...
  static ScoreModel* MakeModelFromXML(std::istream& in, const std::string& modelName);
  // ... and a string that could be changed is the path of a catalogue file.
  static ScoreModel* MakeModelFromXML(std::istream& in, std::string& catalogPath);
  // Hands `dictionary` to the translator.
  static ScoreModel* MakeModelFromXML(std::istream& in, ScoreDictionary* dictionary,
                                      const std::vector<std::string>& modelNames,
                                      const std::string& encoding);
  // From a DOM model element (a xercesc::DOMElement*), with dictionaries or on top of a model.  An empty
  // catalogue stands for fModelNames.  Null when the plug-in hands out no translator.
  static ScoreModel* MakeModelFromXML(void* modelElement, const std::vector<std::string>& modelNames,
                                      ScoreDictionary* dictionary, ScoreDictionary* transformationDictionary,
                                      const std::string& encoding);
  static ScoreModel* MakeModelFromXML(void* modelElement, const std::vector<std::string>& modelNames,
                                      ScoreModel* baseModel, const std::string& encoding);
  // From DOM elements whose parser platform the caller keeps up; null for a null model element.
  static ScoreModel* MakeModelFromXML(xercesc::DOMElement* first, xercesc::DOMElement* second,
                                      xercesc::DOMElement* modelElement,
                                      const std::vector<std::string>& modelNames, const std::string& encoding,
                                      bool supportOldParser);
  static ScoreModel* MakeModelFromXML(ScoreModel* baseModel, xercesc::DOMElement* modelElement,
                                      const std::vector<std::string>& modelNames, const std::string& encoding,
                                      bool supportOldParser);

  // The derived fields of a PMML document (a TransformationDictionary), set up and ready for cases, and its
  // data dictionary, which is stored in `dictionary`; both belong to the caller.  No plug-in is loaded. Null,
  // with `dictionary` as it was, for a root other than "PMML"; null when no field is derived.  The stream
  // need not be seekable.  When the translation of the derived fields raises, `dictionary` is set already.
  // The document is parsed with the parser's own defaults, which read external DTDs and expand entities: give
  // it trusted documents only.
  static TransformationDictionary* GetTransformationDictionaryFromXML(const std::string& pmmlPath,
                                                                      ScoreDictionary*& dictionary,
                                                                      const std::string& encoding);
  static TransformationDictionary* GetTransformationDictionaryFromXML(std::istream& in,
                                                                      ScoreDictionary*& dictionary,
                                                                      const std::string& encoding);

  // Starts the parser platform for the process and, when the path is not empty, replaces fModelNames by the
  // catalogue file's names.
  static void Initialize(std::string catalogPath);
  // Stops the parser platform.
  static void Terminate();
};

}  // namespace KxVeyra_940

#endif  // VEYRA_MODELFACTORY_H_
