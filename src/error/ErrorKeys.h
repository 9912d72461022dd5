// The key names of error kinds, for plug-ins and hosts.  The library itself reads none of them.

#ifndef VEYRA_ERROR_ERRORKEYS_H_
#define VEYRA_ERROR_ERRORKEYS_H_

#include <string>

#include "veyra/Export.h"

// Positions 12 to 14 hold empty texts, as does the last one, which ends the table; "kE_MISSINGVAR" stands
// twice.
extern "C" VEYRA_API std::string fgErrorKeys[33];

#endif  // VEYRA_ERROR_ERRORKEYS_H_
