#include "translate/DomReader.h"

#include "translate/Documents.h"
#include "xml/XmlText.h"

using namespace KxVeyra_940;
using namespace veyra_tests;
using KxXML_940::ToUTF8;
using xercesc::DOMElement;

TEST(DomReader, TextComesFromEverythingThatIsText) {
  const std::pair<const char*, const char*> kRows[] = {
      {"", ""},
      {"one", "one"},
      {"a<![CDATA[ <b> ]]>c", "a <b> c"},
      {"a<!-- not this -->b<?nor this?>c", "abc"},
      {"<!-- only this -->", ""},
      {"a&word;b", "awordb"},
      {"a&outer;b", "a[word]b"},
      {"a<!-- -->b<b>not <c>this</c></b>nor this", "ab"},
      {"<b/>nor this", ""},
  };
  for (const auto& [content, want] : kRows) {
    SCOPED_TRACE(content);
    const Document document("<!DOCTYPE A [<!ENTITY word 'word'><!ENTITY outer '[&word;]'>]><A>" +
                            std::string(content) + "</A>");
    std::u16string buffer;
    EXPECT_EQ(ToUTF8(TextOf(*document.Root(), buffer)), want);
  }
}

TEST(DomReader, ElementsBelowComeInDocumentOrderAndNotFromOutside) {
  const Document document("<R><X n='0'/><A><X n='1'><B><X n='2'/></B></X>text<X n='3'/></A><X n='4'/></R>");
  std::string order;
  const auto note = [&](const DOMElement& x) { order += RequiredText(x, "n"); };
  ForEachElementBelow(*document.Root(), "X", note);
  EXPECT_EQ(order, "01234");
  order.clear();
  ForEachElementBelow(*NextSiblingElement(FirstChildElement(document.Root())), "X", note);
  EXPECT_EQ(order, "123");
}

TEST(DomReader, DepthNeedsNoStack) {
  std::string xml;
  for (int i = 0; i < 100000; ++i) xml += "<X>";
  for (int i = 0; i < 100000; ++i) xml += "</X>";
  const Document document(xml);
  int count = 0;
  ForEachElementBelow(*document.Root(), "X", [&](const DOMElement&) { ++count; });
  EXPECT_EQ(count, 99999);
}

TEST(DomReader, NamesOfAnyLengthAndScriptAreFound) {
  const std::string kLong(200, 'n');
  const std::string kGroesse = "gr\u00f6\u00dfe";
  const Document document("<A " + kGroesse + "='1' " + kLong + "='2' e=''/>");
  const DOMElement& element = *document.Root();
  EXPECT_EQ(OptionalText(element, kGroesse.c_str()), "1");
  EXPECT_EQ(OptionalText(element, kLong.c_str()), "2");
  EXPECT_EQ(RequiredText(element, "e"), "");
  EXPECT_EQ(OptionalNumber(element, "e"), std::nullopt);
  EXPECT_EQ(OptionalNumber(element, "absent"), std::nullopt);
  EXPECT_EQ(OptionalInteger(element, kLong.c_str()), 2);
  EXPECT_EQ(Refusal([&] { RequiredText(element, "absent"); }), "260120 absent|A");
  EXPECT_EQ(Refusal([&] { RequiredNonEmptyAttribute(element, "e"); }), "260285 e|A");
}
