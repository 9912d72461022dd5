// A name kept in several encodings at once: UTF-8 (the master copy), UTF-16, the default code page and the
// system's encoding.
//
//   ExtNameStr name;
//   name.SetCP(bytes, nullptr);
//   const std::u16string& units = name.GetU16();
//
// References stay valid until the name changes.  One object is used by one thread at a time.

#ifndef VEYRA_XML_EXTNAMESTR_H_
#define VEYRA_XML_EXTNAMESTR_H_

#include <memory>
#include <string>

#include "veyra/Export.h"

namespace KxXML_940 {

class VEYRA_API ExtNameStr {
 public:
  ExtNameStr();
  ExtNameStr(const ExtNameStr& other);
  ExtNameStr& operator=(const ExtNameStr& other);
  ~ExtNameStr();

  // Store the master copy and refresh the other forms.  A `converter` is an ICU UConverter*; null means the
  // default one.
  void SetU8(const std::string& text);
  void SetU16(const std::u16string& text);
  void SetCP(const std::string& text, void* converter);
  void SetGeneric(const std::string& text);
  void SetSystem(const std::string& text);  // the system text is kept as it is

  const std::string& GetU8() const;
  const std::u16string& GetU16() const;
  // Made on demand: the first use of the system's encoding sets the process's locale, see SystemEncoding.
  const std::string& GetSystem() const;
  // The name in the encoding of the default converter; made again when that converter has changed.
  const std::string& GetCP() const;
  // The name in the encoding of `converter`, made now.
  std::string GetCP(void* converter) const;
  // GetU8() or GetCP(), by qUTF8mode().
  const std::string& GetGeneric() const;

  bool Empty() const;
  void Clear();

  // The status of the last conversion, 0 or 3 (xml/Multibyte.h): after a setter that of the UTF-16 form,
  // after SetSystem that of the code page, after GetCP its own.
  int ErrorCode() const;

 private:
  struct Data;
  std::unique_ptr<Data> fData;

  void Refresh();
  void RefreshUTF16();
  void RefreshCodePage() const;
};

}  // namespace KxXML_940

#endif  // VEYRA_XML_EXTNAMESTR_H_
