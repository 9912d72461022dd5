// What every target shares of a host program.

#ifndef VEYRA_FUZZ_HOST_H_
#define VEYRA_FUZZ_HOST_H_

#include <string>
#include <vector>
#include <xercesc/dom/DOMException.hpp>
#include <xercesc/sax/SAXException.hpp>
#include <xercesc/util/XMLException.hpp>

#include "veyra/ModelFactory.h"
#include "veyra/VYException.h"

namespace VeyraFuzz {

// The platform of the parser, up for the life of the process.
class Host {
 public:
  Host() { KxVeyra_940::ModelFactory::Initialize({}); }
  ~Host() { KxVeyra_940::ModelFactory::Terminate(); }
  Host(const Host&) = delete;
  Host& operator=(const Host&) = delete;
};

inline const std::vector<std::string>& ModelNames() {
  static const std::vector<std::string> kNames = {"GeneralRegressionModel", "NearestNeighborModel",
                                                  "RegressionModel", "TreeModel"};
  return kNames;
}

// Documents may be refused in these ways; anything else that is thrown is a fault and ends the process.
template <class Action>
void Refusable(Action action) {
  try {
    action();
  } catch (const KxVeyra_940::VYException& exception) {
    if (exception.GetErrorMessage().empty()) __builtin_trap();  // a refusal says why
  } catch (const xercesc::XMLException&) {
  } catch (const xercesc::DOMException&) {
  } catch (const xercesc::SAXException&) {
  }
}

}  // namespace VeyraFuzz

#endif  // VEYRA_FUZZ_HOST_H_
