// The parser guard, the stream input, the pre-scan and the limits against hostile documents.

#include <gtest/gtest.h>

#include <chrono>
#include <sstream>
#include <vector>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/BinInputStream.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "xml/KxXInputSource.h"
#include "xml/LockIsFree.h"
#include "xml/ParserLimits.h"
#include "xml/ScoreSax2Parser.h"
#include "xml/XercesWrapper.h"
#include "xml/XmlText.h"

namespace {

using namespace KxVeyra_940;
using namespace KxXML_940;

bool PlatformIsUp() { return xercesc::XMLPlatformUtils::fgTransService != nullptr; }

TEST(Guard, HoldsPlatformAndLock) {
  {
    const XercesWrapper outer(false);
    const XercesWrapper inner(false);
    EXPECT_TRUE(PlatformIsUp());
    EXPECT_FALSE(LockIsFree());
  }
  EXPECT_FALSE(PlatformIsUp());
  EXPECT_TRUE(LockIsFree());
}

TEST(Guard, DoesNothingWhenTheFactoryIsInitialised) {
  const XercesWrapper guard(true);
  EXPECT_FALSE(PlatformIsUp());
  EXPECT_TRUE(LockIsFree());
}

bool Contains(const std::string& document, const std::string& modelType = "NearestNeighborModel") {
  std::istringstream in(document);
  return ScoreSax2Parser::IsModelType(modelType, in);
}

std::string Repeat(const std::string& text, int count) {
  std::string result;
  while (count-- > 0) result += text;
  return result;
}

std::string WithDtd(const std::string& declarations, const std::string& content) {
  return "<!DOCTYPE PMML [" + declarations + "]><PMML>" + content + "<NearestNeighborModel/></PMML>";
}

TEST(PreScan, FindsTheElement) {
  const XercesWrapper guard(false);
  std::string utf16 = "\xFF\xFE";
  for (const char c : std::string("<PMML><NearestNeighborModel/></PMML>")) utf16 += {c, '\0'};
  const struct {
    const char* what;
    std::string document;
    bool want;
  } kRows[] = {
      {"a child of the root", "<PMML><NearestNeighborModel/></PMML>", true},
      {"at any depth", "<PMML><a><NearestNeighborModel/></a></PMML>", true},
      {"the root itself", "<NearestNeighborModel/>", true},
      {"before the error behind it", "<PMML><NearestNeighborModel><", true},
      {"in a default namespace", "<PMML xmlns='urn:x'><NearestNeighborModel/></PMML>", true},
      {"a DTD that nobody has", "<!DOCTYPE PMML SYSTEM 'none.dtd'><PMML><NearestNeighborModel/></PMML>",
       true},
      {"behind a DTD that does not know it", WithDtd("<!ELEMENT PMML EMPTY>", ""), true},
      {"in UTF-16", utf16, true},
      {"with a prefix", "<PMML xmlns:p='urn:x'><p:NearestNeighborModel/></PMML>", false},
      {"in another case", "<PMML><nearestNeighborModel/></PMML>", false},
      {"a longer name", "<PMML><NearestNeighborModels/></PMML>", false},
      {"as text and attribute", "<PMML a='NearestNeighborModel'>NearestNeighborModel</PMML>", false},
      {"behind the end of PMML", "<a><PMML></PMML><NearestNeighborModel/></a>", false},
      {"another root is read to its end", "<zent-ml><a/></zent-ml>", false},
      {"malformed before it", "<PMML><a></b><NearestNeighborModel/></PMML>", false},
      {"an undeclared prefix", "<PMML><q:a/><NearestNeighborModel/></PMML>", false},
      {"an undeclared entity", "<PMML>&x;<NearestNeighborModel/></PMML>", false},
      {"an external entity", WithDtd("<!ENTITY x SYSTEM '/etc/passwd'>", "&x;"), false},
      {"an unknown encoding", "<?xml version='1.0' encoding='none'?><PMML><NearestNeighborModel/></PMML>",
       false},
      {"empty", "", false},
      {"no XML", "x", false},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Contains(row.document), row.want);
  }
  EXPECT_TRUE(Contains("<PMML><größe/></PMML>", "größe"));
}

