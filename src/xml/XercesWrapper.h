// The scope guard of one factory call: starts and stops the XML parser platform.

#ifndef VEYRA_XML_XERCESWRAPPER_H_
#define VEYRA_XML_XERCESWRAPPER_H_

#include "veyra/Export.h"

namespace KxVeyra_940 {

// With `alreadyInitialized` it does nothing.  Without, it holds XercesLock for its whole life, so such calls
// run one at a time; guards may be nested in one thread.
class VEYRA_API XercesWrapper {
 public:
  // Raises 260102 with the parser's own words when the parser platform does not start; anything else that is
  // thrown passes.  Either way the lock has been released.
  explicit XercesWrapper(bool alreadyInitialized);
  XercesWrapper(const XercesWrapper&) = delete;
  XercesWrapper& operator=(const XercesWrapper&) = delete;
  ~XercesWrapper();

 private:
  bool fAlreadyInitialized;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_XML_XERCESWRAPPER_H_
