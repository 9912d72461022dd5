// Every road from a document to a plug-in.  The plug-ins tell in their model's kind how they were called.

#include <gtest/gtest.h>
#include <unistd.h>
#include <xercesc/dom/DOM.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include <iterator>

#include "abi/Outcome.h"
#include "data/BaseDictionary.h"
#include "data/DictVar.h"
#include "factory/DynamicLibrary.h"
#include "tools/RunProgram.h"
#include "transform/TransformationDictionary.h"

namespace {

using namespace KxVeyra_940;
using namespace VeyraTest;

const std::string kTree = "<PMML><TreeModel/></PMML>";
const std::string kNeighbors = "<PMML><a/><NearestNeighborModel/></PMML>";

class Roads : public InitializedOrNot {};
INSTANTIATE_TEST_SUITE_P(Factory, Roads, testing::Bool(), Roads::Name);

// The outcomes of two roads: the plain one, and the one from a dictionary or a model.
struct Outcomes {
  std::string plain;
  std::string other;
};

Outcomes Both(const std::string& outcome) { return {outcome, outcome}; }
Outcomes OfPmml(const std::string& plugin) {
  return {plugin + " document(PMML, 'e')", plugin + " document with dictionary(PMML, 1 fields, 'e')"};
}

TEST_P(Roads, TheRootAndTheCatalogueChooseThePlugin) {
  const std::string general =
      "GeneralRegressionModel: names(AssociationModel,GeneralRegressionModel,TreeModel)";
  const Outcomes otherRoot = {"260301: Other",
                              "TreeModel: names(TreeModel) document with dictionary(Other, 1 fields, 'e')"};
  const Outcomes stream = {"NearestNeighborModel: stream(<PMML at 0, aux 'aux', '')",
                           "NearestNeighborModel: stream(<PMML at 0, aux '', '')"};
  const std::string lattice = "<AssocLattice><AssociationModel/></AssocLattice>";
  const struct {
    const char* what;
    std::string document;
    std::string names;
    Outcomes want;
  } kRows[] = {
      {"the first name that occurs wins, whatever the document's order",
       "<PMML><TreeModel/><x><GeneralRegressionModel/></x></PMML>",
       "AssociationModel GeneralRegressionModel TreeModel", OfPmml(general)},
      {"a name that stands twice", kTree, "TreeModel TreeModel",
       OfPmml("TreeModel: names(TreeModel,TreeModel)")},
      {"a plug-in that does not ask for the catalogue", "<PMML><NamelessModel/></PMML>", "NamelessModel",
       OfPmml("NamelessModel:")},
      {"lattices belong to associations", "<PMML><AssociationModelLattice/></PMML>",
       "AssociationModelLattice", OfPmml("AssociationModel: names(AssociationModelLattice)")},
      {"the root is no model", "<PMML/>", "PMML", Both("260301: ")},
      {"names are case-sensitive and whole", kTree, "treemodel Tree TreeModels", Both("260301: ")},
      {"an empty catalogue", kTree, "", Both("260301: ")},
      {"a prefix is part of the name", "<PMML xmlns:p='u'><p:TreeModel/></PMML>", "TreeModel",
       Both("260301: ")},
      {"zent-ml: a regression needs no catalogue",
       "<zent-ml><x><regression-model/></x><TreeModel/></zent-ml>", "TreeModel",
       Both("GeneralRegressionModel: names(TreeModel) document(zent-ml, 'e')")},
      {"zent-ml: anything else is searched for", "<zent-ml><TreeModel/></zent-ml>", "TreeModel",
       Both("TreeModel: names(TreeModel) document(zent-ml, 'e')")},
      {"Tree needs no catalogue", "<Tree/>", "x", Both("TreeModel: names(x) document(Tree, 'e')")},
      {"AssocLattice is searched", lattice, "AssociationModel",
       Both("AssociationModel: names(AssociationModel) document(AssocLattice, 'e')")},
      {"another lattice is searched", "<SequentialAssociationLattice/>", "TreeModel", Both("260301: ")},
      {"another root", "<Other><TreeModel/></Other>", "TreeModel", otherRoot},
      {"another root that holds nothing", "<pmml/>", "TreeModel", {"260301: pmml", "260301: "}},
      {"a neighbour model before the end goes to its plug-in as a stream", kNeighbors,
       "TreeModel NearestNeighborModel", stream},
      {"even when the catalogue has an earlier name for the document",
       "<PMML><TreeModel/><NearestNeighborModel/></PMML>", "TreeModel NearestNeighborModel", stream},
      {"a neighbour model that no catalogue name allows", kNeighbors, "TreeModel",
       Both("260113: NearestNeighborModel")},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    std::istringstream list(row.names);
    const Names names{std::istream_iterator<std::string>(list), {}};
    std::istringstream in(row.document);
    EXPECT_EQ(Made(in, names, "e", "aux"), row.want.plain);
    BaseDictionary dictionary;
    dictionary.AddVar("x", new DictVar("x", ScoreDictVar::kNUMERIC_VAR));
    std::istringstream again(row.document);
    EXPECT_EQ(Made(again, &dictionary, names, "e"), row.want.other);
  }
}

TEST_P(Roads, StreamsAreReadFromTheirStart) {
  std::istringstream in("      " + kNeighbors);
  in.seekg(6);
  EXPECT_EQ(Made(in, Names{"NearestNeighborModel"}, "", "a"),
            "NearestNeighborModel: stream(      at 0, aux 'a', '')");
  std::istringstream read(kTree);
  read.seekg(0, std::ios::end);
  read.get();
  ASSERT_TRUE(read.eof());
  EXPECT_EQ(Made(read, Names{"TreeModel"}, ""), "TreeModel: names(TreeModel) document(PMML, '')")
      << "the pre-scan of a stream at its end finds nothing; the parser reads it from the start";
}

// Strings: constant ones name the model, others the catalogue file.
TEST_P(Roads, FilesAndStrings) {
  const TemporaryDirectory files;
  const std::string tree = files.Write("tree \xC3\xA4.pmml", kTree);
  const std::string neighbors = files.Write("n.pmml", kNeighbors);
  std::string catalogue = files.Write("cat \xC3\xA4.txt", "NearestNeighborModel, TreeModel");
  const std::string fromFile = "TreeModel: names(NearestNeighborModel,TreeModel) document(PMML, ";
  EXPECT_EQ(Made(tree, catalogue, "e"), fromFile + "'e')");
  EXPECT_EQ(Made(neighbors, catalogue, "e", "g\xC3\xA4"),
            "NearestNeighborModel: stream(<PMML at 0, aux 'g\xC3\xA4', '')");
  EXPECT_EQ(Made(neighbors, catalogue, "e"), "NearestNeighborModel: stream(<PMML at 0, aux '', '')");
  std::istringstream in(kTree);
  EXPECT_EQ(Made(in, catalogue), fromFile + "'')");
  const std::string name = "TreeModel";
  EXPECT_EQ(Made(in, name), "TreeModel: names(TreeModel) document(PMML, '')");
  const std::string other = "GeneralRegressionModel";
  EXPECT_EQ(Made(in, other), "260301: ");
  std::string noCatalogue = "TreeModel";
  EXPECT_EQ(Made(in, noCatalogue), "260103: TreeModel");
}

struct Release {
  void operator()(xercesc::DOMDocument* document) const { document->release(); }
};

// A parsed document whose platform this program keeps up.
class Elements : public testing::Test {
 protected:
  // Finds the first element of that name.
  xercesc::DOMElement* Find(const char16_t* name) const {
    return static_cast<xercesc::DOMElement*>(fDocument->getElementsByTagName(name)->item(0));
  }

