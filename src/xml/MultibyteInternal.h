// What the sources of the multibyte family share.

#ifndef VEYRA_XML_MULTIBYTEINTERNAL_H_
#define VEYRA_XML_MULTIBYTEINTERNAL_H_

#include <unicode/ucnv.h>

#include <cstddef>
#include <memory>
#include <string_view>
#include <utility>

namespace KxXML_940 {

// The status of a conversion.
constexpr int kDone = 0;
constexpr int kCut = 1;
constexpr int kNotConverted = 3;

struct ConverterCloser {
  void operator()(UConverter* converter) const noexcept { ucnv_close(converter); }
};
using Converter = std::unique_ptr<UConverter, ConverterCloser>;

// The converter to use where a caller may name one (a UConverter*): that one, or for null a clone of the
// default converter, whose own state belongs to nobody.
class ChosenConverter {
 public:
  explicit ChosenConverter(void* converter);
  UConverter* Get() const { return fConverter; }  // null when there was no memory for a clone

 private:
  Converter fClone;
  UConverter* fConverter;
};

Converter Clone(const UConverter* converter);

// What one conversion did.
struct Outcome {
  std::size_t written = 0;  // units
  int status = kDone;
};

// Convert a whole text with a converter.  An output that does not fit is cut anywhere.
Outcome FromUnicode(UConverter* converter, std::u16string_view from, char* out, std::size_t room);
Outcome ToUnicode(UConverter* converter, std::string_view from, char16_t* out, std::size_t room);

// Rooms that hold the output for a text of so many units in nearly every encoding.
std::size_t BytesFor(UConverter* converter, std::size_t units);
std::size_t UnitsFor(std::size_t bytes);

// Converts again into twice the room until the output fits.
template <class Text, class Source, class Conversion>
int IntoString(void* converter, Text& to, Source from, std::size_t room, Conversion convert) {
  for (Text out;; room *= 2) {
    out.resize(room);
    const Outcome outcome = convert(static_cast<UConverter*>(converter), from, out.data(), out.size());
    if (outcome.status == kCut) continue;
    out.resize(outcome.written);
    to = std::move(out);
    return outcome.status;
  }
}

// The number of leading bytes that are complete valid characters; nulls are characters.
std::size_t ValidPrefix(void* converter, std::string_view text);

}  // namespace KxXML_940

#endif  // VEYRA_XML_MULTIBYTEINTERNAL_H_