TEST(PreScan, StopsAtTheMatchAndOnBrokenStreams) {
  const XercesWrapper guard(false);
  std::istringstream in("<PMML><NearestNeighborModel/>" + std::string(1 << 20, ' ') + "</PMML>");
  EXPECT_TRUE(ScoreSax2Parser::IsModelType("NearestNeighborModel", in));
  EXPECT_LT(in.tellg(), 1 << 19);
  in.setstate(std::ios::badbit);
  EXPECT_FALSE(ScoreSax2Parser::IsModelType("NearestNeighborModel", in));
}

// What one document does to the pre-scan and to the DOM parser.
struct HostileRow {
  const char* what;
  std::string document;
  bool isFound;
  bool isParsed;
};

std::string Entity(const std::string& name, const std::string& value) {
  return "<!ENTITY " + name + " '" + value + "'>";
}

std::string Default(const std::string& value) { return "<!ATTLIST a b CDATA '" + value + "'>"; }

// Nine levels of entities, each ten times the one below; the mark is of a parameter entity, or of none.
std::string Laughs(const std::string& mark, const std::string& reference) {
  std::string declarations = Entity(mark + "l0", mark.empty() ? "lol" : "");
  for (char level = '1'; level <= '9'; ++level) {
    const char below = static_cast<char>(level - 1);
    declarations += Entity(mark + 'l' + level, Repeat(reference + 'l' + below + ';', 10));
  }
  return declarations;
}

std::string LongEntity(std::size_t length) { return Entity("x", std::string(length, 'x')); }

std::string Nested(int depth) {
  return "<PMML>" + Repeat("<a>", depth) + "<NearestNeighborModel/>" + Repeat("</a>", depth) + "</PMML>";
}

// Made on demand: the documents are large.
std::vector<HostileRow> HostileRows() {
  const std::string laughs = Laughs("", "&");
  const std::string external = "SYSTEM '/etc/passwd'>";
  const std::string longValue(1 << 20, 'x');
  const std::string longParameter = Entity("% a", std::string(1 << 20, ' '));
  const std::string markup = Repeat("<a b='&quot;&#65;'>&lt;&x;&amp;</a>", 9999);
  return {
      {"short entities, often", WithDtd(Entity("x", "1.0"), Repeat("&x;", 9999)), true, true},
      {"quotes and references to characters are no entities", WithDtd(Entity("x", "1"), markup), true, true},
      {"a long entity, once", WithDtd(LongEntity(1 << 20), "&x;"), true, true},
      {"of growing length", WithDtd(Entity("a", std::string(900, 'a')) + LongEntity(50000), "&a;&x;"), true,
       true},
      {"nested entities", WithDtd(laughs, "&l9;"), false, false},
      {"nested entities in an attribute", WithDtd(laughs, "<a b='&l9;'/>"), false, false},
      {"nested entities in a default value", WithDtd(laughs + Default("&l9;"), "<a/>"), false, false},
      {"one long entity, often", WithDtd(LongEntity(1 << 20), Repeat("&x;", 100000)), false, false},
      {"often in attributes", WithDtd(LongEntity(1 << 20), Repeat("<a b='&x;'/>", 100000)), false, false},
      {"an entity within itself", WithDtd(Entity("x", "&y;") + Entity("y", "&x;"), "&x;"), false, false},
      {"a long default value, often", WithDtd(Default(longValue), Repeat("<a/>", 100000)), false, false},
      {"one long entity, often, in a default value",
       WithDtd(LongEntity(1 << 20) + Default(Repeat("&x;", 100000)), "<a/>"), false, false},
      {"short in default values", WithDtd(LongEntity(800) + Default(Repeat("&x;", 100)), "<a/>"), true, true},
      {"short parameter entities", WithDtd(Entity("% a", "<!ELEMENT a EMPTY>") + "%a;", ""), true, true},
      {"nested parameter entities", WithDtd(Laughs("% ", "&#37;") + "%l9;", ""), false, false},
      {"one long parameter entity, often", WithDtd(longParameter + Repeat("%a;", 100000), ""), false, false},
      {"parameter entities within themselves",
       WithDtd(Entity("% a", "&#37;b;") + Entity("% b", "&#37;a;") + "%a;", ""), false, false},
      {"an external parameter entity", WithDtd("<!ENTITY % a " + external + "%a;", ""), false, false},
      {"an external entity", WithDtd("<!ENTITY x " + external, "&x;"), false, false},
      {"elements nested 900 deep", Nested(900), true, true},
      {"100,000 elements side by side", WithDtd("", Repeat("<a></a>", 100000)), true, true},
      {"elements nested 100,000 deep", Nested(100000), false, true},
  };
}

