#include "veyra/LibrarySession.h"

#include <filesystem>
#include <system_error>

#include "veyra/Failures.h"
#include "veyra/ModelFactory.h"

namespace VeyraTool {

using KxVeyra_940::ModelFactory;
using KxVeyra_940::ScoreModel;
using KxVeyra_940::VYException;

namespace {

// The catalogue that is installed beside this program.
std::string InstalledCatalog() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return (program.parent_path().parent_path() / "share" / "veyra" / "modeldll.txt").string();
}

std::string ChooseCatalog(const std::string& path) {
  if (!path.empty()) return path;
  std::error_code error;
  if (std::filesystem::exists("modeldll.txt", error)) return "modeldll.txt";
  return InstalledCatalog();
}

}  // namespace

void ThrowRefusal(const std::string& file, const VYException& exception) {
  throw CommandFailure(kModelRefused, file + ": error " + std::to_string(exception.GetErrorCode()) + ": " +
                                          exception.GetErrorMessage());
}

LibrarySession::LibrarySession(const std::string& catalogPath) : fCatalogPath(ChooseCatalog(catalogPath)) {
  try {
    ModelFactory::Initialize(fCatalogPath);
  } catch (const VYException& exception) {
    ThrowRefusal(fCatalogPath, exception);
  }
}

LibrarySession::~LibrarySession() { ModelFactory::Terminate(); }

std::unique_ptr<ScoreModel> LibrarySession::LoadModel(const std::string& path) const {
  try {
    std::unique_ptr<ScoreModel> model(ModelFactory::MakeModelFromXML(path, fCatalogPath, std::string()));
    if (model == nullptr) throw CommandFailure(kModelRefused, path + ": the plug-in built no model");
    return model;
  } catch (const VYException& exception) {
    ThrowRefusal(path, exception);
  }
}

}  // namespace VeyraTool
