// Plug-in libraries: how a model name becomes a file name, and how a library is opened and asked for a
// symbol.

#ifndef VEYRA_FACTORY_DYNAMICLIBRARY_H_
#define VEYRA_FACTORY_DYNAMICLIBRARY_H_

#include <string>

#include "veyra/Export.h"

namespace KxVeyra_940 {

// "dir/Name" becomes "dir/libName.dylib"; a name that ends in ".dylib" (and is longer than that) stays.
VEYRA_API std::string VYDecorateLibraryName(const std::string& name);
// The file name as it is: the loader's own search rules find the library, no directory is added.
VEYRA_API std::string VYGetFullPathName(const std::string& fileName);
VEYRA_API std::string VYDecorateDynamicPathName(const std::string& name);

// One library.  It is opened at the first question and never closed: what it built runs its code.
// Threads: an object belongs to one thread; several objects may open the same library at once.
class VEYRA_API VYDynamicLoadedLibrary {
 public:
  static constexpr int kLazyMode = 1;

  // `mode` 1 binds symbols on first use, any other mode at once.  Loads nothing yet.
  VYDynamicLoadedLibrary(const std::string& path, int mode);
  ~VYDynamicLoadedLibrary();
  VYDynamicLoadedLibrary(const VYDynamicLoadedLibrary&) = delete;
  VYDynamicLoadedLibrary& operator=(const VYDynamicLoadedLibrary&) = delete;

  // 0 when the library is open, -1 when it cannot be opened.
  int LoadLibraryNow();
  // The address, or null when the library or the symbol is missing.
  void* GetSymbolAddress(const std::string& symbol);
  // The loader's own words about the last failure; empty after a success.
  const std::string& GetLastError() const { return fLastError; }

 private:
  void* fHandle = nullptr;
  int fMode;
  int fOpenFlags;
  std::string fPath;
  std::string fLastError;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_FACTORY_DYNAMICLIBRARY_H_
