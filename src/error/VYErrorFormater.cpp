#include "error/VYErrorFormater.h"

#include <unicode/fmtable.h>
#include <unicode/msgfmt.h>
#include <unicode/unistr.h>

namespace ScoreContext {

VYErrorFormater::VYErrorFormater(int count, const MessageItem* items) { Load(count, items); }

VYErrorFormater::~VYErrorFormater() = default;

bool VYErrorFormater::LoadMessages(int count, MessageItem* items) { return Load(count, items); }

bool VYErrorFormater::Load(int count, const MessageItem* items) {
  if (count <= 0) return true;
  if (FindMessageContent(items[0].id) != nullptr) return false;
  for (int i = 0; i < count; ++i) fTexts[items[i].id] = items[i].text;
  return true;
}

const char* VYErrorFormater::FindMessageContent(int id) const {
  const auto found = fTexts.find(id);
  return found == fTexts.end() ? nullptr : found->second;
}

int VYErrorFormater::GetParameterNumber(int id) {
  const char* const text = FindMessageContent(id);
  if (text == nullptr) return 0;
  UErrorCode status = U_ZERO_ERROR;
  const icu::MessageFormat pattern(icu::UnicodeString::fromUTF8(text), status);
  if (U_FAILURE(status)) return 0;
  std::int32_t count = 0;
  pattern.getFormats(count);
  return count;
}

std::string VYErrorFormater::Format(int id, const std::vector<std::string>& args) {
  const char* const content = FindMessageContent(id);
  const std::string text = content == nullptr ? "" : content;
  if (args.empty()) return text;

  std::vector<icu::Formattable> values;
  values.reserve(args.size());
  for (const std::string& argument : args) values.emplace_back(icu::UnicodeString::fromUTF8(argument));

  UErrorCode status = U_ZERO_ERROR;
  icu::UnicodeString formatted;
  icu::MessageFormat::format(icu::UnicodeString::fromUTF8(text), values.data(),
                             static_cast<std::int32_t>(values.size()), formatted, status);
  if (U_FAILURE(status) || formatted.isEmpty()) return text;
  std::string result;
  return formatted.toUTF8String(result);
}

std::string VYErrorFormater::VFormatN(int id, int count, va_list args) {
  std::vector<std::string> texts;
  for (int i = 0; i < count; ++i) texts.emplace_back(va_arg(args, const char*));
  return Format(id, texts);
}

std::string VYErrorFormater::FormatN(int id, int count, ...) {
  va_list args;
  va_start(args, count);
  std::string text = VFormatN(id, count, args);
  va_end(args);
  return text;
}

std::string VYErrorFormater::FormatV(int id, ...) {
  va_list args;
  va_start(args, id);
  std::string text = VFormatN(id, GetParameterNumber(id), args);
  va_end(args);
  return text;
}

}  // namespace ScoreContext
