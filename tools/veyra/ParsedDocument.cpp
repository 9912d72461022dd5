#include "veyra/ParsedDocument.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/framework/XMLFormatter.hpp>
#include <xercesc/framework/XMLPScanToken.hpp>
#include <xercesc/util/BinInputStream.hpp>

#include "translate/DomReader.h"
#include "translate/ModelElements.h"
#include "veyra/Failures.h"
#include "veyra/ZentDocument.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"
#include "xml/ParserLimits.h"
#include "xml/XmlText.h"

namespace VeyraTool {

namespace Tags = KxVeyra_940::PMMLModelTags;
namespace StandardTags = KxVeyra_940::PMMLStandardTags;
using KxVeyra_940::HasTag;
using xercesc::DOMElement;
using xercesc::DOMNode;

namespace {

// The children of a model that say what goes in and what comes out.
constexpr const char* kHeaderTags[] = {
    Tags::XML_ELE_EXTENSION,
    Tags::XML_ELE_MININGSCHEMA,
    Tags::XML_ELE_VAL_OUTPUT,
    Tags::XML_ELE_TARGETS,
    Tags::XML_ELE_MODELSTATS,
    Tags::XML_ELE_LOCALTRANSFORMATIONS,
    StandardTags::XML_ELE_MODELEXPLANATION,
};

// Lets the parser read a file that may be packed.  It never throws into the parser, which would leak the
// stream: the parser sees a document that ends there.
class FileInput : public xercesc::InputSource {
 public:
  explicit FileInput(const DocumentFile& file) : fSource(file.path, file.limit) {}

  xercesc::BinInputStream* makeStream() const override { return new (getMemoryManager()) Stream(*this); }
  void RethrowFailure() const {
    if (fFailure != nullptr) std::rethrow_exception(fFailure);
  }

 private:
  class Stream : public xercesc::BinInputStream {
   public:
    explicit Stream(const FileInput& file) : fFile(file) {}
    XMLFilePos curPos() const override { return fPosition; }
    const XMLCh* getContentType() const override { return nullptr; }
    XMLSize_t readBytes(XMLByte* buffer, XMLSize_t size) override {
      XMLSize_t count = 0;
      try {
        count = fFile.fSource.Read(reinterpret_cast<char*>(buffer), size);
      } catch (...) {
        fFile.fFailure = std::current_exception();
      }
      fPosition += count;
      return count;
    }

   private:
    const FileInput& fFile;
    XMLFilePos fPosition = 0;
  };

  mutable ByteSource fSource;
  mutable std::exception_ptr fFailure;
};

class MemoryInput : public xercesc::MemBufInputSource {
 public:
  explicit MemoryInput(std::string_view text)
      : MemBufInputSource(reinterpret_cast<const XMLByte*>(text.data()), text.size(), u"memory") {}
  void RethrowFailure() const {}
};

// Appends what is formatted to a text.
class TextTarget : public xercesc::XMLFormatTarget {
 public:
  explicit TextTarget(std::string& text) : fText(text) {}
  void writeChars(const XMLByte* bytes, XMLSize_t count, xercesc::XMLFormatter*) override {
    fText.append(reinterpret_cast<const char*>(bytes), count);
  }

 private:
  std::string& fText;
};

}  // namespace

// Notices when the first model's own content begins.
class ParsedDocument::HeaderParser : public KxXML_940::LimitedDOMParser {
 public:
  bool IsHeaderRead() const { return fIsHeaderRead; }

  void startElement(const xercesc::XMLElementDecl& declaration, unsigned int uriId, const XMLCh* prefix,
                    const xercesc::RefVectorOf<xercesc::XMLAttr>& attributes, XMLSize_t attributeCount,
                    bool isEmpty, bool isRoot) override {
    LimitedDOMParser::startElement(declaration, uriId, prefix, attributes, attributeCount, isEmpty, isRoot);
    // An empty element is closed by now: its parent is the current node.
    const DOMNode* node = getCurrentNode();
    const DOMNode* parent = isEmpty ? node : node->getParentNode();
    const DOMNode* element = isEmpty ? (isRoot ? nullptr : parent->getLastChild()) : node;
    if (element != nullptr) Notice(*element, *parent);
  }

