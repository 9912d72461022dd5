// The version text of a document.

#ifndef VEYRA_SCOREVERSIONINFO_H_
#define VEYRA_SCOREVERSIONINFO_H_

#include <string>

#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreVersionInfo {
 public:
  virtual ~ScoreVersionInfo();
  virtual void SetVersionInfo(const std::string& version) = 0;
  virtual ScoreVersionInfo* Clone() const = 0;  // new; the caller owns it
  virtual bool operator==(const ScoreVersionInfo& other) const = 0;
  virtual const std::string& GetVersionInfo() const = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREVERSIONINFO_H_
