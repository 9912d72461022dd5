// Reading numbers from text, as a stream with the classic locale reads them: any thread, no allocation.

#ifndef VEYRA_DATA_READNUMBER_H_
#define VEYRA_DATA_READNUMBER_H_

#include <optional>
#include <string_view>

#include "veyra/Export.h"

namespace KxVeyra_940 {

// What `stream >> number` leaves behind: the number at the start of the text after white space; 0 where there
// is none or it breaks off ("1e"); the largest finite number with the sign for one that is too large.
// Nothing for an empty text and for white space only.  What follows the number is ignored.
VEYRA_API std::optional<double> ReadStreamNumber(std::string_view text);

// The number that a text stands for: as above, but +infinity for "inf", "infinity" and what is too large
// (decimal or hexadecimal), and the system-missing value for an empty text and for white space only.
VEYRA_API double ReadNumber(std::string_view text);

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_READNUMBER_H_
