// The library, initialised for the command's life, and its refusals as the command's failures.

#ifndef VEYRA_TOOLS_LIBRARYSESSION_H_
#define VEYRA_TOOLS_LIBRARYSESSION_H_

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "veyra/ParsedDocument.h"
#include "veyra/ScoreModel.h"
#include "veyra/VYException.h"

namespace VeyraTool {

// "error ID: text"
std::string RefusalText(const KxVeyra_940::VYException& exception);

// All that can be said about a document that the library refused: its message, the parser's reason, the
// element's path, what --lenient would do.  `build` makes what was asked for from a document in memory and
// throws VYException.  Lines but the first begin with "veyra: PATH: ".
std::string ExplainRefusal(const DocumentFile& file, const KxVeyra_940::VYException& exception,
                           bool isLenient, const std::function<void(std::string_view)>& build);

struct LoadedModel {
  std::unique_ptr<KxVeyra_940::ScoreModel> model;
  bool keepsHistory = false;  // derived fields look back at earlier cases
};

// The catalogue that is read for this path: an empty one means "modeldll.txt" in the current directory, or
// else the installed one.
std::string ChooseCatalog(const std::string& path);

class LibrarySession {
 public:
  // `catalogPath` as above.
  explicit LibrarySession(const std::string& catalogPath);
  ~LibrarySession();
  LibrarySession(const LibrarySession&) = delete;
  LibrarySession& operator=(const LibrarySession&) = delete;

  // Makes the model of the document.  `isLenient`: the document is adapted
  // first, and what was adapted is said on standard error.  Throws CommandFailure with all that can be said
  // about a refusal: the library's message, the parser's reason, the element's path, what --lenient would do.
  // `auxPath` names the file with data that belongs to the document; empty when there is none.
  LoadedModel LoadModel(const DocumentFile& file, const std::string& auxPath, bool isLenient) const;

  // Makes the model of a document in memory.  Throws VYException.
  std::unique_ptr<KxVeyra_940::ScoreModel> MakeModel(std::string_view text, const std::string& auxPath) const;

 private:
  std::unique_ptr<KxVeyra_940::ScoreModel> MakeModelOfFile(const DocumentFile& file,
                                                           const std::string& auxPath) const;

  std::string fCatalogPath;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_LIBRARYSESSION_H_
