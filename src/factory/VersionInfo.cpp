#include "factory/VersionInfo.h"

namespace KxVeyra_940 {

VersionInfo::VersionInfo() = default;
VersionInfo::VersionInfo(const std::string& version) : fVersion(version) {}
VersionInfo::VersionInfo(const VersionInfo& other) = default;
VersionInfo& VersionInfo::operator=(const VersionInfo& other) = default;
VersionInfo::~VersionInfo() = default;

void VersionInfo::SetVersionInfo(const std::string& version) { fVersion = version; }
VersionInfo* VersionInfo::Clone() const { return new VersionInfo(*this); }
bool VersionInfo::operator==(const ScoreVersionInfo& other) const {
  return fVersion == other.GetVersionInfo();
}
const std::string& VersionInfo::GetVersionInfo() const { return fVersion; }

}  // namespace KxVeyra_940
