#include "xml/XercesWrapper.h"

#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/XMLException.hpp>
#include <xercesc/util/XMLUni.hpp>

#include "error/ProcessState.h"
#include "error/Raise.h"
#include "xml/XmlText.h"

namespace KxVeyra_940 {

namespace {

void StartPlatform() {
  try {
    xercesc::XMLPlatformUtils::Initialize(xercesc::XMLUni::fgXercescDefaultLocale, nullptr, nullptr, nullptr);
  } catch (const xercesc::XMLException& exception) {
    const std::string detail = KxXML_940::ToUTF8(exception.getMessage());
    xercesc::XMLPlatformUtils::Terminate();
    RaiseWithDetail(MessageId::kParserPlatformFailed, {}, detail);
  }
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
