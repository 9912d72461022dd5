// Every failure of the factory: its id and arguments, and that the next call finds everything in order.

#include <gtest/gtest.h>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include <functional>

#include "abi/Outcome.h"
#include "tools/RunProgram.h"
#include "xml/LockIsFree.h"

namespace {

using namespace KxVeyra_940;
using namespace VeyraTest;

const std::string kTree = "<PMML><TreeModel/></PMML>";
const Names kNames = {"TreeModel", "NullModel", "EntrylessModel", "MissingModel", "NearestNeighborModel"};

// The outcome of a document in which the factory chose this model.
std::string Chosen(const std::string& model) {
  return model +
         ": names(TreeModel,NullModel,EntrylessModel,MissingModel,NearestNeighborModel) document(PMML, '')";
}

bool PlatformIsUp() { return xercesc::XMLPlatformUtils::fgTransService != nullptr; }

class Failures : public InitializedOrNot {
 protected:
  // The platform is as the call found it, the lock is free, and a good call works.
  static void ExpectOrder() {
    EXPECT_EQ(PlatformIsUp(), GetParam());
    EXPECT_TRUE(LockIsFree());
    EXPECT_EQ(OutcomeOf(kTree, {"TreeModel"}), "TreeModel: names(TreeModel) document(PMML, '')");
  }
};
INSTANTIATE_TEST_SUITE_P(Factory, Failures, testing::Bool(), Failures::Name);

// After a "|" at the end of `want` the parser's own words follow.
void ExpectOutcome(const std::string& got, const std::string& want) {
  if (want.ends_with('|')) {
    EXPECT_TRUE(got.starts_with(want) && got.size() > want.size()) << got;
  } else {
    EXPECT_EQ(got, want);
  }
}

TEST_P(Failures, OfDocuments) {
  const struct {
    const char* what;
    std::string document;
    std::string want;
  } kRows[] = {
      {"empty", "", "260110"},
      {"blank", " \n\t ", "260110"},
      {"no XML", "a,b\n1,2\n", "260110"},
      {"a byte order mark alone", "\xEF\xBB\xBF", "260110"},
      {"zeros", std::string(64, '\0'), "260110"},
      {"unknown encoding", "<?xml version='1.0' encoding='no-such'?>" + kTree, "260110"},
      {"wrong version", "<?xml version='9.9'?>" + kTree, "260110"},
      {"a comment alone", "<!-- nothing -->", "260110"},
      {"an unfinished DTD", "<!DOCTYPE PMML [", "260110"},
      {"cut off in an element", "<PMML><TreeModel", "260109|"},
      {"cut off behind the model", "<PMML><TreeModel/>", "260109|"},
      {"cut off in a comment", "<PMML><TreeModel/><!-- ", "260109|"},
      {"end tags crossed", "<PMML><TreeModel></PMML></TreeModel>", "260109|expected end of tag 'TreeModel'"},
      {"two roots", kTree + kTree, "260109|"},
      {"text behind the root", kTree + "x", "260109|"},
      {"a root tag that is broken itself", "<PMML a='1' a='2'><TreeModel/></PMML>", "260110"},
      {"an attribute twice", "<PMML><TreeModel a='1' a='2'/></PMML>", "260109|"},
      {"an undeclared entity", "<PMML>&x;<TreeModel/></PMML>", "260109|"},
      {"a control character", "<PMML>\x01<TreeModel/></PMML>", "260109|"},
      {"ill-formed UTF-8 in the first block", "<PMML><TreeModel a='\xFF'/></PMML>", "260110"},
      {"ill-formed UTF-8 later", "<PMML>" + std::string(200000, ' ') + "\xFF<TreeModel/></PMML>", "260109|"},
      {"broken before a neighbour model", "<PMML><a></b><NearestNeighborModel/></PMML>", "260109|"},
      // Namespaces matter to the pre-scan alone, which then finds nothing.
      {"an undeclared prefix", "<PMML><p:a/><TreeModel/></PMML>", Chosen("TreeModel")},
      {"an undeclared prefix hides a neighbour model", "<PMML><p:a/><NearestNeighborModel/></PMML>",
       Chosen("NearestNeighborModel")},
      {"a byte order mark", "\xEF\xBB\xBF" + kTree, Chosen("TreeModel")},
      {"a missing plug-in", "<PMML><MissingModel/></PMML>", "260113: MissingModel"},
      {"a plug-in without the entry point", "<PMML><EntrylessModel/></PMML>", "260113: EntrylessModel"},
      {"a plug-in without a translator", "<PMML><NullModel/></PMML>", "260113: NullModel"},
      {"a root that is not supported", "<html><TreeModel/></html>", "260301: html"},
      {"no model", "<PMML/>", "260301: "},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    ExpectOutcome(OutcomeOf(row.document, kNames), row.want);
    ExpectOrder();
  }
}

TEST_P(Failures, OfFiles) {
  const TemporaryDirectory files;
  const std::string tree = files.Write("tree.pmml", kTree);
  const std::string names = files.Write("names", "TreeModel");
  const std::string absent = files.Path("absent");
  const std::string directory = files.Path("");
  const struct {
    const char* what;
    std::string document;
    std::string catalogue;
    std::string want;
  } kRows[] = {
      {"no catalogue", tree, absent, "260103: " + absent},
      {"a directory as catalogue", tree, directory, "260103: " + directory},
      {"no catalogue here", tree, "", "260103: modeldll.txt"},
      {"no document", absent, names, "260104: " + absent},
      {"a directory as document", directory, names, "260104: " + directory},
      {"no document named", "", names, "260104: "},
      {"neither: the catalogue is read first", absent, absent, "260103: " + absent},
  };
  std::filesystem::current_path(directory);
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(Made(row.document, row.catalogue, ""), row.want);
    ExpectOrder();
  }
  std::filesystem::current_path("/");
}

