// Numbers of cells: reading a text that is one as a whole, writing the shortest text that reads back.

#ifndef VEYRA_TOOLS_NUMBER_H_
#define VEYRA_TOOLS_NUMBER_H_

#include <optional>
#include <string>
#include <string_view>

namespace VeyraTool {

// The number that the whole text is, blanks and tabs around it left out; nothing for any other text, for
// words such as "inf" and "nan", for numbers beyond the doubles, and for the one double that stands for a
// missing number.
std::optional<double> ReadNumber(std::string_view text);

// Appends the shortest text that reads back to the same double.
void AppendNumber(double number, std::string& out);

}  // namespace VeyraTool

#endif  // VEYRA_TOOLS_NUMBER_H_
