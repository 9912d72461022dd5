// What the guard does when the parser platform does not start.  The program's own Initialize stands before
// the parser's: it starts the platform and then fails in the way that the test asks for.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <sstream>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/RuntimeException.hpp>

#include "veyra/ModelFactory.h"
#include "veyra/VYException.h"
#include "xml/LockIsFree.h"
#include "xml/XercesWrapper.h"

namespace {

enum class Failure { kNone, kOfTheParser, kOther };
Failure gFailure = Failure::kNone;

}  // namespace

XERCES_CPP_NAMESPACE_BEGIN

void XMLPlatformUtils::Initialize(const char* const locale, const char* const nlsHome,
                                  PanicHandler* const panicHandler, MemoryManager* const memoryManager) {
  using Start = void (*)(const char*, const char*, PanicHandler*, MemoryManager*);
  static const auto start = reinterpret_cast<Start>(
      dlsym(RTLD_NEXT,
            "_ZN11xercesc_3_216XMLPlatformUtils10InitializeEPKcS2_PNS_12PanicHandlerEPNS_13MemoryManagerE"));
  start(locale, nlsHome, panicHandler, memoryManager);
  if (gFailure == Failure::kOfTheParser)
    throw RuntimeException(__FILE__, __LINE__, XMLExcepts::Gen_CouldNotOpenExtEntity, u"gr\u00f6\u00dfe");
  if (gFailure == Failure::kOther) throw 5;
}

XERCES_CPP_NAMESPACE_END

namespace {

using namespace KxVeyra_940;

class GuardFailure : public testing::Test {
 protected:
  ~GuardFailure() override { gFailure = Failure::kNone; }
};

TEST_F(GuardFailure, OfTheParserIsReported) {
  gFailure = Failure::kOfTheParser;
  try {
    const XercesWrapper guard(false);
    ADD_FAILURE() << "no exception";
  } catch (const VYException& exception) {
    EXPECT_EQ(exception.GetErrorCode(), 260102);
    EXPECT_NE(exception.GetDetail().find("gr\u00f6\u00dfe"), std::string::npos) << exception.GetDetail();
  }
}

TEST_F(GuardFailure, OfAnotherKindPasses) {
  gFailure = Failure::kOther;
  EXPECT_THROW(const XercesWrapper guard(false), int);
  EXPECT_TRUE(LockIsFree());
  xercesc::XMLPlatformUtils::Terminate();
}

TEST_F(GuardFailure, IsNotSeenByAnInitialisedFactory) {
  gFailure = Failure::kOfTheParser;
  EXPECT_NO_THROW(const XercesWrapper guard(true));
}

TEST_F(GuardFailure, ReachesTheHostOfTheFactoryAndIsOverWithTheCall) {
  for (const auto& [failure, want] :
       {std::pair(Failure::kOfTheParser, 260102), std::pair(Failure::kNone, 260301)}) {
    gFailure = failure;
    std::istringstream in("<PMML/>");
    try {
      ModelFactory::MakeModelFromXML(in, std::vector<std::string>{"X"}, "");
      ADD_FAILURE() << "no exception";
    } catch (const VYException& exception) {
      EXPECT_EQ(exception.GetErrorCode(), want);
    }
    EXPECT_EQ(xercesc::XMLPlatformUtils::fgTransService, nullptr) << "the platform was left running";
    EXPECT_TRUE(LockIsFree());
  }
}

}  // namespace
