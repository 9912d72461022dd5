#include "xml/KxXInputSource.h"

#include <algorithm>
#include <limits>
#include <xercesc/util/BinInputStream.hpp>

namespace KxXML_940 {

namespace {

constexpr XMLCh kSystemId[] = u"istream";

class KxXBinInputStream : public xercesc::BinInputStream {
 public:
  explicit KxXBinInputStream(std::istream* in) : fStream(in) {}

  XMLFilePos curPos() const override { return static_cast<XMLFilePos>(fStream->tellg()); }

  XMLSize_t readBytes(XMLByte* buffer, XMLSize_t maxToRead) override {
    constexpr XMLSize_t kLongest = std::numeric_limits<std::streamsize>::max();
    fStream->read(reinterpret_cast<char*>(buffer),
                  static_cast<std::streamsize>(std::min(maxToRead, kLongest)));
    return static_cast<XMLSize_t>(fStream->gcount());
  }

  const XMLCh* getContentType() const override { return nullptr; }

 private:
  std::istream* fStream;  // lent
};

}  // namespace

KxXInputSource::KxXInputSource(std::istream& in) : InputSource(kSystemId), fStream(in) {}

KxXInputSource::~KxXInputSource() = default;

xercesc::BinInputStream* KxXInputSource::makeStream() const {
  return new (getMemoryManager()) KxXBinInputStream(&fStream);
}

}  // namespace KxXML_940
