// Parsing a document to a tree, and finding its model element.

#include <gtest/gtest.h>

#include <sstream>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "factory/DocumentParserInternal.h"
#include "factory/FactoryInternal.h"
#include "veyra/VYException.h"
#include "xml/ParserLimits.h"
#include "xml/XercesWrapper.h"
#include "xml/XmlText.h"

namespace {

using namespace KxVeyra_940;
using KxXML_940::ToUTF8;

TEST(FindModelElement, TakesTheFirstNameOfTheCatalogueThatOccurs) {
  const std::string inEntity = "<!DOCTYPE r [<!ENTITY e \"<A n='1'/>\">]><r>&e;<A n='2'/></r>";
  const std::string declared = "<!DOCTYPE r [<!ELEMENT A ANY>]><r><B n='1'/><A n='2'/></r>";
  const struct {
    const char* what;
    std::string document;
    std::vector<std::string> names;
    std::string want;  // name and "n" of the element
  } kRows[] = {
      {"catalogue order, not document order", "<r><A n='1'/><B n='2'/></r>", {"B", "A"}, "B2"},
      {"later names when the first does not occur", "<r><A n='1'/></r>", {"C", "B", "A"}, "A1"},
      {"the first in document order", "<r><x><A n='1'/></x><A n='2'/></r>", {"A"}, "A1"},
      {"outer before inner", "<r><A n='1'><A n='2'/></A></r>", {"A"}, "A1"},
      {"below another model", "<r><A n='1'><B n='2'/></A></r>", {"B", "A"}, "B2"},
      {"the same name twice in the catalogue", "<r><B n='1'/><A n='2'/></r>", {"A", "B", "A"}, "A2"},
      {"the root itself is not searched", "<A/>", {"A"}, ""},
      {"no names", "<r><A n='1'/></r>", {}, ""},
      {"names are whole and case-sensitive", "<r><Ab/><a/><p:A/></r>", {"A", ""}, ""},
      {"comments, texts and CDATA hold no elements", "<r><!--<A/>--><![CDATA[<A/>]]>A<?A A?></r>", {"A"}, ""},
      {"elements inside an entity", inEntity, {"A"}, "A1"},
      {"names that a DTD declares", declared, {"A", "B"}, "A2"},
      {"names outside ASCII", "<r><ä n='1'/></r>", {"ä"}, "ä1"},
  };
  const XercesWrapper guard(false);
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    std::istringstream in(row.document);
    DocumentParser parser;
    GetDocElement(parser, in, "");
    const xercesc::DOMElement* found = FindModelElement(parser.GetFirstElements(), row.names);
    std::string got;
    if (found != nullptr) got = ToUTF8(found->getTagName()) + ToUTF8(found->getAttribute(u"n"));
    EXPECT_EQ(got, row.want);
  }
}

// Refuses to start a document, in the ways in which a parser may.
class FailingParser : public KxXML_940::LimitedDOMParser {
 public:
  enum class Way { kNoDocument, kDomException, kOther };
  explicit FailingParser(Way way) : fWay(way) {}

  void startDocument() override {
    if (fWay == Way::kDomException) throw xercesc::DOMException(xercesc::DOMException::SYNTAX_ERR, 0);
    if (fWay == Way::kOther) throw 5;
  }
  void endDocument() override {}

 private:
  Way fWay;
};

TEST(GetDocElement, ReportsWhatTheParserDoes) {
  const std::pair<FailingParser::Way, int> kRows[] = {
      {FailingParser::Way::kNoDocument, 260107},
      {FailingParser::Way::kDomException, 260109},
      {FailingParser::Way::kOther, 260105},
  };
  const XercesWrapper guard(false);
  for (const auto& [way, want] : kRows) {
    std::istringstream in("");
    FailingParser parser(way);
    try {
      GetDocElement(parser, in, "name");
      ADD_FAILURE() << "no exception, want " << want;
    } catch (const VYException& exception) {
      EXPECT_EQ(exception.GetErrorCode(), want);
      EXPECT_EQ(exception.GetDetail().empty(), want != 260109) << exception.GetDetail();
    }
  }
}

// The tree is the parser's; one parser may be used again, after a failure too.
TEST(GetDocElement, ParsesWithAUsedParser) {
  const XercesWrapper guard(false);
  KxXML_940::LimitedDOMParser parser;
  for (int i = 0; i < 2; ++i) {
    std::istringstream broken("<a><b></a>");
    EXPECT_THROW(GetDocElement(parser, broken, ""), VYException);
    std::istringstream good("<a/>");
    const xercesc::DOMDocument* const document = GetDocElement(parser, good, "");
    EXPECT_EQ(document, parser.getDocument());
  }
}

}  // namespace
