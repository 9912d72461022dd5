// Documents that try to fetch, to fill the memory, or to take the process's time.  Nothing is ever fetched,
// so a file that would change the outcome does not, and a pipe that nobody writes to does not block.

#include <arpa/inet.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "abi/Outcome.h"
#include "tools/RunProgram.h"

namespace {

using namespace VeyraTest;

const Names kNames = {"TreeModel", "NearestNeighborModel"};
const std::string kTree = "TreeModel: names(TreeModel,NearestNeighborModel) document(PMML, '')";

// Ends the process when a test waits for ever.
class HostileDocument : public testing::Test {
 protected:
  HostileDocument() { alarm(120); }
  ~HostileDocument() override { alarm(0); }
};

// A port of this machine that counts who connects.
class Listener {
 public:
  Listener() : fSocket(socket(AF_INET, SOCK_STREAM | SOCK_NONBLOCK, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t length = sizeof address;
    fListens = bind(fSocket, reinterpret_cast<sockaddr*>(&address), length) == 0 && listen(fSocket, 5) == 0 &&
               getsockname(fSocket, reinterpret_cast<sockaddr*>(&address), &length) == 0;
    fPort = ntohs(address.sin_port);
  }
  ~Listener() { close(fSocket); }
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  bool Listens() const { return fListens; }
  bool WasCalled() const { return accept(fSocket, nullptr, nullptr) >= 0; }
  std::string Url() const { return "http://127.0.0.1:" + std::to_string(fPort) + "/x.dtd"; }

 private:
  int fSocket;
  bool fListens = false;
  int fPort = 0;
};

TEST_F(HostileDocument, FetchesNothing) {
  const TemporaryDirectory files;
  const std::string declarations = files.Write(
      "x.dtd", "<!ENTITY m '<TreeModel/>'><!ATTLIST PMML x CDATA 'y'><!ENTITY % e SYSTEM 'y'>%e;");
  const std::string content = files.Write("x.xml", "<TreeModel/>");
  const std::string pipe = files.Path("pipe");
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  const Listener listener;
  ASSERT_TRUE(listener.Listens());
  const std::string bodies[] = {"<PMML><TreeModel/></PMML>", "<PMML><x/></PMML>"};
  const std::string wants[] = {kTree, "260301: "};
  for (const std::string& place : {declarations, content, pipe, "file://" + pipe, listener.Url()}) {
    const std::string doctypes[] = {
        "<!DOCTYPE PMML SYSTEM '" + place + "'>",
        "<!DOCTYPE PMML PUBLIC 'p' '" + place + "'>",
        "<!DOCTYPE PMML [<!ENTITY m SYSTEM '" + place + "'>]>",
    };
    for (const std::string& doctype : doctypes) {
      SCOPED_TRACE(doctype);
      for (int i = 0; i < 2; ++i) EXPECT_EQ(OutcomeOf(doctype + bodies[i], kNames), wants[i]);
      const std::string used = OutcomeOf(doctype + "<PMML>&m;</PMML>", kNames);
      EXPECT_TRUE(used == "260301: " || used.starts_with("260109|")) << used;
    }
    const std::string parameter = "<!DOCTYPE PMML [<!ENTITY % e SYSTEM '" + place + "'> %e;]>";
    EXPECT_EQ(OutcomeOf(parameter + bodies[0], kNames), "260110") << "the DTD itself cannot be read";
    const std::string hints =
        "<PMML xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:schemaLocation='u " + place +
        "' i:noNamespaceSchemaLocation='" + place +
        "' xmlns:xi='http://www.w3.org/2001/XInclude'><xi:include href='" + place + "'/>";
    EXPECT_EQ(OutcomeOf(hints + "</PMML>", kNames), "260301: ");
    EXPECT_EQ(OutcomeWithDictionary(hints + "<TreeModel/></PMML>", kNames),
              "TreeModel: names(TreeModel,NearestNeighborModel) document with dictionary(PMML, null, '')");
  }
  EXPECT_FALSE(listener.WasCalled());
}

std::string Repeat(const std::string& text, int count) {
  std::string result;
  while (count-- > 0) result += text;
  return result;
}

// Entities that each hold ten of the one before.
std::string NestedEntities(int levels) {
  std::string text = "<!ENTITY e0 'haha'>";
  for (int i = 1; i < levels; ++i) {
    const std::string before = "&e" + std::to_string(i - 1) + ";";
    text += "<!ENTITY e" + std::to_string(i) + " '" + Repeat(before, 10) + "'>";
  }
  return text;
}

TEST_F(HostileDocument, IsRefusedOrBuilt) {
  const std::string bomb = "<!DOCTYPE r [" + NestedEntities(20) + "]>";
  const std::string large = "<!DOCTYPE r [<!ENTITY a '" + std::string(100000, 'a') + "'>]>";
  const int kDeep = 100000;
  const struct {
    const char* what;
    std::string document;
    std::string want;  // a prefix
  } kRows[] = {
      {"entities in entities, in content", bomb + "<PMML>&e19;<TreeModel/></PMML>", "260109|"},
      {"entities in entities, in an attribute", bomb + "<PMML><x a='&e19;'/><TreeModel/></PMML>", "260109|"},
      {"seen by the second pass alone", bomb + "<PMML><p:x/>&e19;<TreeModel/></PMML>", "260109|"},
      {"behind the end of the first pass", bomb + "<zent-ml>&e19;<TreeModel/></zent-ml>", "260109|"},
      {"a large entity often", large + "<PMML>" + Repeat("&a;", 20000) + "<TreeModel/></PMML>", "260109|"},
      {"an entity in itself", "<!DOCTYPE r [<!ENTITY a '&a;'>]><PMML>&a;<TreeModel/></PMML>", "260109|"},
      {"declared, not used", bomb + "<PMML><TreeModel/></PMML>", kTree},
      {"a model from an entity", "<!DOCTYPE r [<!ENTITY m '<TreeModel/>'>]><PMML>&m;</PMML>", kTree},
      {"very deep", "<PMML>" + Repeat("<x>", kDeep) + "<TreeModel/>" + Repeat("</x>", kDeep) + "</PMML>",
       kTree},
      {"very deep and cut off", "<PMML><TreeModel/>" + Repeat("<x>", kDeep), "260109|"},
      {"a neighbour model below the depth that the first pass looks at",
       "<PMML>" + Repeat("<x>", kDeep) + "<NearestNeighborModel/>" + Repeat("</x>", kDeep) + "</PMML>",
       "NearestNeighborModel: names(TreeModel,NearestNeighborModel) document(PMML, '')"},
      {"a long tag", "<PMML><" + std::string(1000000, 'x') + "/><TreeModel/></PMML>", kTree},
      {"a long attribute", "<PMML a='" + std::string(1000000, 'x') + "'><TreeModel/></PMML>", kTree},
      {"a long root tag", "<" + std::string(1000000, 'x') + "/>", "260301: xxx"},
  };
  for (const auto& row : kRows) {
    SCOPED_TRACE(row.what);
    const std::string got = OutcomeOf(row.document, kNames);
    EXPECT_TRUE(got.starts_with(row.want)) << got.substr(0, 200);
  }
}

// Searching once for each of the names would take minutes, which the alarm does not grant.
TEST_F(HostileDocument, ALongCatalogueIsSearchedOnce) {
  std::string document = "<PMML>";
  Names names;
  for (int i = 0; i < 100000; ++i) {
    document.append("<a").append(std::to_string(i)).append("/>");
    names.push_back("b" + std::to_string(i));
  }
  EXPECT_EQ(OutcomeOf(document + "</PMML>", names), "260301: ");
}

}  // namespace
