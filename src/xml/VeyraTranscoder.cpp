#include "xml/VeyraTranscoder.h"

#include <algorithm>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>

#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

using xercesc::XMLTranscoder;
using Transcoder = std::unique_ptr<XMLTranscoder>;

constexpr XMLSize_t kBlockSize = 4096;
constexpr XMLSize_t kOutput = 1000;
// A converter may keep back what does not fit.  So it is given no more than will always fit: eight bytes a
// unit.
constexpr XMLSize_t kInput = kOutput / 8;
// No encoding takes more bytes for a character, shift sequences included.
constexpr XMLSize_t kLongestSequence = 8;

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

bool IsNameOfUTF8(const std::u16string& encoding) {
  return xercesc::XMLString::compareIStringASCII(encoding.c_str(), u"UTF-8") == 0 ||
         xercesc::XMLString::compareIStringASCII(encoding.c_str(), u"UTF8") == 0;
}

// One step of a conversion: what was put out and how much input went into it.  Nothing of either: it is
// stuck.
struct Step {
  XMLSize_t put = 0;
  XMLSize_t eaten = 0;
};

Step Encode(XMLTranscoder& transcoder, std::u16string_view text, XMLByte* out) {
  Step step;
  try {
    step.put = transcoder.transcodeTo(text.data(), text.size(), out, kOutput, step.eaten,
                                      XMLTranscoder::UnRep_Throw);
  } catch (const xercesc::XMLException&) {
    return {};
  }
  return step;
}

Step Decode(XMLTranscoder& transcoder, std::string_view bytes, XMLCh* out) {
  Step step;
  unsigned char sizes[kOutput];
  try {
    step.put = transcoder.transcodeFrom(reinterpret_cast<const XMLByte*>(bytes.data()), bytes.size(), out,
                                        kOutput, step.eaten, sizes);
  } catch (const xercesc::XMLException&) {
    return {};
  }
  return step;
}

// The number of units at the head of a well-formed text that are converted together: no pair is divided.
std::size_t ChunkOf(std::u16string_view text, std::size_t most) {
  if (text.size() <= most) return text.size();
  const bool divides = (text[most] & 0xFC00) == 0xDC00;
  return divides ? most - 1 : most;
}

std::size_t CharacterOf(std::u16string_view text) {
  return std::min<std::size_t>(text.size(), (text[0] & 0xFC00) == 0xD800 ? 2 : 1);
}

// A chunk that fails says nothing about how far it got: it is converted again character by character.
std::string EncodePrefix(XMLTranscoder& transcoder, std::u16string_view text) {
  std::string result;
  XMLByte buffer[kOutput];
  std::size_t single = 0;  // units that go one character at a time
  while (!text.empty()) {
    const std::size_t chunk = single > 0 ? CharacterOf(text) : ChunkOf(text, kInput);
    const Step step = Encode(transcoder, text.substr(0, chunk), buffer);
    if (step.eaten == 0) {
      if (single > 0) break;
      single = chunk;
      continue;
    }
    result.append(reinterpret_cast<const char*>(buffer), step.put);
    text.remove_prefix(step.eaten);
    single -= std::min(single, step.eaten);
  }
  return result;
}

// The other way a character's length is not known beforehand: a failing chunk is tried with one byte, then
// two ...
std::u16string DecodePrefix(XMLTranscoder& transcoder, std::string_view bytes) {
  std::u16string result;
  XMLCh buffer[kOutput];
  std::size_t chunk = kInput;
  while (!bytes.empty()) {
    const Step step = Decode(transcoder, bytes.substr(0, chunk), buffer);
    if (step.eaten == 0) {
      chunk = chunk == kInput ? 1 : chunk + 1;
      if (chunk > std::min<std::size_t>(kLongestSequence, bytes.size())) break;
      continue;
    }
    result.append(buffer, step.put);
    bytes.remove_prefix(step.eaten);
    if (chunk < kInput) chunk = 1;
  }
  return result;
}

// Proved on a transcoder of its own, because a trial may leave it in the middle of a sequence.
bool ContainsAscii(const Transcoder& trial) {
  if (trial == nullptr) return false;
  XMLByte bytes[kOutput];
  XMLCh units[kOutput];
  for (XMLCh unit = 0; unit < 0x80; ++unit) {
    const char byte = static_cast<char>(unit);
    const Step encoded = Encode(*trial, {&unit, 1}, bytes);
    if (encoded.put != 1 || encoded.eaten != 1 || bytes[0] != static_cast<XMLByte>(byte)) return false;
    const Step decoded = Decode(*trial, {&byte, 1}, units);
    if (decoded.put != 1 || decoded.eaten != 1 || units[0] != unit) return false;
  }
  return true;
}

}  // namespace

VeyraTranscoder::VeyraTranscoder(const std::string& encoding) {
  const std::u16string name = KxXML_940::ToUTF16(encoding);
  fTranscoder = MakeTranscoder(name);
  fIsUTF8 = IsNameOfUTF8(name);
  fContainsAscii = fIsUTF8 || ContainsAscii(MakeTranscoder(name));
}

VeyraTranscoder::~VeyraTranscoder() = default;

std::string VeyraTranscoder::transcodeTo(const char16_t* text) const {
  if (fTranscoder == nullptr) return {};
  const std::u16string_view units = KxXML_940::View(text);
  if (fContainsAscii && KxXML_940::IsAscii(units)) return KxXML_940::ToUTF8(units);
  const std::u16string_view prefix = units.substr(0, KxXML_940::WellFormedPrefix(units));
  return fIsUTF8 ? KxXML_940::ToUTF8(prefix) : EncodePrefix(*fTranscoder, prefix);
}

char16_t* VeyraTranscoder::ChangeChar2XML(const char* text) const {
  if (fTranscoder == nullptr || text == nullptr) return nullptr;
  const std::string_view bytes(text);
  const bool isUTF8 = fIsUTF8 || (fContainsAscii && KxXML_940::IsAscii(bytes));
  const std::u16string units = isUTF8
                                   ? KxXML_940::ToUTF16(bytes.substr(0, KxXML_940::WellFormedPrefix(bytes)))
                                   : DecodePrefix(*fTranscoder, bytes);
  auto buffer = std::make_unique_for_overwrite<char16_t[]>(units.size() + 1);
  std::copy_n(units.c_str(), units.size() + 1, buffer.get());
  return buffer.release();
}

}  // namespace KxVeyra_940
