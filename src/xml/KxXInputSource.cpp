#include "xml/KxXInputSource.h"

#include <algorithm>
#include <limits>
#include <xercesc/util/BinInputStream.hpp>

namespace KxXML_940 {

namespace {

constexpr XMLCh kSystemId[] = u"istream";

class KxXBinInputStream : public xercesc::BinInputStream {
 public:
  KxXBinInputStream(std::istream* in, std::exception_ptr* failure) : fStream(in), fFailure(failure) {}

  XMLFilePos curPos() const override { return static_cast<XMLFilePos>(fStream->tellg()); }

  XMLSize_t readBytes(XMLByte* buffer, XMLSize_t maxToRead) override {
    constexpr XMLSize_t kLongest = std::numeric_limits<std::streamsize>::max();
    try {
      fStream->read(reinterpret_cast<char*>(buffer),
                    static_cast<std::streamsize>(std::min(maxToRead, kLongest)));
    } catch (...) {
      if (*fFailure == nullptr) *fFailure = std::current_exception();
    }
    return static_cast<XMLSize_t>(fStream->gcount());
  }

  const XMLCh* getContentType() const override { return nullptr; }

 private:
  std::istream* fStream;         // lent
  std::exception_ptr* fFailure;  // lent
};

}  // namespace

KxXInputSource::KxXInputSource(std::istream& in) : InputSource(kSystemId), fStream(in) {}

KxXInputSource::~KxXInputSource() = default;

xercesc::BinInputStream* KxXInputSource::makeStream() const {
  return new (getMemoryManager()) KxXBinInputStream(&fStream, &fFailure);
}

void KxXInputSource::RethrowFailure() const {
  if (fFailure != nullptr) std::rethrow_exception(fFailure);
}

}  // namespace KxXML_940