 private:
  void Notice(const DOMNode& element, const DOMNode& parent) {
    const DOMNode* root = parent.getParentNode();
    if (root == nullptr || root->getNodeType() != DOMNode::ELEMENT_NODE || root->getParentNode() == nullptr ||
        root->getParentNode()->getNodeType() != DOMNode::DOCUMENT_NODE) {
      return;
    }
    if (!KxVeyra_940::IsModelElement(static_cast<const DOMElement&>(parent))) return;
    if (IsZentHeader(element)) return;
    fIsHeaderRead = fIsHeaderRead || std::none_of(std::begin(kHeaderTags), std::end(kHeaderTags),
                                                  [&](const char* tag) { return HasTag(element, tag); });
  }

  bool fIsHeaderRead = false;
};

ParsedDocument::ParsedDocument(const DocumentFile& file, Extent extent)
    : fParser(std::make_unique<HeaderParser>()) {
  try {
    Parse(FileInput(file), extent);
  } catch (const SourceFailure& failure) {
    throw CommandFailure(kModelRefused, file.path + ": " + failure.what());
  } catch (const CommandFailure& failure) {
    throw CommandFailure(kModelRefused, failure.what());  // a document that cannot be opened is refused
  }
}

ParsedDocument::ParsedDocument(std::string_view text) : fParser(std::make_unique<HeaderParser>()) {
  Parse(MemoryInput(text), Extent::kWhole);
}

ParsedDocument::~ParsedDocument() = default;

template <class Source>
void ParsedDocument::Parse(const Source& source, Extent extent) {
  KxXML_940::ParseErrorRecorder errors;
  fParser->setLoadExternalDTD(false);
  fParser->setValidationScheme(xercesc::XercesDOMParser::Val_Never);
  fParser->setErrorHandler(&errors);
  try {
    if (extent == Extent::kWhole) {
      fParser->parse(source);
    } else {
      xercesc::XMLPScanToken token;
      bool hasMore = fParser->parseFirst(source, token);
      while (hasMore && !fParser->IsHeaderRead()) hasMore = fParser->parseNext(token);
      if (fParser->IsHeaderRead()) {
        // What has been read stays; the parser forgets it.
        fDocument.reset(fParser->adoptDocument());
        fParser->parseReset(token);
      }
    }
  } catch (const xercesc::XMLException& exception) {
    fFault = KxXML_940::ToUTF8(exception.getMessage());
  } catch (const xercesc::DOMException& exception) {
    fFault = KxXML_940::ToUTF8(exception.getMessage());
  }
  fParser->setErrorHandler(nullptr);
  source.RethrowFailure();
  if (errors.HasFatalError()) {
    fFault = "line " + std::to_string(errors.GetLine()) + ", column " + std::to_string(errors.GetColumn()) +
             ": " + errors.GetText();
  }
  if (fDocument == nullptr) fDocument.reset(fParser->adoptDocument());
  if (fFault.empty() && GetRoot() == nullptr) fFault = "there is no XML document in it";
}

DOMElement* ParsedDocument::GetRoot() const {
  if (!fFault.empty() || fDocument == nullptr) return nullptr;
  return fDocument->getDocumentElement();
}

std::string ParsedDocument::Serialise() const {
  std::string text;
  TextTarget target(text);
  auto* implementation = xercesc::DOMImplementationRegistry::getDOMImplementation(u"LS");
  const std::unique_ptr<xercesc::DOMLSSerializer, ReleaseDom> serializer(
      implementation->createLSSerializer());
  const std::unique_ptr<xercesc::DOMLSOutput, ReleaseDom> output(implementation->createLSOutput());
  output->setEncoding(u"UTF-8");
  output->setByteStream(&target);
  serializer->write(fDocument.get(), output.get());
  return text;
}

}  // namespace VeyraTool
