#include "xml/VeyraTranscoder.h"

#include <unicode/ucnv_err.h>

#include <algorithm>
#include <array>
#include <string_view>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLString.hpp>

#include "xml/MultibyteInternal.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

using KxXML_940::IntoString;
using Transcoder = std::unique_ptr<xercesc::XMLTranscoder>;

constexpr XMLSize_t kBlockSize = 4096;

Transcoder MakeTranscoder(const std::u16string& encoding) {
  if (xercesc::XMLPlatformUtils::fgTransService == nullptr) return nullptr;
  try {
    xercesc::XMLTransService::Codes result;
    return Transcoder(xercesc::XMLPlatformUtils::fgTransService->makeNewTranscoderFor(encoding.c_str(),
                                                                                      result, kBlockSize));
  } catch (const xercesc::XMLException&) {
    return nullptr;
  }
}

// The parser's own converters keep state from one text to the next, and some substitute what they cannot
// convert; this one ends a text there.  Null when ICU does not know the encoding.
UConverter* OpenStopping(const std::string& encoding) {
  UErrorCode status = U_ZERO_ERROR;
  UConverter* const converter = ucnv_open(encoding.c_str(), &status);
  if (U_FAILURE(status)) return nullptr;
  ucnv_setFromUCallBack(converter, UCNV_FROM_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  ucnv_setToUCallBack(converter, UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  return converter;
}

bool IsNameOfUTF8(const std::u16string& encoding) {
  return xercesc::XMLString::compareIStringASCII(encoding.c_str(), u"UTF-8") == 0 ||
         xercesc::XMLString::compareIStringASCII(encoding.c_str(), u"UTF8") == 0;
}

// The text that can be converted, from its head on.
std::string Encode(UConverter* converter, std::u16string_view text) {
  std::string bytes;
  IntoString(converter, bytes, text, KxXML_940::BytesFor(converter, text.size()), KxXML_940::FromUnicode);
  return bytes;
}

std::u16string Decode(UConverter* converter, std::string_view bytes) {
  std::u16string text;
  IntoString(converter, text, bytes, KxXML_940::UnitsFor(bytes.size()) + 1, KxXML_940::ToUnicode);
  return text;
}

// Whether every ASCII character is its own byte, in both directions.
bool ContainsAscii(UConverter* converter) {
  std::u16string units;
  for (char16_t unit = 0; unit < 0x80; ++unit) units.push_back(unit);
  const std::string bytes(units.begin(), units.end());
  return Encode(converter, units) == bytes && Decode(converter, bytes) == units;
}

}  // namespace

VeyraTranscoder::VeyraTranscoder(const std::string& encoding) {
  const std::u16string name = KxXML_940::ToUTF16(encoding);
  fTranscoder = MakeTranscoder(name);
  if (fTranscoder == nullptr) return;
  fConverter.reset(OpenStopping(encoding));
  if (fConverter == nullptr) return;
  fIsUTF8 = IsNameOfUTF8(name);
  fContainsAscii = fIsUTF8 || ContainsAscii(fConverter.get());
}

VeyraTranscoder::~VeyraTranscoder() = default;

std::string VeyraTranscoder::transcodeTo(const char16_t* text) const {
  if (fConverter == nullptr) return {};
  const std::u16string_view units = KxXML_940::View(text);
  if (fContainsAscii && KxXML_940::IsAscii(units)) return KxXML_940::ToUTF8(units);
  if (fIsUTF8) return KxXML_940::ToUTF8(units.substr(0, KxXML_940::WellFormedPrefix(units)));
  return units.empty() ? std::string() : Encode(fConverter.get(), units);
}

char16_t* VeyraTranscoder::ChangeChar2XML(const char* text) const {
  if (fConverter == nullptr || text == nullptr) return nullptr;
  const std::string_view bytes(text);
  const bool isUTF8 = fIsUTF8 || (fContainsAscii && KxXML_940::IsAscii(bytes));
  const std::u16string units = isUTF8
                                   ? KxXML_940::ToUTF16(bytes.substr(0, KxXML_940::WellFormedPrefix(bytes)))
                                   : Decode(fConverter.get(), bytes);
  auto buffer = std::make_unique_for_overwrite<char16_t[]>(units.size() + 1);
  std::copy_n(units.c_str(), units.size() + 1, buffer.get());
  return buffer.release();
}

}  // namespace KxVeyra_940
