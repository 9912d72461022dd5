#include "error/Locks.h"

namespace KxVeyra_940 {

sfMutex::sfMutex() {
  pthread_mutexattr_t attributes;
  pthread_mutexattr_init(&attributes);
  if (pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE) == 0)
    pthread_mutex_init(&fMutex, &attributes);
  pthread_mutexattr_destroy(&attributes);
}

sfMutex::~sfMutex() { pthread_mutex_destroy(&fMutex); }

bool sfMutex::lock(LockType type, const char* file, unsigned long line) {
  if (type == kTryLock) return trylock(file, line);
  return type == kWaitLock && pthread_mutex_lock(&fMutex) == 0;
}

bool sfMutex::trylock(const char*, unsigned long) { return pthread_mutex_trylock(&fMutex) == 0; }

bool sfMutex::unlock(const char*, unsigned long) { return pthread_mutex_unlock(&fMutex) == 0; }

sfGuard::sfGuard(sfMutex& mutex, sfMutex::LockType type) : fMutex(mutex) {
  fMutex.lock(type, __FILE__, __LINE__);
}

sfGuard::~sfGuard() { fMutex.unlock(__FILE__, __LINE__); }

}  // namespace KxVeyra_940