// A document that can be read `passes` times; the next one fails at its first byte, or behind `bytes` ones.
class BreakingBuffer final : public std::stringbuf {
 public:
  BreakingBuffer(const std::string& document, int passes, std::streamsize bytes, std::function<void()> fail)
      : std::stringbuf(document), fPasses(passes), fBytes(bytes), fFail(std::move(fail)) {}

 private:
  std::streamsize xsgetn(char* buffer, std::streamsize count) override {
    if (fPasses > 0) return std::stringbuf::xsgetn(buffer, count);
    if (fBytes == 0) fFail();
    const std::streamsize read = std::stringbuf::xsgetn(buffer, std::min(count, fBytes));
    fBytes -= read;
    return read;
  }
  pos_type seekpos(pos_type position, std::ios_base::openmode mode) override {
    --fPasses;
    return std::stringbuf::seekpos(position, mode);
  }

  int fPasses;
  std::streamsize fBytes;
  std::function<void()> fFail;
};

[[noreturn]] void FailAsTheParser() {
  throw xercesc::RuntimeException(__FILE__, __LINE__, xercesc::XMLExcepts::Gen_CouldNotOpenExtEntity,
                                  u"disk");
}
[[noreturn]] void FailAsTheDom() { throw xercesc::DOMException(xercesc::DOMException::SYNTAX_ERR, 0); }
[[noreturn]] void FailAsTheSystem() { throw std::runtime_error("disk"); }

