#include "veyra/Signals.h"

#include <signal.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <climits>
#include <cstring>

namespace VeyraTool {

namespace {

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

// Read by the handler while the flag is up; changed only while it is down.
std::array<char, PATH_MAX> gPartialPath;
std::atomic<bool> gHasPartialPath = false;
static_assert(std::atomic<bool>::is_always_lock_free);

// Only what a handler may call.
void OnSignal(int signal) {
  if (gHasPartialPath.exchange(false)) unlink(gPartialPath.data());
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
  KeepOnSignal();
  if (path.size() >= gPartialPath.size()) return;  // no file can have such a name
  std::memcpy(gPartialPath.data(), path.c_str(), path.size() + 1);
  gHasPartialPath = true;
  for (const int signal : kSignals) {
    if (::signal(signal, OnSignal) == SIG_IGN) ::signal(signal, SIG_IGN);
  }
}

void KeepOnSignal() { gHasPartialPath = false; }

}  // namespace VeyraTool
