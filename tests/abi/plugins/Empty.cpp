// A plug-in that hands out no translator, or has not even the entry point.

#include "veyra/ScoreTranslator.h"

#if VEYRA_TEST_HAS_ENTRY
extern "C" VEYRA_API KxVeyra_940::ScoreTranslator* GiveMyTranslator();
KxVeyra_940::ScoreTranslator* GiveMyTranslator() { return nullptr; }
#else
extern "C" VEYRA_API int SomethingElse();
int SomethingElse() { return 1; }
#endif
