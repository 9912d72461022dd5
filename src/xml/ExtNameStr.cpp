#include "xml/ExtNameStr.h"

#include "xml/Multibyte.h"
#include "xml/MultibyteInternal.h"
#include "xml/SystemLocale.h"

namespace KxXML_940 {

namespace {

Converter OpenSystemConverter() { return Converter(ZENTMBConverterNew_C(SystemEncoding().c_str())); }

}  // namespace

struct ExtNameStr::Data {
  std::string utf8;  // the master copy
  std::string codePage;
  int converterId = -1;  // the default converter that made the code-page text
  int error = 0;
  std::u16string utf16;
  std::string system;
  bool isSystemCurrent = true;
};

ExtNameStr::ExtNameStr() : fData(std::make_unique<Data>()) {}

ExtNameStr::ExtNameStr(const ExtNameStr& other) : fData(std::make_unique<Data>(*other.fData)) {}

ExtNameStr& ExtNameStr::operator=(const ExtNameStr& other) {
  *fData = *other.fData;
  return *this;
}

ExtNameStr::~ExtNameStr() = default;

void ExtNameStr::SetU8(const std::string& text) {
  fData->utf8 = text;
  Refresh();
}

void ExtNameStr::SetU16(const std::u16string& text) {
  ZENTMBU16ToU8(fData->utf8, text);
  Refresh();
}

void ExtNameStr::SetCP(const std::string& text, void* converter) {
  ZENTMBCodePageToU8(converter, fData->utf8, text);
  Refresh();
}

void ExtNameStr::SetGeneric(const std::string& text) {
  ZENTMBGenericToU8(fData->utf8, text);
  Refresh();
}

void ExtNameStr::SetSystem(const std::string& text) {
  fData->system = text;
  ZENTMBCodePageToU8(OpenSystemConverter().get(), fData->utf8, fData->system);
  fData->isSystemCurrent = true;
  RefreshUTF16();
  RefreshCodePage();
}

void ExtNameStr::Clear() { SetU8({}); }

void ExtNameStr::Refresh() {
  fData->isSystemCurrent = false;
  RefreshCodePage();
  RefreshUTF16();
}

void ExtNameStr::RefreshUTF16() { fData->error = ZENTMBU8ToU16(fData->utf16, fData->utf8); }

void ExtNameStr::RefreshCodePage() const {
  ZENTMBGetDefaultConverter();  // the first one gets its number now
  fData->converterId = ZENTMBDefaultConverterID();
  fData->error = ZENTMBU8ToCodePage(nullptr, fData->codePage, fData->utf8);
}

const std::string& ExtNameStr::GetU8() const { return fData->utf8; }
const std::u16string& ExtNameStr::GetU16() const { return fData->utf16; }

const std::string& ExtNameStr::GetSystem() const {
  if (!fData->isSystemCurrent) {
    ZENTMBU8ToCodePage(OpenSystemConverter().get(), fData->system, fData->utf8);
    fData->isSystemCurrent = true;
  }
  return fData->system;
}

const std::string& ExtNameStr::GetCP() const {
  if (fData->converterId != ZENTMBDefaultConverterID()) RefreshCodePage();
  return fData->codePage;
}

std::string ExtNameStr::GetCP(void* converter) const {
  std::string text;
  fData->error = ZENTMBU8ToCodePage(converter, text, fData->utf8);
  return text;
}

const std::string& ExtNameStr::GetGeneric() const { return qUTF8mode() != 0 ? fData->utf8 : GetCP(); }

bool ExtNameStr::Empty() const { return fData->utf8.empty(); }
int ExtNameStr::ErrorCode() const { return fData->error; }

}  // namespace KxXML_940
