#include "veyra/CsvWriter.h"

#include "data/StringValue.h"
#include "veyra/Number.h"

namespace VeyraTool {

using KxVeyra_940::ScoreValue;
using KxVeyra_940::StringValue;

void CsvWriter::Separate() {
  if (!fIsFirst) fOut += fDelimiter;
  fIsFirst = false;
}

void CsvWriter::AddText(std::string_view text) {
  Separate();
  const bool plain = text.find(fDelimiter) == std::string_view::npos &&
                     text.find_first_of("\"\r\n") == std::string_view::npos;
  if (plain) {
    fOut += text;
    return;
  }
  fOut += '"';
  for (const char c : text) {
    if (c == '"') fOut += '"';
    fOut += c;
  }
  fOut += '"';
}

void CsvWriter::AddNumber(double number) {
  Separate();
  AppendNumber(number, fOut);
}

void CsvWriter::AddValue(const ScoreValue* value) {
  if (value == nullptr || value->IsSystemMissingValue()) {
    AddText({});
    return;
  }
  switch (value->GetType()) {
    case ScoreValue::kNumericValueType:
      AddNumber(value->GetDouble());
      break;
    case ScoreValue::kStringValueType:
      AddText(static_cast<const StringValue*>(value)->GetText());
      break;
    case ScoreValue::kDateTimeValueType:
      AddText(value->GetString());
      break;
  }
}

void CsvWriter::EndRow() {
  fOut += '\n';
  fIsFirst = true;
}

}  // namespace VeyraTool
