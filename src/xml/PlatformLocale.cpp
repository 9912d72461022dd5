#include "xml/PlatformLocale.h"

#include <algorithm>
#include <cstdlib>

namespace KxXML_940 {

namespace {

constexpr char kDefaultIdentifier[] = "en_US";
constexpr std::size_t kLongestIdentifier = 18;

std::string NameFromEnvironment() {
  for (const char* const variable : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(variable);
    if (value != nullptr && *value != '\0') return value;
  }
  return {};
}

}  // namespace

UserLocale ParseLocaleName(const std::string& name) {
  UserLocale locale;
  const std::size_t modifier = name.find('@');
  const std::size_t dot = name.substr(0, modifier).find('.');
  locale.identifier = name.substr(0, std::min({dot, modifier, kLongestIdentifier}));
  if (dot != std::string::npos) locale.charset = name.substr(dot + 1, modifier - dot - 1);
  if (locale.identifier.empty() || locale.identifier == "C" || locale.identifier == "POSIX")
    locale.identifier = kDefaultIdentifier;
  return locale;
}

const UserLocale& GetUserLocale() {
  static const UserLocale locale = ParseLocaleName(NameFromEnvironment());
  return locale;
}

}  // namespace KxXML_940
