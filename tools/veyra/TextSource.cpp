#include "veyra/TextSource.h"

#include <strings.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <string_view>

#include "veyra/Failures.h"

namespace VeyraTool {

namespace {

constexpr std::size_t kChunk = 64 * 1024;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsUTF8(const std::string& encoding) {
  return encoding.empty() || strcasecmp(encoding.c_str(), "UTF-8") == 0 ||
         strcasecmp(encoding.c_str(), "UTF8") == 0;
}

}  // namespace

void TextSource::CloseConverter::operator()(UConverter* converter) const { ucnv_close(converter); }

TextSource::TextSource(const std::string& path, const std::string& encoding) : fBytes(path) {
  if (IsUTF8(encoding)) return;
  UErrorCode status = U_ZERO_ERROR;
  fToUTF16.reset(ucnv_open(encoding.c_str(), &status));
  if (U_FAILURE(status)) throw CommandFailure(kWrongUsage, "unknown encoding '" + encoding + "'");
  fToUTF8.reset(ucnv_open("UTF-8", &status));
  // Bytes that the encoding does not have end the reading instead of turning into other text.
  ucnv_setToUCallBack(fToUTF16.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
  if (U_FAILURE(status)) throw CommandFailure(kWrongUsage, "cannot convert from '" + encoding + "'");
}

TextSource::~TextSource() = default;

void TextSource::AppendConverted(std::size_t size, std::string& out) {
  const char* source = fUnconverted.data();
  const char* const end = source + size;
  std::array<UChar, kChunk / 2> units;
  UErrorCode status;
  do {
    status = U_ZERO_ERROR;
    UChar* unitsEnd = units.data();
    ucnv_toUnicode(fToUTF16.get(), &unitsEnd, units.data() + units.size(), &source, end, nullptr,
                   fAtEnd ? 1 : 0, &status);
    AppendUnits(units.data(), unitsEnd, out);
  } while (status == U_BUFFER_OVERFLOW_ERROR);
  if (U_FAILURE(status)) throw SourceFailure("the text is not in the encoding that --encoding names");
}

// The converter keeps the first half of a pair until the second one comes.
void TextSource::AppendUnits(const char16_t* begin, const char16_t* end, std::string& out) {
  std::array<char, kChunk> text;
  UErrorCode status;
  do {
    status = U_ZERO_ERROR;
    char* target = text.data();
    ucnv_fromUnicode(fToUTF8.get(), &target, text.data() + text.size(), &begin, end, nullptr, fAtEnd ? 1 : 0,
                     &status);
    out.append(text.data(), static_cast<std::size_t>(target - text.data()));
  } while (status == U_BUFFER_OVERFLOW_ERROR);
}

void TextSource::SkipMark(std::string& out, std::size_t begin) {
  if (!fAtStart || out.size() == begin) return;
  fAtStart = false;
  if (std::string_view(out).substr(begin).starts_with(kByteOrderMark))
    out.erase(begin, kByteOrderMark.size());
}

bool TextSource::Append(std::string& out, std::size_t wanted) {
  if (fAtEnd) return false;
  const std::size_t begin = out.size();
  std::string& target = fToUTF16 == nullptr ? out : fUnconverted;
  const std::size_t offset = fToUTF16 == nullptr ? begin : 0;
  target.resize(offset + wanted);
  std::size_t count = 0;
  try {
    count = fBytes.Read(target.data() + offset, wanted);
    // A byte order mark comes whole.
    while (fAtStart && count > 0 && count < kByteOrderMark.size()) {
      const std::size_t more = fBytes.Read(target.data() + offset + count, wanted - count);
      if (more == 0) break;
      count += more;
    }
  } catch (...) {
    target.resize(offset);
    throw;
  }
  target.resize(offset + count);
  fAtEnd = count == 0;
  if (fToUTF16 != nullptr) AppendConverted(count, out);
  SkipMark(out, begin);
  return !fAtEnd || out.size() > begin;
}

}  // namespace VeyraTool
