// Whether another thread could take the parser's lock now.

#ifndef VEYRA_TESTS_XML_LOCKISFREE_H_
#define VEYRA_TESTS_XML_LOCKISFREE_H_

#include <thread>

#include "error/ProcessState.h"

namespace KxVeyra_940 {

inline bool LockIsFree() {
  bool locked = false;
  std::thread([&] {
    locked = XercesLock.trylock("", 0);
    if (locked) XercesLock.unlock("", 0);
  }).join();
  return locked;
}

}  // namespace KxVeyra_940

#endif  // VEYRA_TESTS_XML_LOCKISFREE_H_
