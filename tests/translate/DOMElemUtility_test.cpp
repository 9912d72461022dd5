#include "translate/DOMElemUtility.h"

#include "translate/Documents.h"
#include "xml/VeyraTranscoder.h"

using namespace KxVeyra_940;
using namespace veyra_tests;

TEST(DOMElemUtility, GivesDefaultsUnlessForced) {
  const Document document("<A i='7' d='1.5' t='\xC3\xA4' x='x1'><B/><C><B n='2'/></C></A>");
  const xercesc::DOMElement* root = document.Root();
  PlainTranslator translator("ISO-8859-1");
  translator.CreateTranscoder("ISO-8859-1");
  const DOMElemUtility utility(&translator, translator.GetTranscoder());

  EXPECT_EQ(utility.GetAttributeToInt(root, "i", true), 7);
  EXPECT_EQ(utility.GetAttributeToDouble(root, "d", true), 1.5);
  EXPECT_EQ(utility.GetAttributeToString(root, "t", true), "\xE4");
  EXPECT_EQ(utility.GetChildElemByName(root, "C", true), root->getLastElementChild());
  EXPECT_EQ(utility.GetNodeListLength(root, "B", true), 2);
  EXPECT_EQ(utility.GetElemFromNodeList(root, "B", 1, true), root->getLastElementChild()->getFirstChild());
  EXPECT_EQ(utility.GetDOMNodeList(root, "B", true)->getLength(), 2u);

  for (const char* name : {"absent", "x"}) {
    EXPECT_EQ(utility.GetAttributeToInt(root, name, false), -1);
    EXPECT_EQ(utility.GetAttributeToDouble(root, name, false), -1.0);
  }
  EXPECT_EQ(utility.GetAttributeToString(root, "absent", false), "");
  EXPECT_EQ(utility.GetChildElemByName(root, "D", false), nullptr);
  EXPECT_EQ(utility.GetElemFromNodeList(root, "B", 2, true), nullptr);
  EXPECT_EQ(utility.GetElemFromNodeList(root, "B", -1, true), nullptr);
  EXPECT_EQ(utility.GetDOMNodeList(root, "D", true), nullptr);

  EXPECT_EQ(Refusal([&] { utility.GetAttributeToInt(root, "absent", true); }), "260120 absent|A");
  EXPECT_EQ(Refusal([&] { utility.GetAttributeToInt(root, "x", true); }), "260151 x1|integer");
  EXPECT_EQ(Refusal([&] { utility.GetAttributeToDouble(root, "x", true); }), "260151 x1|double");
  EXPECT_EQ(Refusal([&] { utility.GetAttributeToString(root, "absent", true); }), "260120 absent|A");
  EXPECT_EQ(Refusal([&] { utility.GetChildElemByName(root, "D", true); }), "260114 D");
}

TEST(DOMElemUtility, WithoutWhatItNeedsNothingIsForced) {
  const Document document("<A i='7'><B/></A>");
  const PlainTranslator translator;
  const DOMElemUtility lonely(nullptr, nullptr);
  EXPECT_EQ(lonely.GetAttributeToInt(document.Root(), "absent", true), -1);
  EXPECT_EQ(lonely.GetNodeListLength(document.Root(), "B", true), 0);
  EXPECT_NE(lonely.GetDOMNodeList(document.Root(), "B", true), nullptr);
  const DOMElemUtility utility(&translator, nullptr);
  EXPECT_EQ(utility.GetAttributeToString(document.Root(), "i", true), "");
  EXPECT_EQ(utility.GetAttributeToDouble(nullptr, "i", true), -1.0);
  EXPECT_EQ(utility.GetAttributeToInt(document.Root(), "", true), -1);
  EXPECT_EQ(utility.GetChildElemByName(nullptr, "B", true), nullptr);
  EXPECT_EQ(utility.GetElemFromNodeList(nullptr, "B", 0, true), nullptr);
}
