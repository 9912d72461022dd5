// What an object displays, as text.

#ifndef VEYRA_TESTS_DATA_SHOWN_H_
#define VEYRA_TESTS_DATA_SHOWN_H_

#include <sstream>
#include <string>

template <class Displayed>
std::string Shown(const Displayed& object) {
  std::ostringstream out;
  object.Display(out);
  return out.str();
}

#endif  // VEYRA_TESTS_DATA_SHOWN_H_