  struct Platform {
    Platform() { xercesc::XMLPlatformUtils::Initialize(); }
    ~Platform() { xercesc::XMLPlatformUtils::Terminate(); }
  };
  static xercesc::DOMDocument* NewDocument() {
    auto* document =
        xercesc::DOMImplementation::getImplementation()->createDocument(nullptr, u"PMML", nullptr);
    for (const char16_t* name :
         {u"DataDictionary", u"TreeModel", u"DecisionTree", u"Regression", u"AssociationModelLattice",
          u"NullModel", u"NamelessModel", u"NoSuchModel"}) {
      document->getDocumentElement()->appendChild(document->createElement(name));
    }
    return document;
  }

  Platform fPlatform;
  std::unique_ptr<xercesc::DOMDocument, Release> fDocument{NewDocument()};
  BaseDictionary fDictionary;
  TransformationDictionary fTransformations;
};

TEST_F(Elements, ModelElementWithDictionariesOrOnAModel) {
  ModelFactory::fModelNames = {"TreeModel"};
  const std::unique_ptr<ScoreModel> base(
      ModelFactory::MakeModelFromXML(Find(u"TreeModel"), Names{}, nullptr, nullptr, ""));
  const auto tree = [](const std::string& tag) {
    return Outcomes{
        "TreeModel: element(" + tag + ", 0 fields, 0 fields, 'e')",
        "TreeModel: element on model(" + tag + ", TreeModel: element(TreeModel, null, null, ''), 'e')"};
  };
  const std::string lattice = "AssociationModelLattice";
  const struct {
    const char* what;
    const char16_t* element;
    Names names;
    Outcomes want;
  } kRows[] = {
      {"by its tag, the catalogue is not passed on", u"TreeModel", {"x", "TreeModel"}, tree("TreeModel")},
      {"an empty list stands for the process's catalogue", u"TreeModel", {}, tree("TreeModel")},
      {"DecisionTree is a tree", u"DecisionTree", {"TreeModel"}, tree("DecisionTree")},
      {"Regression is a regression", u"Regression", {"Regression"}, Both("260113: RegressionModel")},
      {"a list that lacks the name", u"DecisionTree", {"DecisionTree"}, Both("260113: TreeModel")},
      {"lattices have no plug-in here", u"AssociationModelLattice", {lattice}, Both("260113: " + lattice)},
      {"a plug-in without a translator", u"NullModel", {"NullModel"}, Both("null")},
      {"no element", u"absent", {"TreeModel"}, Both("null")},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    void* const element = Find(row.element);
    EXPECT_EQ(Made(element, row.names, &fDictionary, &fTransformations, "e"), row.want.plain);
    EXPECT_EQ(Made(element, row.names, base.get(), "e"), row.want.other);
  }
}

TEST_F(Elements, ThreeElementsOrAModelAndItsElement) {
  std::istringstream in(kTree);
  const std::unique_ptr<ScoreModel> base(ModelFactory::MakeModelFromXML(in, Names{"TreeModel"}, ""));
  base->SetScoreDictionary(&fDictionary, false);
  base->SetTransformationScoreDictionary(&fTransformations, false);
  const auto parsed = [](const std::string& start, const std::string& tag) {
    return Outcomes{start + " elements(PMML, DataDictionary, " + tag + ", 'e')",
                    start + " element(" + tag + ", 0 fields, 0 fields, 'e')"};
  };
  const Outcomes oldTree = parsed("TreeModel: names(x,y) old parser", "TreeModel");
  const Outcomes nameless = parsed("NamelessModel: no old parser", "NamelessModel");
  const Outcomes lattice = parsed("AssociationModel: names(x,y) no old parser", "AssociationModelLattice");
  const struct {
    const char* what;
    const char16_t* element;
    bool supportOldParser;
    Outcomes want;
  } kRows[] = {
      {"the flag is passed on", u"TreeModel", true, oldTree},
      {"the catalogue is not searched", u"NamelessModel", false, nameless},
      {"lattices belong to associations", u"AssociationModelLattice", false, lattice},
      {"older names are no names here", u"DecisionTree", false, Both("260113: DecisionTree")},
      {"a plug-in without a translator", u"NullModel", false, Both("260113: NullModel")},
      {"no element", u"absent", true, Both("null")},
  };
  const Names names = {"x", "y"};
  auto* const root = fDocument->getDocumentElement();
  for (const auto& [what, tag, old, want] : kRows) {
    SCOPED_TRACE(what);
    xercesc::DOMElement* const element = Find(tag);
    EXPECT_EQ(Made(root, Find(u"DataDictionary"), element, names, "e", old), want.plain);
    EXPECT_EQ(Made(base.get(), element, names, "e", old), want.other);
  }
  auto* const tree = Find(u"TreeModel");
  EXPECT_EQ(Made(nullptr, nullptr, tree, names, "", false),
            "TreeModel: names(x,y) no old parser elements(null, null, TreeModel, '')");
  ScoreModel* const noModel = nullptr;
  EXPECT_EQ(Made(noModel, tree, names, "", false),
            "TreeModel: names(x,y) no old parser element(TreeModel, null, null, '')");
}

TEST(Catalogue, IsFilledOnceAndReplacedByInitialize) {
  const TemporaryDirectory files;
  const std::string tree = files.Write("tree.pmml", kTree);
  EXPECT_TRUE(ModelFactory::fModelNames.empty());
  OutcomeOf("<PMML/>", {"first", "second"});
  EXPECT_EQ(ModelFactory::fModelNames, (Names{"first", "second"})) << "a failed call fills it as well";
  OutcomeOf(kTree, {"TreeModel"});
  const std::string catalogue = files.Write("names", "third");
  Made(tree, catalogue, "");
  EXPECT_EQ(ModelFactory::fModelNames, (Names{"first", "second"}));
  ModelFactory::Initialize("");
  EXPECT_EQ(ModelFactory::fModelNames, (Names{"first", "second"}));
  EXPECT_TRUE(ModelFactory::fInitialized);
  ModelFactory::Initialize(catalogue);
  EXPECT_EQ(ModelFactory::fModelNames, Names{"third"});
  ModelFactory::fModelNames = {"TreeModel"};
  EXPECT_EQ(OutcomeOf(kTree, ModelFactory::fModelNames), "TreeModel: names(TreeModel) document(PMML, '')");
  ModelFactory::Terminate();
  ModelFactory::Terminate();
  EXPECT_TRUE(ModelFactory::fInitialized);
  EXPECT_EQ(ModelFactory::fModelNames, Names{"TreeModel"});
}

TEST(Catalogue, IsFilledByTheFileEntryAndTheDictionaryEntryToo) {
  const TemporaryDirectory files;
  const std::string catalogue = files.Write("names", "file");
  const std::string absent = files.Path("absent");
  EXPECT_EQ(Made(absent, catalogue, ""), "260104: " + absent);
  EXPECT_EQ(ModelFactory::fModelNames, Names{"file"});
  ModelFactory::fModelNames.clear();
  OutcomeWithDictionary("<PMML/>", {"dictionary"});
  EXPECT_EQ(ModelFactory::fModelNames, Names{"dictionary"});
}

// The factory deletes the translator after the one call, whether a model came of it or an exception.
TEST(Translator, IsDeletedAfterItsCall) {
  for (const char* encoding : {"", "throw VYException", "throw standard"}) {
    SCOPED_TRACE(encoding);
    OutcomeOf(kTree, {"TreeModel"}, encoding);
    VYDynamicLoadedLibrary library("libTreeModel940r.dylib", VYDynamicLoadedLibrary::kLazyMode);
    const auto count = reinterpret_cast<int (*)()>(library.GetSymbolAddress("CountTranslators"));
    ASSERT_NE(count, nullptr) << library.GetLastError();
    EXPECT_EQ(count(), 0);
  }
}

// Reads the lines that one call traces.
class Trace : public testing::Test {
 protected:
  Trace() {
    fFiles.Write("sc.cfg", "trace_leve,2\n");
    std::filesystem::current_path(fFiles.Path(""));
  }
  ~Trace() override { std::filesystem::current_path("/"); }

