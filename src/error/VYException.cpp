#include "veyra/VYException.h"

#include <cstdarg>

#include "error/ScoringLog.h"

namespace KxVeyra_940 {

VYException::VYException(ScoreContext::IErrorFormater* formatter) : fFormatter(formatter) {}

VYException::VYException(int code, const std::string& detail, ScoreContext::IErrorFormater* formatter)
    : fErrorCode(code), fDetail(detail), fFormatter(formatter) {}

VYException::VYException(const VYException& other) = default;

VYException& VYException::operator=(const VYException& other) = default;

VYException::~VYException() = default;

bool VYException::PutErrorMessage(int id, ...) {
  fErrorCode = id;
  if (fFormatter == nullptr) return false;
  std::vector<std::string> arguments;
  const int count = fFormatter->GetParameterNumber(id);
  va_list list;
  va_start(list, id);
  for (int i = 0; i < count; ++i) {
    const char* const argument = va_arg(list, const char*);
    if (argument == nullptr) break;
    arguments.emplace_back(argument);
  }
  va_end(list);
  fErrors.push_back({id, std::move(arguments)});
  return true;
}

bool VYException::PutErrorMessage(int id, const std::vector<std::string>& arguments) {
  fErrorCode = id;
  if (fFormatter == nullptr) return false;
  ErrorInfo error{id, arguments};
  const auto count = static_cast<std::size_t>(fFormatter->GetParameterNumber(id));
  if (error.arguments.size() > count) error.arguments.resize(count);
  fErrors.push_back(std::move(error));
  return true;
}

std::string VYException::ConstructMessage() const {
  if (fFormatter == nullptr) return {};
  if (fErrors.empty()) return fErrorCode == 0 ? std::string() : fFormatter->FormatN(fErrorCode, 0);
  std::string text;
  for (const ErrorInfo& error : fErrors) text += fFormatter->Format(error.id, error.arguments);
  return text;
}

std::string VYException::GetErrorMessage() const {
  std::string text = ConstructMessage() + fDetail;
  ScoringLog::GetInstance()->TraceText(kTraceErrors, "Error message : %s", text.c_str());
  return text;
}

}  // namespace KxVeyra_940