// An exception out of the parser's first read leaked the parser's stream object.
TEST_P(Failures, OfStreams) {
  const std::ios::iostate kSilent = std::ios::goodbit;
  const std::ios::iostate kOnBad = std::ios::badbit;
  const std::ios::iostate kOnAll = std::ios::badbit | std::ios::failbit | std::ios::eofbit;
  const struct {
    const char* what;
    int passes;
    std::streamsize bytes;
    std::function<void()> fail;
    std::ios::iostate exceptions;
    std::string want;
  } kRows[] = {
      {"silent: the parser sees an empty document", 1, 0, FailAsTheSystem, kSilent, "260110"},
      {"silent: or one that is cut off", 1, 12, FailAsTheSystem, kSilent, "260109|"},
      {"silent: the first pass decides nothing, the broken stream is not read again", 0, 0, FailAsTheSystem,
       kSilent, "260110"},
      {"the second pass fails for the system's reasons", 1, 0, FailAsTheSystem, kOnBad, "260105"},
      {"the second pass fails in the parser's way", 1, 0, FailAsTheParser, kOnBad,
       "260109|unable to open external entity 'disk'"},
      {"the second pass fails in the DOM's way", 1, 0, FailAsTheDom, kOnBad, "260109|"},
      {"the first pass fails in the parser's way, the second finds the stream bad", 0, 0, FailAsTheParser,
       kOnBad, "260105"},
      {"the first pass passes on what it cannot know", 0, 0, FailAsTheSystem, kOnBad, "standard: disk"},
      {"a stream that throws at its end has given the whole document", 9, 0, FailAsTheSystem, kOnAll,
       Chosen("TreeModel")},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    BreakingBuffer buffer(kTree, row.passes, row.bytes, row.fail);
    std::istream in(&buffer);
    in.exceptions(row.exceptions);
    ExpectOutcome(Made(in, kNames, ""), row.want);
    ExpectOrder();
  }
}

TEST_P(Failures, OfStreamsThatCannotSeek) {
  class Pipe final : public std::streambuf {
   public:
    explicit Pipe(std::string text) : fText(std::move(text)) {
      setg(fText.data(), fText.data(), fText.data() + fText.size());
    }

   private:
    std::string fText;
  };
  const std::pair<std::string, std::string> kRows[] = {
      {kTree, "260110"},
      {"<PMML><NearestNeighborModel/></PMML>", "NearestNeighborModel: stream(      at -1, aux '', '')"},
  };
  for (const auto& [document, want] : kRows) {
    Pipe pipe(document);
    std::istream in(&pipe);
    EXPECT_EQ(Made(in, kNames, ""), want);
    ExpectOrder();
  }
}

// The parser's exception of a plug-in was destroyed after the platform, and with it the memory manager that
// the exception uses, had been stopped by the guard of the call.
TEST_P(Failures, OfPluginsPassUnchanged) {
  const std::pair<const char*, std::string> kRows[] = {
      {"throw VYException", "260114: plug-in"},
      {"throw standard", "standard: plug-in"},
      {"throw memory", "standard: std::bad_alloc"},
      {"throw parser's", "parser's: unable to open external entity 'plug-in'"},
      {"throw DOM's", "DOM's: "},
  };
  for (const auto& [encoding, want] : kRows) {
    SCOPED_TRACE(encoding);
    const std::string got = OutcomeOf(kTree, kNames, encoding);
    EXPECT_TRUE(got.starts_with(want)) << got;
    EXPECT_TRUE(LockIsFree());
    EXPECT_EQ(OutcomeOf(kTree, {"TreeModel"}), "TreeModel: names(TreeModel) document(PMML, '')");
  }
}

TEST(Initialize, ThatFailsLeavesEverythingAsItWas) {
  ModelFactory::fModelNames = {"before"};
  EXPECT_EQ(Outcome([]() -> ScoreModel* {
              ModelFactory::Initialize("/no/such/file");
              return nullptr;
            }),
            "260103: /no/such/file");
  EXPECT_FALSE(PlatformIsUp());
  EXPECT_FALSE(ModelFactory::fInitialized);
  EXPECT_EQ(ModelFactory::fModelNames, Names{"before"});
  EXPECT_EQ(OutcomeOf(kTree, {"TreeModel"}), "TreeModel: names(TreeModel) document(PMML, '')");
  ModelFactory::Initialize("");
  EXPECT_TRUE(PlatformIsUp());
  ModelFactory::Terminate();
  EXPECT_FALSE(PlatformIsUp());
}

}  // namespace
