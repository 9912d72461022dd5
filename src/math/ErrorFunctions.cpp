#include "math/ErrorFunctionsInternal.h"

#include <cmath>

#include "math/KxDistFun.h"
#include "math/ValuesInternal.h"

namespace KxMath_940 {

double KxDistFun::derf(double x) {
  if (!AreNumbers(x)) return kMissing;
  const double magnitude = std::fabs(x);
  if (magnitude < 2.2) {
    const double square = x * x;
    const int row = static_cast<int>(square);
    return x * Polynomial(kErfSmall[row], square - row);
  }
  if (magnitude >= 6.9) return x > 0 ? 1 : -1;
  const int row = static_cast<int>(magnitude);
  double root = Polynomial(kErfcRoot[row - 2], magnitude - row);
  for (int i = 0; i < 4; ++i) root *= root;
  return x > 0 ? 1 - root : root - 1;
}

double KxDistFun::derfc(double x) {
  if (!AreNumbers(x)) return kMissing;
  if (x < 0) return 2 - derfc(-x);
  return ScaledErfc(x) * ExpMinusSquare(x, 1);
}

}  // namespace KxMath_940
