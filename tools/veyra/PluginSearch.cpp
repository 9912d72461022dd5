#include "veyra/PluginSearch.h"

#include <dlfcn.h>
#include <link.h>

#include <cstdlib>
#include <memory>
#include <sstream>

#include "factory/DynamicLibrary.h"
#include "veyra/ModelFactory.h"

namespace VeyraTool {

namespace {

constexpr const char* kLibraryVersion = "940r";

struct CloseLibrary {
  void operator()(void* handle) const { dlclose(handle); }
};

// The run path of the library that opens plug-ins, the environment's paths and the system's, as the loader
// itself lists them.
std::vector<std::string> SearchPath() {
  std::vector<std::string> paths;
  Dl_info info{};
  if (dladdr(&KxVeyra_940::ModelFactory::fInitialized, &info) == 0) return paths;
  const std::unique_ptr<void, CloseLibrary> handle(dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD));
  Dl_serinfo size{};
  if (handle == nullptr || dlinfo(handle.get(), RTLD_DI_SERINFOSIZE, &size) != 0) return paths;
  // The structure ends in an array whose size is known only now.
  const std::unique_ptr<void, decltype(&std::free)> room(std::malloc(size.dls_size), &std::free);
  auto* list = static_cast<Dl_serinfo*>(room.get());
  if (list == nullptr || dlinfo(handle.get(), RTLD_DI_SERINFOSIZE, list) != 0) return paths;
  if (dlinfo(handle.get(), RTLD_DI_SERINFO, list) != 0) return paths;
  for (unsigned i = 0; i < list->dls_cnt; ++i) paths.emplace_back(list->dls_serpath[i].dls_name);
  return paths;
}

}  // namespace

PluginSearch SearchPlugin(const std::string& modelKind) {
  PluginSearch search;
  search.library = KxVeyra_940::VYDecorateDynamicPathName(modelKind + kLibraryVersion);
  KxVeyra_940::VYDynamicLoadedLibrary library(search.library, KxVeyra_940::VYDynamicLoadedLibrary::kLazyMode);
  if (library.LoadLibraryNow() == 0) {
    if (library.GetSymbolAddress("GiveMyTranslator") == nullptr) search.fault = library.GetLastError();
    return search;
  }
  search.fault = library.GetLastError();
  search.tried = SearchPath();
  return search;
}

}  // namespace VeyraTool
