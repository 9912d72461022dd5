// Where the library's process-wide data lie for the image that this header is compiled into.

#ifndef VEYRA_TESTS_ABI_PLUGINS_SHAREDDATA_H_
#define VEYRA_TESTS_ABI_PLUGINS_SHAREDDATA_H_

#include <string>
#include <vector>

#include "error/ProcessState.h"
#include "veyra/ModelFactory.h"

namespace VeyraTest {

struct SharedData {
  const std::vector<std::string>* modelNames = nullptr;
  const bool* initialized = nullptr;
  const ScoreContext::VYErrorFormater* formater = nullptr;
  const std::string* errorKeys = nullptr;
  const KxVeyra_940::sfMutex* lock = nullptr;

  bool operator==(const SharedData&) const = default;
};

inline SharedData SharedDataSeenHere() {
  using KxVeyra_940::ModelFactory;
  return {&ModelFactory::fModelNames, &ModelFactory::fInitialized, &KxVeyra_940::gErrorFormater, fgErrorKeys,
          &KxVeyra_940::XercesLock};
}

}  // namespace VeyraTest

#endif  // VEYRA_TESTS_ABI_PLUGINS_SHAREDDATA_H_
