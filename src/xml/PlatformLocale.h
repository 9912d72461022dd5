// The user's locale as the platform tells it: here from LC_ALL, LC_CTYPE and LANG, the first that is not
// empty.
//
// It is read once, at the first call, so later changes of the environment do not count.

#ifndef VEYRA_XML_PLATFORMLOCALE_H_
#define VEYRA_XML_PLATFORMLOCALE_H_

#include <string>

namespace KxXML_940 {

struct UserLocale {
  std::string
      identifier;  // language and region, at most 18 characters: "de_DE"; "en_US" for "C", "POSIX" or none
  std::string charset;  // as the user names it, "UTF-8"; empty when the locale names none
};

const UserLocale& GetUserLocale();

// The parts of a locale name such as "de_DE.UTF-8@euro".
UserLocale ParseLocaleName(const std::string& name);

}  // namespace KxXML_940

#endif  // VEYRA_XML_PLATFORMLOCALE_H_
