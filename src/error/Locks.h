// The two lock classes: a recursive mutex and a scope lock.
//
//   sfGuard guard(XercesLock, sfMutex::kWaitLock);

#ifndef VEYRA_ERROR_LOCKS_H_
#define VEYRA_ERROR_LOCKS_H_

#include <pthread.h>

#include "veyra/Export.h"

namespace KxVeyra_940 {

// A recursive mutex: the thread that holds it may lock it again and unlocks it as often.
class VEYRA_API sfMutex {
 public:
  enum LockType : int { kTryLock = 0, kWaitLock = 1 };

  sfMutex();
  sfMutex(const sfMutex&) = delete;
  sfMutex& operator=(const sfMutex&) = delete;
  ~sfMutex();  // REQUIRES: nobody holds it

  // Each returns true when the platform's call succeeded.  `file` and `line` name the caller and are not
  // used. kTryLock does not wait; a type that is neither locks nothing and gives false.
  bool lock(LockType type, const char* file, unsigned long line);
  bool trylock(const char* file, unsigned long line);
  bool unlock(const char* file, unsigned long line);

 private:
  pthread_mutex_t fMutex;
};

// Locks in the constructor and unlocks in the destructor, whether or not a try-lock succeeded: callers wait.
class VEYRA_API sfGuard {
 public:
  sfGuard(sfMutex& mutex, sfMutex::LockType type);
  sfGuard(const sfGuard&) = delete;
  sfGuard& operator=(const sfGuard&) = delete;
  ~sfGuard();

 private:
  sfMutex& fMutex;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_ERROR_LOCKS_H_
