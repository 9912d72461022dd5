// What the library, a host and a plug-in share: one copy of each object.

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "abi/Outcome.h"
#include "abi/plugins/SharedData.h"
#include "factory/DynamicLibrary.h"
#include "tools/RunProgram.h"

namespace {

using namespace KxVeyra_940;
using namespace VeyraTest;

TEST(SharedData, IsOneForHostLibraryAndPlugin) {
  VYDynamicLoadedLibrary library("libTreeModel940r.dylib", VYDynamicLoadedLibrary::kLazyMode);
  const auto tell = reinterpret_cast<void (*)(SharedData&)>(library.GetSymbolAddress("TellSharedData"));
  ASSERT_NE(tell, nullptr) << library.GetLastError();
  SharedData seen;
  tell(seen);
  EXPECT_EQ(seen, SharedDataSeenHere());

  const TemporaryDirectory files;
  ModelFactory::Initialize(files.Write("names", "A B"));  // the library writes, both sides read
  EXPECT_EQ(*seen.modelNames, (Names{"A", "B"}));
  EXPECT_TRUE(*seen.initialized);
  EXPECT_STREQ(seen.formater->FindMessageContent(260113), "Missing model dll of ''{0}''.");
  EXPECT_EQ(seen.errorKeys[0], "kE_PARSE");
  EXPECT_EQ(seen.errorKeys[31], "kE_NO_FIRES_NO_DEFAULT");
  ModelFactory::Terminate();
}

TEST(DynamicLibrary, NamesAndFailures) {
  const std::pair<const char*, const char*> kRows[] = {
      {"TreeModel940r", "libTreeModel940r.dylib"},
      {"plugins/TreeModel940r", "plugins/libTreeModel940r.dylib"},
      {"x.dylib", "x.dylib"},
      {"dir/x.dylib", "dir/x.dylib"},
      {".dylib", "lib.dylib.dylib"},
      {"x.DYLIB", "libx.DYLIB.dylib"},
      {"dir/", "dir/lib.dylib"},
      {"", "lib.dylib"},
  };
  for (const auto& [name, want] : kRows) {
    EXPECT_EQ(VYDecorateLibraryName(name), want);
    EXPECT_EQ(VYDecorateDynamicPathName(name), want);
  }
  EXPECT_EQ(VYGetFullPathName("a/b"), "a/b");

  const TemporaryDirectory files;
  const std::string path = files.Path("late.dylib");
  VYDynamicLoadedLibrary late(path, 0);
  EXPECT_EQ(late.GetSymbolAddress("GiveMyTranslator"), nullptr);
  EXPECT_NE(late.GetLastError().find("late.dylib"), std::string::npos);
  EXPECT_EQ(late.LoadLibraryNow(), -1);
  VYDynamicLoadedLibrary library("libTreeModel940r.dylib", VYDynamicLoadedLibrary::kLazyMode);
  ASSERT_NE(library.GetSymbolAddress("GiveMyTranslator"), nullptr);
  Dl_info where{};
  ASSERT_NE(dladdr(library.GetSymbolAddress("GiveMyTranslator"), &where), 0);
  std::filesystem::copy_file(where.dli_fname, path);
  EXPECT_NE(late.GetSymbolAddress("GiveMyTranslator"), nullptr) << "the second call opens it again";
  EXPECT_EQ(late.GetLastError(), "");
  EXPECT_EQ(late.GetSymbolAddress("NoSuchSymbol"), nullptr);
  EXPECT_NE(late.GetLastError().find("NoSuchSymbol"), std::string::npos);
  EXPECT_EQ(late.LoadLibraryNow(), 0);
  EXPECT_EQ(late.GetLastError(), "");
}

}  // namespace
