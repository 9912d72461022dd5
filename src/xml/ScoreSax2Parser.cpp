#include "xml/ScoreSax2Parser.h"

#include <algorithm>
#include <memory>
#include <xercesc/sax2/Attributes.hpp>
#include <xercesc/sax2/XMLReaderFactory.hpp>
#include <xercesc/util/OutOfMemoryException.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "xml/KxXInputSource.h"
#include "xml/ParserLimits.h"
#include "xml/ScoreSAX2Handlers.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

using xercesc::XMLUni;

struct Feature {
  const XMLCh* name;
  bool value;
};

// Entities of up to this length may be expanded as often as any.
constexpr XMLSize_t kShortEntity = KxXML_940::kMaxExpandedCharacters / KxXML_940::kMaxEntityExpansions;

// Thrown when the document declares an entity that is longer than the scan has reckoned with.
struct LongEntity {
  XMLSize_t length;
};

// Watches what the document's own DTD lets it grow to.
class ScanHandlers final : public ScoreSAX2Handlers {
 public:
  ScanHandlers(const char* modelType, XMLSize_t longest) : ScoreSAX2Handlers(modelType), fLongest(longest) {}

  void internalEntityDecl(const XMLCh*, const XMLCh* value) override {
    const XMLSize_t length = KxXML_940::View(value).size();
    if (length > fLongest) throw LongEntity{length};
  }

  void attributeDecl(const XMLCh*, const XMLCh*, const XMLCh*, const XMLCh*, const XMLCh* value) override {
    fDefaults += KxXML_940::View(value).size();
  }

  void startElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname,
                    const xercesc::Attributes& attributes) override {
    ScoreSAX2Handlers::startElement(uri, localname, qname, attributes);
    if (fDefaults <= kShortEntity) return;
    for (XMLSize_t i = 0; i < attributes.getLength(); ++i)
      fCharacters += KxXML_940::View(attributes.getValue(i)).size();
    if (fCharacters > KxXML_940::kMaxExpandedCharacters) throw kFatalError;
  }

 private:
  XMLSize_t fLongest;
  XMLSize_t fDefaults = 0;    // characters of all attribute values that the DTD supplies
  XMLSize_t fCharacters = 0;  // characters of all attribute values so far, when the DTD supplies long ones
};

std::unique_ptr<xercesc::SAX2XMLReader> MakeReader() {
  const Feature kFeatures[] = {
      {XMLUni::fgSAX2CoreValidation, false},
      {XMLUni::fgXercesLoadExternalDTD, false},
      {XMLUni::fgXercesDynamic, true},
      {XMLUni::fgSAX2CoreNameSpaces, true},
      {XMLUni::fgXercesSchema, false},
      {XMLUni::fgXercesSchemaFullChecking, false},
      {XMLUni::fgSAX2CoreNameSpacePrefixes, false},
  };
  std::unique_ptr<xercesc::SAX2XMLReader> reader(xercesc::XMLReaderFactory::createXMLReader());
  for (const Feature& feature : kFeatures) reader->setFeature(feature.name, feature.value);
  return reader;
}

// One scan that reckons with entities of up to `longest` characters.
bool Scan(const std::string& modelType, std::istream& in, XMLSize_t longest) {
  xercesc::SecurityManager limits;
  ScanHandlers handlers(modelType.c_str(), longest);
  const std::unique_ptr<xercesc::SAX2XMLReader> reader = MakeReader();
  KxXML_940::LimitReader(*reader, limits, longest);
  reader->setContentHandler(&handlers);
  reader->setErrorHandler(&handlers);
  reader->setDeclarationHandler(&handlers);
  try {
    reader->parse(KxXML_940::KxXInputSource(in));
  } catch (const ScoreSAX2Handlers::HandlerState state) {
    return state == ScoreSAX2Handlers::kFoundModel;
  } catch (const xercesc::OutOfMemoryException&) {
    return false;
  } catch (const xercesc::XMLException&) {
    return false;
  }
  return false;
}

}  // namespace

ScoreSax2Parser::ScoreSax2Parser() = default;
ScoreSax2Parser::~ScoreSax2Parser() = default;

// The reader takes its limits before it sees the entities.  So the scan starts with many short ones; when a
// longer one is declared it starts again and allows fewer.  The length doubles at least: a few scans settle
// it.
bool ScoreSax2Parser::IsModelType(const std::string& modelType, std::istream& in) {
  const std::istream::pos_type start = in.tellg();
  for (XMLSize_t longest = kShortEntity; longest <= KxXML_940::kMaxExpandedCharacters;) {
    try {
      return Scan(modelType, in, longest);
    } catch (const LongEntity& entity) {
      longest = std::max(2 * longest, entity.length);
    }
    in.clear();
    if (start == std::istream::pos_type(-1) || !in.seekg(start)) return false;
  }
  return false;
}

}  // namespace KxVeyra_940