struct Dom {
  Dom() { parser.setErrorHandler(&errors); }
  void Parse(const std::string& document) {
    std::istringstream in(document);
    parser.parse(KxXInputSource(in));
  }

  XercesWrapper guard{false};
  LimitedDOMParser parser;
  ParseErrorRecorder errors;
};

TEST(Parsers, SurviveHostileDocuments) {
  constexpr std::chrono::seconds kPatience(10);  // for a busy machine; without limits it would be hours
  const XercesWrapper guard(false);
  for (const HostileRow& row : HostileRows()) {
    SCOPED_TRACE(row.what);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(Contains(row.document), row.isFound);
    Dom dom;
    dom.Parse(row.document);
    EXPECT_EQ(!dom.errors.HasFatalError(), row.isParsed) << dom.errors.GetText();
    EXPECT_LT(std::chrono::steady_clock::now() - start, kPatience);
  }
}

TEST(DomParser, StartsEachDocumentWithFreshLimits) {
  Dom dom;
  const std::string longDefault = WithDtd(Default(std::string(5 << 20, 'x')), "<a/>");
  for (const std::string& document :
       {WithDtd(LongEntity(1 << 20), "&x;"), WithDtd(Entity("x", "1"), Repeat("&x;", 9999)), longDefault,
        longDefault}) {
    dom.Parse(document);
    EXPECT_FALSE(dom.errors.HasFatalError()) << dom.errors.GetText();
  }
}

TEST(DomParser, IgnoresAnExternalDtd) {
  Dom dom;
  dom.Parse("<!DOCTYPE PMML SYSTEM 'none.dtd'><PMML/>");
  EXPECT_FALSE(dom.errors.HasFatalError()) << dom.errors.GetText();
  EXPECT_TRUE(EqualsAscii(dom.parser.getDocument()->getDocumentElement()->getTagName(), "PMML"));
}

TEST(ErrorRecorder, KeepsTheFirstFatalError) {
  Dom dom;
  ParseErrorRecorder& errors = dom.errors;
  dom.Parse("<PMML>\n <a></b>\n</PMML>");
  EXPECT_EQ(errors.GetFatalErrorCount(), 1);
  EXPECT_TRUE(errors.GetLine() == 2 && errors.GetColumn() == 7);
  EXPECT_NE(errors.GetText().find("'a'"), std::string::npos) << errors.GetText();
  errors.resetErrors();
  EXPECT_FALSE(errors.HasFatalError());
  EXPECT_EQ(errors.GetText(), "");
}

TEST(StreamInput, ReadsOnFromWhereTheStreamStands) {
  const XercesWrapper guard(false);
  std::istringstream in("0123456789");
  in.seekg(2);
  const KxXInputSource source(in);
  EXPECT_TRUE(EqualsAscii(source.getSystemId(), "istream"));
  const std::unique_ptr<xercesc::BinInputStream> stream(source.makeStream());
  XMLByte buffer[6];
  EXPECT_EQ(stream->getContentType(), nullptr);
  EXPECT_EQ(stream->readBytes(buffer, 6), 6u);
  EXPECT_EQ(std::string(buffer, buffer + 6), "234567");
  EXPECT_EQ(stream->curPos(), 8u);
  EXPECT_EQ(stream->readBytes(buffer, 6), 2u);
  EXPECT_EQ(stream->readBytes(buffer, 6), 0u);
}

}  // namespace
