#include "veyra/CsvWriter.h"

#include <algorithm>

#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "veyra/Number.h"

namespace VeyraTool {

using KxVeyra_940::NumericValue;
using KxVeyra_940::ScoreValue;
using KxVeyra_940::StringValue;

void CsvWriter::Separate() {
  if (!fIsFirst) fOut += fDelimiter;
  fIsFirst = false;
}

void CsvWriter::AddText(std::string_view text) {
  Separate();
  const bool isPlain = std::none_of(text.begin(), text.end(), [this](char c) {
    return c == fDelimiter || c == '"' || c == '\r' || c == '\n';
  });
  if (isPlain) {
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
  if (value == nullptr) return AddText({});
  switch (value->GetType()) {
    case ScoreValue::kNumericValueType: {
      const double number = static_cast<const NumericValue*>(value)->GetNumber();
      return NumericValue::IsSystemMissingValue(number) ? AddText({}) : AddNumber(number);
    }
    case ScoreValue::kStringValueType:
      return AddText(static_cast<const StringValue*>(value)->GetText());
    case ScoreValue::kDateTimeValueType:
      return AddText(value->IsSystemMissingValue() ? std::string() : value->GetString());
  }
}

void CsvWriter::GoBack(Mark mark) {
  fOut.resize(mark.size);
  fIsFirst = mark.isFirst;
}

void CsvWriter::EndRow() {
  fOut += '\n';
  fIsFirst = true;
}

}  // namespace VeyraTool
