// The process's locale and the encoding of the system's own texts.
//
// Meant for the first use, before scoring threads start: the environment is changed.

#ifndef VEYRA_XML_SYSTEMLOCALE_H_
#define VEYRA_XML_SYSTEMLOCALE_H_

#include <string>

#include "veyra/Export.h"

namespace KxXML_940 {

// Once a process: while the character-type locale is still "C", sets the whole locale, and the environment
// variable LC_ALL, to LocaleName of the user's locale.  A locale that the host has set is left alone.
VEYRA_API void EnableLocale();

// "UTF-8", after EnableLocale().
VEYRA_API const std::string& SystemEncoding();

// The locale name with its code page for a locale identifier: "de_DE" gives "de_DE.ISO8859-15".
VEYRA_API std::string LocaleName(const std::string& identifier);

}  // namespace KxXML_940

#endif  // VEYRA_XML_SYSTEMLOCALE_H_
