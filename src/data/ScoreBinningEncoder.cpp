#include "data/ScoreBinningEncoder.h"

#include <ostream>

#include "data/NumericValue.h"
#include "data/ReadNumber.h"
#include "data/Truncate.h"
#include "error/ScoringLog.h"

namespace KxVeyra_940 {

namespace {

constexpr const char* kEncode = "Encode";

int BinOf(const std::vector<double>& cutpoints, double number) {
  int low = 0;
  int high = static_cast<int>(cutpoints.size()) - 1;
  while (low <= high) {
    const int middle = low + (high - low) / 2;
    const double cutpoint = cutpoints[static_cast<std::size_t>(middle)];
    if (cutpoint == number) return middle;
    if (cutpoint > number) {
      high = middle - 1;
    } else {
      low = middle + 1;
    }
  }
  // `low` is where the search ended: at the last cutpoint compared when that is larger, else behind it.
  return low;
}

}  // namespace

ScoreBinningEncoder::ScoreBinningEncoder(const std::vector<double>& cutpoints) {
  SetBinningCutpoints(cutpoints);
}

ScoreBinningEncoder::~ScoreBinningEncoder() = default;

void ScoreBinningEncoder::SetBinningCutpoints(const std::vector<double>& cutpoints) {
  fCutpoints = cutpoints;
  fNumberOfBins = static_cast<int>(fCutpoints.size()) + 1;
}

double ScoreBinningEncoder::Encode(double number) const {
  TraceExit(kEncode);
  const int bin = BinOf(fCutpoints, number);
  TraceExit(kEncode);
  return bin;
}

ScoreEncoder::EncoderType ScoreBinningEncoder::GetEncoderType() const { return kBinningEncoder; }

int ScoreBinningEncoder::GetNumberOfCategories() const { return fNumberOfBins; }

int ScoreBinningEncoder::Encode(const std::string& text) { return EncodeConst(text); }

int ScoreBinningEncoder::Encode(const ScoreValue* value) { return EncodeConst(value); }

int ScoreBinningEncoder::EncodeConst(const ScoreValue* value) const {
  if (value == nullptr || value->GetType() != ScoreValue::kNumericValueType) return -1;
  return TruncateToInt(Encode(value->GetDouble()));
}

int ScoreBinningEncoder::EncodeConst(const std::string& text) const {
  return TruncateToInt(Encode(ReadNumber(text)));
}

std::string ScoreBinningEncoder::Decode(int) const { return std::string(); }

double ScoreBinningEncoder::DecodeNum(int) const { return NumericValue::gSysmisValue; }

ScoreEncoder* ScoreBinningEncoder::Clone() const { return new ScoreBinningEncoder(*this); }

void ScoreBinningEncoder::SetValueLabels(const std::vector<std::string>&) {}

void ScoreBinningEncoder::SetValueLabel(int, const std::string&) {}

const std::vector<std::string>* ScoreBinningEncoder::GetValueLabels() const { return nullptr; }

void ScoreBinningEncoder::Display(std::ostream& out) const {
  out << "\tScoreBinningEncoder: number of bins = " << fNumberOfBins << std::endl << "\t\tCutpoints: ";
  for (const double cutpoint : fCutpoints) out << cutpoint << ' ';
  out << std::endl;
}

}  // namespace KxVeyra_940
