// The process-wide objects that every subsystem shares.  They are made in this order when the library is
// loaded and destroyed in the reverse order when it is unloaded: no other static object may use them while
// it is being made.

#ifndef VEYRA_ERROR_PROCESSSTATE_H_
#define VEYRA_ERROR_PROCESSSTATE_H_

#include "error/ErrorKeys.h"
#include "error/Locks.h"
#include "error/VYErrorFormater.h"
#include "veyra/Export.h"

namespace KxVeyra_940 {

// Formats every message of the library.  Shared by all threads.
extern VEYRA_API ScoreContext::VYErrorFormater gErrorFormater;

// Guards the start and stop of the XML parser platform and the filling of the model-name catalogue.
extern VEYRA_API sfMutex XercesLock;

}  // namespace KxVeyra_940

#endif  // VEYRA_ERROR_PROCESSSTATE_H_