  std::string Lines() const {
    const std::string path = "log" + std::to_string(getpid()) + "/" + std::to_string(gettid());
    const std::string text = ReadFile(path + "_scoring_trace.log");
    std::filesystem::remove(path + "_scoring_trace.log");
    return text;
  }

  TemporaryDirectory fFiles;
};

TEST_F(Trace, OfEveryRoad) {
  const std::string kSymbol = "Enter:GetSymbolAddress\nExit:GetSymbolAddress\n";
  const std::string kMake = "Enter:MakeModelFromXML\n";
  fFiles.Write("modeldll.txt", "TreeModel NearestNeighborModel");
  const std::string tree = fFiles.Write("tree.pmml", kTree);
  EXPECT_EQ(Made(tree, "", ""), "TreeModel: names(TreeModel,NearestNeighborModel) document(PMML, '')");
  EXPECT_EQ(Lines(), kMake + kMake + "Enter:GetLibraryPath\n" + kSymbol + kSymbol + "Make Model End.\n");
  OutcomeWithDictionary(kTree, {"TreeModel"});
  EXPECT_EQ(Lines(), kMake + "Enter:GetLibraryPath\n" + kSymbol + kSymbol + "Make Model End.\n");
  OutcomeOf(kNeighbors, {"NearestNeighborModel"});
  EXPECT_EQ(Lines(), kMake + kSymbol + "Make Model End\n");
  OutcomeOf(kTree, {"x"});
  EXPECT_EQ(Lines(), kMake + "Enter:GetLibraryPath\n");
  ModelFactory::Initialize("");
  {
    const std::unique_ptr<xercesc::DOMDocument, Release> document(
        xercesc::DOMImplementation::getImplementation()->createDocument(nullptr, u"TreeModel", nullptr));
    auto* const element = document->getDocumentElement();
    const Names names = {"TreeModel"};
    Made(static_cast<void*>(element), names, nullptr, nullptr, "");
    EXPECT_EQ(Lines(), kMake + "Model name is :TreeModel\n" + kSymbol + "Exit:MakeModelFromXML\n");
    Made(nullptr, nullptr, element, names, "", false);
    EXPECT_EQ(Lines(), "Enter:GetLibraryPath\n" + kSymbol + kSymbol + "Make Model End.\n");
  }
  ModelFactory::Terminate();
}

}  // namespace
