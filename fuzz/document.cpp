// Makes a model of a document as a host does, and scores a few rows with it.

#include <memory>
#include <sstream>

#include "Cases.h"
#include "Host.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const VeyraFuzz::Host kHost;
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  VeyraFuzz::Refusable([&] {
    const std::unique_ptr<KxVeyra_940::ScoreModel> model(KxVeyra_940::ModelFactory::MakeModelFromXML(
        in, VeyraFuzz::ModelNames(), std::string(), VEYRA_FUZZ_TRAINING));
    if (model != nullptr) VeyraFuzz::ScoreRows(*model, VeyraFuzz::SeedOf(data, size));
  });
  return 0;
}
