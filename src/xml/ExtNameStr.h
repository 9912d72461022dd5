// A name kept in several encodings at once: UTF-8 (the master copy), UTF-16 and the default code page.
//
// One object is used by one thread at a time.

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

  // Stores the master copy and refreshes the other forms.
  void SetU8(const std::string& text);

  const std::string& GetU8() const;
  const std::u16string& GetU16() const;
  // The name in the encoding of the default converter; made again when that converter has changed.
  const std::string& GetCP() const;
  // The name in the encoding of `converter` (an ICU UConverter*; null means the default one), made now.
  std::string GetCP(void* converter) const;

  bool Empty() const;
  void Clear();

  // The status of the last conversion: 0 done, 3 a character was substituted.
  int ErrorCode() const;

 private:
  struct Data;
  std::unique_ptr<Data> fData;

  void Refresh();
  void RefreshCodePage() const;
};

}  // namespace KxXML_940

#endif  // VEYRA_XML_EXTNAMESTR_H_
