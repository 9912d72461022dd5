// The derived fields of a document, read without a plug-in.

#ifndef VEYRA_TOOLS_DERIVINGDOCUMENT_H_
#define VEYRA_TOOLS_DERIVINGDOCUMENT_H_

#include <memory>
#include <string>

#include "transform/TransformationDictionary.h"
#include "veyra/ByteSource.h"
#include "veyra/ScoreDictionary.h"

namespace VeyraTool {

struct DerivingDocument {
  // Reads the document.  The library's parser expands what a DTD declares:
  // unless `trustsDtd`, a document that refers to an external DTD or declares entities is refused before the
  // library sees it.  Throws CommandFailure, also for a document without derived fields.
  DerivingDocument(const DocumentFile& file, bool trustsDtd, bool isLenient);
  DerivingDocument(const DerivingDocument&) = delete;
  DerivingDocument& operator=(const DerivingDocument&) = delete;

  // The library is up as long as what it made.
  struct Library {
    Library();
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;
    ~Library();
  };
  Library library;
  std::unique_ptr<KxVeyra_940::ScoreDictionary> data;
  std::unique_ptr<KxVeyra_940::TransformationDictionary> transformations;
};

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_DERIVINGDOCUMENT_H_
