// Reads "Matrix" elements: the contrasts of a factor.

#ifndef VEYRA_PLUGINS_GENERALREGRESSION_CONTRASTREADER_H_
#define VEYRA_PLUGINS_GENERALREGRESSION_CONTRASTREADER_H_

#include <cstddef>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

namespace KxVeyra_940::Plugin {

struct NumberMatrix {
  std::size_t rows = 0;
  std::size_t columns = 0;
  std::vector<double> numbers;  // by row and column
};

// Reads every kind of matrix: rows, a diagonal, the lower half of a symmetric one, single cells.  Raises
// 260151, 260152, 260159 and 260283 for its parts, 260182 for a size that is not positive, 260251 for a
// number of rows and 260241 for a length of a row that is another than it says, 260153 for a cell outside it.
NumberMatrix ReadMatrix(const xercesc::DOMElement& element);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_GENERALREGRESSION_CONTRASTREADER_H_
