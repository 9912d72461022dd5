// The library, initialised for the command's life, and its refusals as the command's failures.

#ifndef VEYRA_TOOLS_LIBRARYSESSION_H_
#define VEYRA_TOOLS_LIBRARYSESSION_H_

#include <memory>
#include <string>

#include "veyra/ScoreModel.h"
#include "veyra/VYException.h"

namespace VeyraTool {

// "FILE: error ID: text", with status kModelRefused.
[[noreturn]] void ThrowRefusal(const std::string& file, const KxVeyra_940::VYException& exception);

class LibrarySession {
 public:
  // An empty catalogue path means "modeldll.txt" in the current directory, or else the installed one.
  explicit LibrarySession(const std::string& catalogPath);
  ~LibrarySession();
  LibrarySession(const LibrarySession&) = delete;
  LibrarySession& operator=(const LibrarySession&) = delete;

  std::unique_ptr<KxVeyra_940::ScoreModel> LoadModel(const std::string& path) const;

 private:
  std::string fCatalogPath;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_LIBRARYSESSION_H_
