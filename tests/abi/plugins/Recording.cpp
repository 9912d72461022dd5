// A plug-in that translates nothing: the kind of its model tells in which way the factory asked for it.  An
// encoding "throw ..." makes the translator throw instead.

#include <atomic>
#include <istream>
#include <memory>
#include <new>
#include <stdexcept>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "abi/plugins/SharedData.h"
#include "error/Raise.h"
#include "factory/BaseModel.h"
#include "translate/BaseTranslator.h"
#include "xml/XmlText.h"

namespace {

using namespace KxVeyra_940;
using xercesc::DOMDocument;
using xercesc::DOMElement;

std::atomic<int> gLiveTranslators = 0;

class RecordedModel final : public BaseModel {
 public:
  explicit RecordedModel(std::string story) : fStory(std::move(story)) {}

  KxScore::KxStatus PrepareForCases(const ScoreCaseRecord&) override { return {}; }
  std::string GetModelKind() const override { return fStory; }
  ScoreResult* NewResult() const override { return nullptr; }
  KxScore::KxStatus Score(const ScoreCaseRecord&, ScoreResult&) override { return {}; }
  bool HasNoProbabilityOutput() const override { return true; }
  ScoreModel* Clone() const override { return new RecordedModel(fStory); }

 private:
  std::string fStory;
};

std::string Describe(const ScoreDictionary* dictionary) {
  return dictionary == nullptr ? "null" : std::to_string(dictionary->Size()).append(" fields");
}

std::string Describe(const DOMElement* element) {
  return element == nullptr ? "null" : KxXML_940::ToUTF8(element->getTagName());
}

[[noreturn]] void Throw(const std::string& what) {
  if (what == "throw VYException") Raise(MessageId::kMissingNode, {"plug-in"});
  if (what == "throw standard") throw std::runtime_error("plug-in");
  if (what == "throw parser's") {
    throw xercesc::RuntimeException(__FILE__, __LINE__, xercesc::XMLExcepts::Gen_CouldNotOpenExtEntity,
                                    u"plug-in");
  }
  if (what == "throw DOM's") throw xercesc::DOMException(xercesc::DOMException::SYNTAX_ERR, 0);
  throw std::bad_alloc();
}

class RecordingTranslator final : public BaseTranslator {
 public:
  RecordingTranslator() { ++gLiveTranslators; }
  ~RecordingTranslator() override { --gLiveTranslators; }

  void Record(const std::string& what) { fStory += what + " "; }

  ScoreModel* ParseFromTree(DOMDocument* document, const std::string& encoding) override {
    return Model("document(" + Describe(document->getDocumentElement()), encoding);
  }
  ScoreModel* ParseFromTree(DOMElement* modelElement, ScoreDictionary* dictionary,
                            ScoreDictionary* transformationDictionary, const std::string& encoding) override {
    return Model("element(" + Describe(modelElement) + ", " + Describe(dictionary) + ", " +
                     Describe(transformationDictionary),
                 encoding);
  }
  ScoreModel* ParseFromTree(DOMElement* modelElement, ScoreModel* baseModel,
                            const std::string& encoding) override {
    return Model("element on model(" + Describe(modelElement) + ", " +
                     (baseModel == nullptr ? "null" : baseModel->GetModelKind()),
                 encoding);
  }
  ScoreModel* ParseFromTree(DOMElement* first, DOMElement* second, DOMElement* modelElement,
                            const std::string& encoding) override {
    return Model("elements(" + Describe(first) + ", " + Describe(second) + ", " + Describe(modelElement),
                 encoding);
  }
  void SetSupportOldParser(bool supportOldParser) override {
    Record(supportOldParser ? "old parser" : "no old parser");
  }
  ScoreModel* ParseFromTree(std::istream& in, const std::string& encoding,
                            const std::string& auxPath) override {
    const std::string position = std::to_string(static_cast<long>(in.tellg()));
    std::string start(5, ' ');
    in.read(start.data(), 5);
    return Model("stream(" + start + " at " + position + ", aux '" + auxPath + "'", encoding);
  }
  ScoreModel* ParseFromTree(DOMDocument* document, ScoreDictionary* dictionary,
                            const std::string& encoding) override {
    return Model(
        "document with dictionary(" + Describe(document->getDocumentElement()) + ", " + Describe(dictionary),
        encoding);
  }

 private:
  ScoreModel* Model(const std::string& call, const std::string& encoding) {
    if (encoding.starts_with("throw")) Throw(encoding);
    return new RecordedModel(std::string(VEYRA_TEST_PLUGIN ": ") + fStory + call + ", '" + encoding + "')");
  }

  std::string fStory;
};

}  // namespace

extern "C" VEYRA_API ScoreTranslator* GiveMyTranslator();
extern "C" VEYRA_API int CountTranslators();
extern "C" VEYRA_API void TellSharedData(VeyraTest::SharedData& seen);

ScoreTranslator* GiveMyTranslator() { return new RecordingTranslator; }
int CountTranslators() { return gLiveTranslators; }
void TellSharedData(VeyraTest::SharedData& seen) { seen = VeyraTest::SharedDataSeenHere(); }

#if VEYRA_TEST_TAKES_NAMES
extern "C" VEYRA_API void PassModelNames(ScoreTranslator* translator, const std::vector<std::string>& names);

void PassModelNames(ScoreTranslator* translator, const std::vector<std::string>& names) {
  std::string text;
  for (const std::string& name : names) text += (text.empty() ? "" : ",") + name;
  static_cast<RecordingTranslator*>(translator)->Record("names(" + text + ")");
}
#endif
