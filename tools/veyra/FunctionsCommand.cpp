#include "veyra/FunctionsCommand.h"

#include <string>

#include "transform/FunctionTable.h"
#include "veyra/OutputFile.h"

namespace VeyraTool {

using namespace KxVeyra_940;

namespace {

struct ClassRow {
  FunctionClass which;
  const char* name;
};
constexpr ClassRow kClasses[] = {
    {kArithmeticFunction, "arithmetic"}, {kMathematicsFunction, "mathematics"},
    {kStatisticFunction, "statistic"},   {kDateTimeFunction, "date-time"},
    {kStringFunction, "text"},           {kLogicFunction, "logic"},
};

std::string CountText(int count) {
  if (count >= 0) return std::to_string(count);
  return count == FunctionRow::kAnyCount ? "any" : "-";
}

const char* ParametersText(ParameterRule rule) {
  switch (rule) {
    case ParameterRule::kNumbers:
      return "numbers";
    case ParameterRule::kTexts:
      return "texts";
    case ParameterRule::kTextThenNumbers:
      return "text, numbers";
    case ParameterRule::kAnything:
      break;
  }
  return "any";
}

const char* ResultText(ResultRule rule) {
  switch (rule) {
    case ResultRule::kNumber:
      return "number";
    case ResultRule::kText:
      return "text";
    case ResultRule::kOfTheOperand:
      break;
  }
  return "as given";
}

std::string ClassText(const FunctionRow& row) {
  for (const ClassRow& candidate : kClasses)
    if ((row.classes & candidate.which) != 0) return candidate.name;
  return "other";
}

// `text` and blanks up to the width, at least one.
std::string Cell(const std::string& text, std::size_t width) {
  return text + std::string(text.size() < width ? width - text.size() : 1, ' ');
}

}  // namespace

void RunFunctions() {
  std::string out =
      Cell("function", 39) + Cell("n", 4) + Cell("parameters", 15) + Cell("result", 10) + "class\n";
  for (const FunctionRow& row : AllFunctions()) {
    const std::string names =
        row.alternative == nullptr ? row.name : row.name + std::string(", ") + row.alternative;
    out += Cell(names, 39) + Cell(CountText(row.parameterCount), 4) +
           Cell(ParametersText(row.parameters), 15) + Cell(ResultText(row.result), 10) + ClassText(row) +
           "\n";
  }
  OutputFile file({});
  file.Write(out);
  file.Finish();
}

}  // namespace VeyraTool
