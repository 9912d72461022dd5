// Numbers that tell one state of an object from every other: whoever keeps what he found in the object keeps
// the number with it, and looks again when the number has changed.
//
// Threads: may be called by any number of threads.

#ifndef VEYRA_DATA_IDENTITY_H_
#define VEYRA_DATA_IDENTITY_H_

#include <cstdint>

#include "veyra/Export.h"

namespace KxVeyra_940 {

// A number that the process has not handed out before; never 0.
VEYRA_API std::uint64_t NextIdentity();

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_IDENTITY_H_
