#include "veyra/TextSource.h"

#include <strings.h>
#include <unicode/ucnv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace VeyraTool {

namespace {

constexpr std::size_t kChunk = 64 * 1024;
constexpr std::size_t kLongestLine = 64 * 1024 * 1024;
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

bool IsUTF8(const std::string& encoding) {
  return encoding.empty() || strcasecmp(encoding.c_str(), "UTF-8") == 0 ||
         strcasecmp(encoding.c_str(), "UTF8") == 0;
}

}  // namespace

void TextSource::CloseConverter::operator()(UConverter* converter) const { ucnv_close(converter); }

TextSource::TextSource(const std::string& path, const std::string& encoding)
    : fName(path.empty() ? "standard input" : path) {
  if (!IsUTF8(encoding)) {
    UErrorCode status = U_ZERO_ERROR;
    fToUTF16.reset(ucnv_open(encoding.c_str(), &status));
    if (U_FAILURE(status)) throw CommandFailure(kWrongUsage, "unknown encoding '" + encoding + "'");
    fToUTF8.reset(ucnv_open("UTF-8", &status));
    // Bytes that the encoding does not have end the reading instead of turning into other text.
    ucnv_setToUCallBack(fToUTF16.get(), UCNV_TO_U_CALLBACK_STOP, nullptr, nullptr, nullptr, &status);
    if (U_FAILURE(status)) throw CommandFailure(kWrongUsage, "cannot convert from '" + encoding + "'");
  }
  if (path.empty()) {
    fStream = stdin;
    return;
  }
  fFile.reset(std::fopen(path.c_str(), "rb"));
  if (fFile == nullptr) {
    throw CommandFailure(kWrongUsage, path + ": cannot open the file: " + std::strerror(errno));
  }
  fStream = fFile.get();
}

TextSource::~TextSource() = default;

// The place is behind what has been read into the buffer.
void TextSource::Fail(const std::string& reason) const {
  const auto unread = fBuffer.begin() + static_cast<std::ptrdiff_t>(fPosition);
  const auto lines = static_cast<std::size_t>(std::count(unread, fBuffer.end(), '\n'));
  throw DataFailure(fName, DataPlace{fLineNumber + lines + 1, 0, {}}, reason);
}

void TextSource::AppendConverted(const char* bytes, std::size_t size) {
  const UBool flush = fAtEnd ? 1 : 0;
  std::array<UChar, kChunk / 2> units;
  const char* source = bytes;
  UErrorCode status;
  do {
    status = U_ZERO_ERROR;
    UChar* unitsEnd = units.data();
    ucnv_toUnicode(fToUTF16.get(), &unitsEnd, units.data() + units.size(), &source, bytes + size, nullptr,
                   flush, &status);
    AppendUnits(units.data(), unitsEnd);
  } while (status == U_BUFFER_OVERFLOW_ERROR);
  if (U_FAILURE(status)) Fail("the text is not in the encoding that --encoding names");
}

// The converter keeps the first half of a pair until the second one comes.
void TextSource::AppendUnits(const char16_t* begin, const char16_t* end) {
  std::array<char, kChunk> text;
  UErrorCode status;
  do {
    status = U_ZERO_ERROR;
    char* target = text.data();
    ucnv_fromUnicode(fToUTF8.get(), &target, text.data() + text.size(), &begin, end, nullptr, fAtEnd ? 1 : 0,
                     &status);
    fBuffer.append(text.data(), static_cast<std::size_t>(target - text.data()));
  } while (status == U_BUFFER_OVERFLOW_ERROR);
}

// Reads one more chunk behind what is left of the buffer; false at the end of the input.
bool TextSource::Fill() {
  if (fAtEnd) return false;
  fBuffer.erase(0, fPosition);
  fPosition = 0;
  if (fBuffer.size() > kLongestLine) Fail("the line is longer than 64 MiB");
  const std::size_t kept = fBuffer.size();
  std::array<char, kChunk> bytes;
  const std::size_t size = std::fread(bytes.data(), 1, bytes.size(), fStream);
  if (size == 0) {
    if (std::ferror(fStream) != 0) Fail(std::string("cannot read: ") + std::strerror(errno));
    fAtEnd = true;
  }
  if (fToUTF16 != nullptr) {
    AppendConverted(bytes.data(), size);
  } else {
    fBuffer.append(bytes.data(), size);
  }
  if (fAtStart && (fBuffer.size() >= kByteOrderMark.size() || fAtEnd)) {
    fAtStart = false;
    if (fBuffer.starts_with(kByteOrderMark)) fPosition = kByteOrderMark.size();
  }
  return !fAtEnd || fBuffer.size() > kept;
}

bool TextSource::ReadLine(std::string_view& line) {
  std::size_t searched = fPosition;
  for (;;) {
    const std::size_t end = fBuffer.find_first_of("\r\n", searched);
    // A "\r" at the end of the buffer may be half of "\r\n".
    const bool complete =
        end != std::string::npos && (fBuffer[end] == '\n' || end + 1 < fBuffer.size() || fAtEnd);
    if (complete) {
      const bool isPair = fBuffer[end] == '\r' && end + 1 < fBuffer.size() && fBuffer[end + 1] == '\n';
      const std::size_t next = end + (isPair ? 2 : 1);
      line = std::string_view(fBuffer).substr(fPosition, next - fPosition);
      fPosition = next;
      ++fLineNumber;
      return true;
    }
    const std::size_t unsearched = (end == std::string::npos ? fBuffer.size() : end) - fPosition;
    if (!Fill()) break;
    searched = fPosition + unsearched;
  }
  if (fPosition == fBuffer.size()) return false;
  line = std::string_view(fBuffer).substr(fPosition);
  fPosition = fBuffer.size();
  ++fLineNumber;
  return true;
}

}  // namespace VeyraTool
