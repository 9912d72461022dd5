// The entry point of the plug-in.

#include "generalregression/GeneralRegressionTranslator.h"
#include "veyra/Export.h"

extern "C" VEYRA_API KxVeyra_940::ScoreTranslator* GiveMyTranslator();
extern "C" VEYRA_API void PassModelNames(KxVeyra_940::ScoreTranslator* translator,
                                         const std::vector<std::string>& modelNames);

KxVeyra_940::ScoreTranslator* GiveMyTranslator() {
  return new KxVeyra_940::Plugin::GeneralRegressionTranslator();
}

// A general regression model holds no other models: the names mean nothing to it.
void PassModelNames(KxVeyra_940::ScoreTranslator*, const std::vector<std::string>&) {}
