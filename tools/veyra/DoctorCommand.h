// veyra doctor MODEL

#ifndef VEYRA_TOOLS_DOCTORCOMMAND_H_
#define VEYRA_TOOLS_DOCTORCOMMAND_H_

#include <string>

#include "veyra/ByteSource.h"
#include "veyra/Failures.h"

namespace VeyraTool {

struct DoctorOptions {
  DocumentFile model;
  std::string catalog;
  std::string auxPath;  // of data that belongs to the document
};

// Writes everything that keeps the document from being scored to standard output, and the columns that its
// data needs.  kModelRefused when there is such a thing.  Throws CommandFailure or ClosedPipe.
ExitStatus RunDoctor(const DoctorOptions& options);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_DOCTORCOMMAND_H_
