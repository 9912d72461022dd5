// A status value: a code, how grave it is, and three free slots each for whole numbers and doubles.
//
// A plain value: copy it freely; one object is used by one thread at a time.

#ifndef VEYRA_KXSTATUS_H_
#define VEYRA_KXSTATUS_H_

#include "veyra/Export.h"

namespace KxScore {

class VEYRA_API KxStatus {
 public:
  // OK: code 0, all slots 0.
  KxStatus() = default;
  // A warning or an error with `code`; all slots 0.
  KxStatus(long code, bool isWarning) : fErrorCode(code), fSeverity(isWarning ? 1 : -1) {}

  // Equal when code, severity and all six slots are equal; a NaN in a slot never equals anything.
  bool operator==(const KxStatus& other) const;

  long GetErrorCode() const { return fErrorCode; }
  bool IsOK() const { return fSeverity == 0; }
  bool IsError() const { return fSeverity < 0; }
  bool IsWarning() const { return fSeverity > 0; }

  // REQUIRES: index is 0, 1 or 2; it is not checked.
  long GetDiscreteDatum(unsigned index) const { return fDiscreteData[index]; }
  void SetDiscreteDatum(unsigned index, long value) { fDiscreteData[index] = value; }
  double GetScaleDatum(unsigned index) const { return fScaleData[index]; }
  void SetScaleDatum(unsigned index, double value) { fScaleData[index] = value; }

 private:
  long fErrorCode = 0;
  short fSeverity = 0;  // 0 OK, negative error, positive warning
  long fDiscreteData[3] = {0, 0, 0};
  double fScaleData[3] = {0, 0, 0};
};

}  // namespace KxScore

#endif  // VEYRA_KXSTATUS_H_
