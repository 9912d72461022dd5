#include "xml/DocumentStream.h"

#include <istream>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "error/Raise.h"
#include "xml/KxXInputSource.h"
#include "xml/ParserLimits.h"
#include "xml/XmlText.h"

namespace KxXML_940 {

using KxVeyra_940::MessageId;
using KxVeyra_940::Raise;
using KxVeyra_940::RaiseWithDetail;

xercesc::DOMDocument* ParseDocument(xercesc::XercesDOMParser& parser, std::istream& in) {
  ParseErrorRecorder errors;
  std::string parserText;
  bool failed = false;
  try {
    const KxXInputSource source(in);
    parser.setErrorHandler(&errors);
    parser.parse(source);
    if (errors.HasFatalError()) source.RethrowFailure();
  } catch (const xercesc::XMLException& e) {
    failed = true;
    parserText = ToUTF8(e.getMessage());
  } catch (const xercesc::DOMException& e) {
    failed = true;
    parserText = ToUTF8(e.getMessage());
  } catch (...) {
    Raise(MessageId::kCannotOpenDocumentStream);
  }
  if (failed) RaiseWithDetail(MessageId::kDocumentParserError, parserText);
  parser.setErrorHandler(nullptr);
  xercesc::DOMDocument* document = parser.getDocument();
  if (document == nullptr) Raise(MessageId::kDocumentNotParsed);
  if (document->getDocumentElement() == nullptr) Raise(MessageId::kNoRootElement);
  // A tree that stands in part would build a model in part.
  if (errors.HasFatalError()) RaiseWithDetail(MessageId::kDocumentParserError, errors.GetText());
  return document;
}

}  // namespace KxXML_940
