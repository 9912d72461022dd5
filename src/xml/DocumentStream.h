// Parses a whole document from a stream, as the factory and translators that read streams themselves do.
//
//   KxXML_940::LimitedDOMParser parser;
//   parser.setValidationScheme(xercesc::XercesDOMParser::Val_Never);
//   const xercesc::DOMDocument* document = KxXML_940::ParseDocument(parser, in);   // lent by the parser
//
// Threads: a parser and a stream belong to one thread.

#ifndef VEYRA_XML_DOCUMENTSTREAM_H_
#define VEYRA_XML_DOCUMENTSTREAM_H_

#include <iosfwd>
#include <xercesc/dom/DOMDocument.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>

#include "veyra/Export.h"

namespace KxXML_940 {

// Parses the stream from where it stands.  Returns the parser's document, which has a root element.  A
// document with a fatal error is refused as a whole.  Raises 260105 (the stream failed), 260107, 260109 with
// the parser's own text, 260110 (no root element).
VEYRA_API xercesc::DOMDocument* ParseDocument(xercesc::XercesDOMParser& parser, std::istream& in);

}  // namespace KxXML_940

#endif  // VEYRA_XML_DOCUMENTSTREAM_H_
