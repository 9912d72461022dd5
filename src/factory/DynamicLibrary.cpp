#include "factory/DynamicLibrary.h"

#include <dlfcn.h>

#include <string_view>

#include "error/ScoringLog.h"

namespace KxVeyra_940 {

namespace {

constexpr std::string_view kSuffix = ".dylib";
constexpr const char* kGetSymbolAddress = "GetSymbolAddress";

std::string LoaderError() {
  const char* text = dlerror();
  return text == nullptr ? std::string() : std::string(text);
}

}  // namespace

std::string VYDecorateLibraryName(const std::string& name) {
  if (name.size() > kSuffix.size() && name.ends_with(kSuffix)) return name;
  const std::size_t slash = name.rfind('/');
  const std::size_t base = slash == std::string::npos ? 0 : slash + 1;
  return name.substr(0, base).append("lib").append(name, base).append(kSuffix);
}

std::string VYGetFullPathName(const std::string& fileName) { return fileName; }

std::string VYDecorateDynamicPathName(const std::string& name) {
  return VYGetFullPathName(VYDecorateLibraryName(name));
}

VYDynamicLoadedLibrary::VYDynamicLoadedLibrary(const std::string& path, int mode)
    : fMode(mode), fOpenFlags((fMode == kLazyMode ? RTLD_LAZY : RTLD_NOW) | RTLD_LOCAL), fPath(path) {}

VYDynamicLoadedLibrary::~VYDynamicLoadedLibrary() = default;

int VYDynamicLoadedLibrary::LoadLibraryNow() {
  fLastError.clear();
  if (fHandle != nullptr) return 0;
  fHandle = dlopen(fPath.c_str(), fOpenFlags);
  if (fHandle != nullptr) return 0;
  fLastError = LoaderError();
  return -1;
}

void* VYDynamicLoadedLibrary::GetSymbolAddress(const std::string& symbol) {
  TraceEnter(kGetSymbolAddress);
  void* address = nullptr;
  if (LoadLibraryNow() == 0) {
    address = dlsym(fHandle, symbol.c_str());
    if (address == nullptr) fLastError = LoaderError();
  }
  TraceExit(kGetSymbolAddress);
  return address;
}

}  // namespace KxVeyra_940
