#include "error/ProcessState.h"

#include "error/Messages.h"

namespace KxVeyra_940 {

ScoreContext::VYErrorFormater gErrorFormater(kMessageCount, gVYMessages);

}  // namespace KxVeyra_940

std::string fgErrorKeys[33] = {
    "kE_PARSE",
    "kE_NODICTVAR",
    "kE_NOCHILD",
    "kE_NULLCHILD",
    "kE_ANCESTORCHILD",
    "kE_ZEROCHILD",
    "kE_NULLARG",
    "kE_NOTCHILD",
    "kE_NODENOTCHILD",
    "kE_SIBLING",
    "kE_NOTSIBLING",
    "kE_ANCESTOR",
    "",
    "",
    "",
    "kE_IO",
    "kE_CONVERTVALUE",
    "kE_OUTOFDOMAIN",
    "kE_NOPARAM",
    "kE_SEMANTIC",
    "kE_UNKNOWNMODEL",
    "kE_MISSINGVAR",
    "kE_SPLITVARINVALID",
    "kE_MSGFMT",
    "kE_DIFFTARGET",
    "kE_VALUECLASH",
    "kE_UNSUP_VALUE",
    "kE_INVALID_VALUE",
    "kE_UNKNOWN_ERROR",
    "kE_MISSINGVAR",
    "kE_UNSUP_METHOD",
    "kE_NO_FIRES_NO_DEFAULT",
    "",
};

namespace KxVeyra_940 {

sfMutex XercesLock;

}  // namespace KxVeyra_940
