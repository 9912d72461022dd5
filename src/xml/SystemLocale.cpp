#include "xml/SystemLocale.h"

#include <clocale>
#include <cstdlib>
#include <string_view>

#include "xml/PlatformLocale.h"

namespace KxXML_940 {

namespace {

struct LocaleRow {
  std::string_view identifier;
  const char* name;
};

constexpr LocaleRow kLocales[] = {
    {"ja_JP", "ja_JP.SJIS"},       {"ko_KR", "ko_KR.cp949"},     {"zh_CN", "zh_CN.GBK"},
    {"zh_TW", "zh_TW.BIG5"},       {"ru_RU", "ru_RU.ISO8859-5"}, {"nn_NO", "no_NO.ISO8859-15"},
    {"nb_NO", "no_NO.ISO8859-15"},
};

bool SetLocale() {
  const char* const current = std::setlocale(LC_CTYPE, nullptr);
  if (current == nullptr || std::string_view(current) != "C") return false;
  const std::string name = LocaleName(GetUserLocale().identifier);
  std::setlocale(LC_ALL, name.c_str());
  // The environment refers to it from now on: it is never destroyed, for other libraries look there at exit.
  static std::string* const environment = new std::string("LC_ALL=" + name);
  putenv(environment->data());
  return true;
}

}  // namespace

std::string LocaleName(const std::string& identifier) {
  for (const LocaleRow& row : kLocales)
    if (row.identifier == identifier) return row.name;
  const bool isEnglish = identifier == "en" || identifier.starts_with("en_");
  return identifier + (isEnglish ? ".ISO8859-1" : ".ISO8859-15");
}

void EnableLocale() { [[maybe_unused]] static const bool done = SetLocale(); }

const std::string& SystemEncoding() {
  static const std::string encoding = [] {
    EnableLocale();
    return std::string("UTF-8");
  }();
  return encoding;
}

}  // namespace KxXML_940
