#include "data/ScoreCatNumericEncoder.h"

#include <algorithm>
#include <cmath>
#include <ostream>

#include "data/NumericValue.h"
#include "data/ReadNumber.h"

namespace KxVeyra_940 {

namespace {

constexpr std::size_t kValuesPerLine = 7;

}  // namespace

ScoreCatNumericEncoder::ScoreCatNumericEncoder(const std::vector<double>& values)
    : ScoreCatNumericEncoder(static_cast<int>(values.size())) {
  for (const double value : values) Encode(value);
}

ScoreCatNumericEncoder::ScoreCatNumericEncoder(int capacity) {
  const auto size = static_cast<std::size_t>(std::max(capacity, 0));
  fCodes.reserve(size);
  fValues.reserve(size);
}

ScoreCatNumericEncoder::~ScoreCatNumericEncoder() = default;

int ScoreCatNumericEncoder::Encode(double number) {
  if (std::isnan(number)) return -1;
  const auto [entry, isNew] = fCodes.try_emplace(number, fLastCode + 1);
  if (isNew) {
    fValues.push_back(number);
    ++fLastCode;
  }
  return entry->second;
}

int ScoreCatNumericEncoder::EncodeConst(double number) const {
  const auto entry = fCodes.find(number);
  return entry == fCodes.end() ? -1 : entry->second;
}

ScoreEncoder::EncoderType ScoreCatNumericEncoder::GetEncoderType() const { return kCatNumericEncoder; }

int ScoreCatNumericEncoder::GetNumberOfCategories() const { return fLastCode + 1; }

int ScoreCatNumericEncoder::Encode(const std::string& text) { return Encode(ReadNumber(text)); }

int ScoreCatNumericEncoder::Encode(const ScoreValue* value) {
  return value == nullptr ? -1 : Encode(value->GetDouble());
}

int ScoreCatNumericEncoder::EncodeConst(const ScoreValue* value) const {
  return value == nullptr ? -1 : EncodeConst(value->GetDouble());
}

int ScoreCatNumericEncoder::EncodeConst(const std::string& text) const {
  return EncodeConst(ReadNumber(text));
}

std::string ScoreCatNumericEncoder::Decode(int) const { return std::string(); }

double ScoreCatNumericEncoder::DecodeNum(int code) const {
  return code >= 0 && code <= fLastCode ? fValues[static_cast<std::size_t>(code)]
                                        : NumericValue::gSysmisValue;
}

ScoreEncoder* ScoreCatNumericEncoder::Clone() const { return new ScoreCatNumericEncoder(*this); }

void ScoreCatNumericEncoder::Display(std::ostream& out) const {
  out << "\tScoreCatNumericEncoder: Last code = " << fLastCode << std::endl
      << "\t\tNumeric values of categories: ";
  for (std::size_t i = 0; i < fValues.size(); ++i) {
    out << fValues[i] << ' ';
    if ((i + 1) % kValuesPerLine == 0) out << std::endl;
  }
  out << std::endl;
}

}  // namespace KxVeyra_940
