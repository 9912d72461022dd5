#include "xml/ScoreSax2Parser.h"

#include <algorithm>
#include <xercesc/sax2/Attributes.hpp>

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

// With namespaces on, every start tag costs the parser a walk through the elements around it: a document
// nested ten thousands deep would take minutes.  No model stands this deep.
constexpr int kMaxDepth = 1000;

// Watches the depth, and what attribute values that the DTD supplies let the document grow to.
class ScanHandlers final : public ScoreSAX2Handlers {
 public:
  using ScoreSAX2Handlers::ScoreSAX2Handlers;

  void attributeDecl(const XMLCh*, const XMLCh*, const XMLCh*, const XMLCh*, const XMLCh* value) override {
    fDefaults += KxXML_940::View(value).size();
  }

  void startElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname,
                    const xercesc::Attributes& attributes) override {
    ScoreSAX2Handlers::startElement(uri, localname, qname, attributes);
    if (++fDepth > kMaxDepth) throw kFatalError;
    if (fDefaults <= KxXML_940::kShortEntity) return;
    for (XMLSize_t i = 0; i < attributes.getLength(); ++i)
      fCharacters += KxXML_940::View(attributes.getValue(i)).size();
    if (fCharacters > KxXML_940::kMaxExpandedCharacters) throw kFatalError;
  }

  void endElement(const XMLCh* uri, const XMLCh* localname, const XMLCh* qname) override {
    ScoreSAX2Handlers::endElement(uri, localname, qname);
    --fDepth;
  }

 private:
  int fDepth = 0;
  XMLSize_t fDefaults = 0;    // characters of all attribute values that the DTD supplies
  XMLSize_t fCharacters = 0;  // characters of all attribute values so far, when the DTD supplies long ones
};

void SetFeatures(xercesc::SAX2XMLReader& reader) {
  const Feature kFeatures[] = {
      {XMLUni::fgSAX2CoreValidation, false},       {XMLUni::fgXercesDynamic, true},
      {XMLUni::fgSAX2CoreNameSpaces, true},        {XMLUni::fgXercesSchema, false},
      {XMLUni::fgXercesSchemaFullChecking, false}, {XMLUni::fgSAX2CoreNameSpacePrefixes, false},
  };
  for (const Feature& feature : kFeatures) reader.setFeature(feature.name, feature.value);
}

// One scan that reckons with entities of up to `longest` characters.
bool Scan(const std::string& modelType, std::istream& in, XMLSize_t longest) {
  ScanHandlers handlers(modelType.c_str());
  KxXML_940::LimitedSAX2Reader reader(longest);
  SetFeatures(reader);
  reader.setContentHandler(&handlers);
  reader.setErrorHandler(&handlers);
  reader.setDeclarationHandler(&handlers);
  const KxXML_940::KxXInputSource source(in);
  try {
    try {
      reader.parse(source);
    } catch (const ScoreSAX2Handlers::HandlerState state) {
      if (state == ScoreSAX2Handlers::kFatalError) source.RethrowFailure();
      return state == ScoreSAX2Handlers::kFoundModel;
    } catch (const KxXML_940::LimitedSAX2Reader::Refusal&) {
      return false;
    }
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
  for (XMLSize_t longest = KxXML_940::kShortEntity; longest <= KxXML_940::kMaxExpandedCharacters;) {
    try {
      return Scan(modelType, in, longest);
    } catch (const KxXML_940::LimitedSAX2Reader::LongEntity& entity) {
      longest = std::max(2 * longest, entity.length);
    }
    in.clear();
    if (start == std::istream::pos_type(-1) || !in.seekg(start)) return false;
  }
  return false;
}

}  // namespace KxVeyra_940
