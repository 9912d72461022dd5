// The version text of a document, "2.1" until it is set.

#ifndef VEYRA_FACTORY_VERSIONINFO_H_
#define VEYRA_FACTORY_VERSIONINFO_H_

#include <string>

#include "veyra/Export.h"
#include "veyra/ScoreVersionInfo.h"

namespace KxVeyra_940 {

class VEYRA_API VersionInfo : public ScoreVersionInfo {
 public:
  VersionInfo();
  explicit VersionInfo(const std::string& version);
  VersionInfo(const VersionInfo& other);
  VersionInfo& operator=(const VersionInfo& other);
  ~VersionInfo() override;

  void SetVersionInfo(const std::string& version) override;
  VersionInfo* Clone() const override;
  bool operator==(const ScoreVersionInfo& other) const override;
  // For two of this class, which could otherwise be compared either way round.
  bool operator==(const VersionInfo& other) const { return fVersion == other.fVersion; }
  const std::string& GetVersionInfo() const override;

 private:
  std::string fVersion = "2.1";
};

}  // namespace KxVeyra_940

#endif  // VEYRA_FACTORY_VERSIONINFO_H_
