#include "xml/XercesWrapper.h"

#include <optional>
#include <string>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "error/ProcessState.h"
#include "error/Raise.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

// Returns the parser's words when it did not start.
std::optional<std::string> Initialize() {
  try {
    xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr, nullptr, nullptr);
  } catch (const xercesc::XMLException& exception) {
    return KxXML_940::ToUTF8(exception.getMessage());
  }
  return std::nullopt;
}

// The exception needs the platform's memory manager until it is gone: only then is the platform stopped.
void StartPlatform() {
  const std::optional<std::string> failure = Initialize();
  if (!failure) return;
  xercesc::XMLPlatformUtils::Terminate();
  RaiseWithDetail(MessageId::kParserPlatformFailed, *failure);
}

}  // namespace

XercesWrapper::XercesWrapper(bool alreadyInitialized) : fAlreadyInitialized(alreadyInitialized) {
  if (fAlreadyInitialized) return;
  XercesLock.lock(sfMutex::kWaitLock, __FILE__, __LINE__);
  try {
    StartPlatform();
  } catch (...) {
    XercesLock.unlock(__FILE__, __LINE__);
    throw;
  }
}

XercesWrapper::~XercesWrapper() {
  if (fAlreadyInitialized) return;
  xercesc::XMLPlatformUtils::Terminate();
  XercesLock.unlock(__FILE__, __LINE__);
}

}  // namespace KxVeyra_940
