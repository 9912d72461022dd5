#include "veyra/Signals.h"

#include <signal.h>
#include <unistd.h>

#include <atomic>

namespace VeyraTool {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// Read by the handler.  A path is never freed: the handler may be reading it.
std::atomic<const char*> gPartialPath = nullptr;
static_assert(std::atomic<const char*>::is_always_lock_free);

// Only what a handler may call.
void OnSignal(int signal) {
  const char* const path = gPartialPath.exchange(nullptr);
  if (path != nullptr) unlink(path);
  // The program ends as it would without this handler, so that a script around it sees why.
  ::signal(signal, SIG_DFL);
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, signal);
  pthread_sigmask(SIG_UNBLOCK, &set, nullptr);
  kill(getpid(), signal);
}

}  // namespace

void RemoveOnSignal(const std::string& path) {
  gPartialPath = (new std::string(path))->c_str();
  for (const int signal : kSignals) {
    if (::signal(signal, OnSignal) == SIG_IGN) ::signal(signal, SIG_IGN);
  }
}

void KeepOnSignal() { gPartialPath = nullptr; }

}  // namespace VeyraTool
