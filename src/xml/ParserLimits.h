// What keeps a hostile document from taking the process's time and memory, and from reading anything else.
//
// No external entity or DTD is fetched.  Entities, nested or not, in content or in attribute values, may be
// expanded at most kMaxEntityExpansions times, and may grow to at most kMaxExpandedCharacters; so may
// attribute values that the DTD supplies.  What the parser itself does not limit, DtdLimits does.  Anything
// beyond is a fatal error of the document.
//
//   LimitedDOMParser parser;
//   ParseErrorRecorder errors;
//   parser.setErrorHandler(&errors);
//   parser.parse(source);
//   if (errors.HasFatalError()) ...   // without an error handler a malformed document is not noticed

#ifndef VEYRA_XML_PARSERLIMITS_H_
#define VEYRA_XML_PARSERLIMITS_H_

#include <string>
#include <xercesc/parsers/SAX2XMLReaderImpl.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/sax/ErrorHandler.hpp>
#include <xercesc/util/SecurityManager.hpp>

#include "veyra/Export.h"

namespace KxXML_940 {

inline constexpr XMLSize_t kMaxEntityExpansions = 10000;
inline constexpr XMLSize_t kMaxExpandedCharacters = XMLSize_t{8} << 20;

// Entities of up to this length may be expanded as often as any.
inline constexpr XMLSize_t kShortEntity = kMaxExpandedCharacters / kMaxEntityExpansions;

// How often entities may be expanded in a document whose longest entity has `longest` characters.
VEYRA_API XMLSize_t ExpansionLimit(XMLSize_t longest);

// Inside the DTD the parser expands without counting: parameter entities, and general entities in the default
// values of attributes.  There only short entities that refer to no others are admitted, so that the text
// grows by a bounded factor.
class VEYRA_API DtdLimits {
 public:
  // Takes note of a declaration.  False when the document is to be refused.
  bool AdmitsEntity(const xercesc::DTDEntityDecl& entity, bool isParameterEntity);
  // Whether default values may follow, which may use the entities declared so far.
  bool AdmitsDefaults() const { return !fIsNested && fLongestEntity <= kShortEntity; }
  XMLSize_t GetLongestEntity() const { return fLongestEntity; }  // characters; general entities only

 private:
  XMLSize_t fLongestEntity = 0;
  bool fIsNested = false;
};

// A DOM parser with the limits above.  It is used like its base class; all other settings are the caller's.
class VEYRA_API LimitedDOMParser : public xercesc::XercesDOMParser {
 public:
  LimitedDOMParser();
  ~LimitedDOMParser() override;

  void entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameterEntity, bool isIgnored) override;
  void startAttList(const xercesc::DTDElementDecl& element) override;
  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, const XMLCh* prefix,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attributeCount,
                    bool isEmpty, bool isRoot) override;
  void resetDocument() override;

 private:
  void LimitExpansions(XMLSize_t longest);
  void Refuse();

  xercesc::SecurityManager fLimits;
  DtdLimits fDtd;
  XMLSize_t fLimitedTo = 0;            // the entity length that fLimits reckons with
  XMLSize_t fDefaultedCharacters = 0;  // in attribute values that the DTD supplied
};

// A SAX2 reader, as the parser's factory makes them, with the limits of the DTD: no fetching, and
// ExpansionLimit of the longest entity that it reckons with.  What attribute values that the DTD supplies
// grow to is for its handlers to watch.
class VEYRA_API LimitedSAX2Reader : public xercesc::SAX2XMLReaderImpl {
 public:
  // Ends the parse: the document declares an entity that is longer than the reader has reckoned with.
  struct LongEntity {
    XMLSize_t length;
  };
  // Ends the parse: the document is to be refused.
  struct Refusal {};

  // Reckons with entities of up to `longest` characters.
  explicit LimitedSAX2Reader(XMLSize_t longest);
  ~LimitedSAX2Reader() override;

  void entityDecl(const xercesc::DTDEntityDecl& entity, bool isParameterEntity, bool isIgnored) override;
  void startAttList(const xercesc::DTDElementDecl& element) override;

 private:
  xercesc::SecurityManager fLimits;
  DtdLimits fDtd;
  XMLSize_t fLongest;
};

// Keeps the first fatal error of a parse.  It never throws; warnings and errors are not counted.
class VEYRA_API ParseErrorRecorder : public xercesc::ErrorHandler {
 public:
  ParseErrorRecorder();
  ~ParseErrorRecorder() override;

  void warning(const xercesc::SAXParseException& exception) override;
  void error(const xercesc::SAXParseException& exception) override;
  void fatalError(const xercesc::SAXParseException& exception) override;
  void resetErrors() override;

  bool HasFatalError() const { return fCount > 0; }
  int GetFatalErrorCount() const { return fCount; }
  const std::string& GetText() const { return fText; }  // UTF-8, the parser's own words
  unsigned long long GetLine() const { return fLine; }  // counted from 1; 0 while there is no error
  unsigned long long GetColumn() const { return fColumn; }

 private:
  int fCount = 0;
  std::string fText;
  unsigned long long fLine = 0;
  unsigned long long fColumn = 0;
};

}  // namespace KxXML_940

#endif  // VEYRA_XML_PARSERLIMITS_H_
