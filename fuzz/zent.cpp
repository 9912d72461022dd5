// Makes a model of a zent-ml document by both entries that take one, and scores a few rows with it.

#include <memory>
#include <sstream>

#include "Cases.h"
#include "Host.h"
#include "data/BaseDictionary.h"

using namespace KxVeyra_940;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const VeyraFuzz::Host kHost;
  const std::string document(reinterpret_cast<const char*>(data), size);
  if (document.find("<zent-ml") == std::string::npos) return -1;  // the other targets' share
  const unsigned seed = VeyraFuzz::SeedOf(data, size);
  VeyraFuzz::Refusable([&] {
    std::istringstream in(document);
    const std::unique_ptr<ScoreModel> model(
        ModelFactory::MakeModelFromXML(in, VeyraFuzz::ModelNames(), std::string()));
    if (model != nullptr) VeyraFuzz::ScoreRows(*model, seed);
  });
  VeyraFuzz::Refusable([&] {
    std::istringstream in(document);
    BaseDictionary fields;
    const std::unique_ptr<ScoreModel> model(
        ModelFactory::MakeModelFromXML(in, &fields, VeyraFuzz::ModelNames(), "ISO-8859-1"));
    if (model != nullptr) VeyraFuzz::ScoreRows(*model, seed);
  });
  return 0;
}
