#include "regression/Normalization.h"

#include <numeric>

#include "common/Links.h"

namespace KxVeyra_940::Plugin {

namespace {

using Values = std::vector<double>;

// Indexed by Normalization.
constexpr LinkFunction kLinks[] = {
    LinkFunction::kIdentity,  // kNone
    LinkFunction::kLogit,     // kSimplemax
    LinkFunction::kLogit,     // kSoftmax
    LinkFunction::kLogit,     // kLogit
    LinkFunction::kProbit,    // kProbit
    LinkFunction::kCloglog,   // kCloglog
    LinkFunction::kLog,       // kExp
    LinkFunction::kLoglog,    // kLoglog
    LinkFunction::kCauchit,   // kCauchit
};

Link LinkOf(Normalization method) { return {kLinks[static_cast<std::size_t>(method)]}; }

// The last category has what the others leave.
bool GiveRestToLast(Values& values) {
  values.back() = 1.0 - std::accumulate(values.begin(), values.end() - 1, 0.0);
  return true;
}

bool ApplyLink(const Link& link, std::size_t decider, Values& values) {
  if (values.size() == 2) {
    const double y = values[decider];
    values[decider] = link.Mean(y);
    values[1 - decider] = link.Complement(y);
    return true;
  }
  for (double& value : values) value = link.Mean(value);
  return true;
}

}  // namespace

double InverseLink(Normalization method, double y) { return LinkOf(method).Mean(y); }

bool NormalizeNominal(Normalization method, std::size_t decider, Values& values) {
  if (!AreNumbers(values)) return false;
  switch (method) {
    case Normalization::kSoftmax:
      return Softmax(values);
    case Normalization::kSimplemax:
      return DivideBySum(values);
    case Normalization::kNone:
      return GiveRestToLast(values) && AreNumbers(values);
    default:
      return ApplyLink(LinkOf(method), decider, values) && AreNumbers(values);
  }
}

bool NormalizeOrdinal(Normalization method, Values& values) {
  return AreNumbers(values) && DivideCumulative(LinkOf(method), values);
}

}  // namespace KxVeyra_940::Plugin
