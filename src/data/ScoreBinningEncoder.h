// Turns numbers into bins: bin k holds cutpoint[k-1] < x <= cutpoint[k].
//
// Threads: const operations may be called by several threads.  Nothing throws.

#ifndef VEYRA_DATA_SCOREBINNINGENCODER_H_
#define VEYRA_DATA_SCOREBINNINGENCODER_H_

#include <string>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreEncoder.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreBinningEncoder : public ScoreEncoder {
 public:
  ScoreBinningEncoder() = default;  // no bins
  // The cutpoints must ascend; there is one bin more than cutpoints.
  explicit ScoreBinningEncoder(const std::vector<double>& cutpoints);
  ScoreBinningEncoder(const ScoreBinningEncoder& other) = default;
  ScoreBinningEncoder& operator=(const ScoreBinningEncoder& other) = default;
  ~ScoreBinningEncoder() override;

  void SetBinningCutpoints(const std::vector<double>& cutpoints);
  const std::vector<double>& GetBinningCutpoints() const { return fCutpoints; }
  // The bin as a whole number; 0 without cutpoints.
  double Encode(double number) const;

  EncoderType GetEncoderType() const override;
  int GetNumberOfCategories() const override;
  // -1 for a value that is not numeric, dates included.  Texts are read as numbers.
  int Encode(const std::string& text) override;
  int Encode(const ScoreValue* value) override;
  int EncodeConst(const ScoreValue* value) const override;
  int EncodeConst(const std::string& text) const override;
  std::string Decode(int code) const override;  // always empty
  double DecodeNum(int code) const override;    // always system-missing
  ScoreEncoder* Clone() const override;
  void SetValueLabels(const std::vector<std::string>& labels) override;  // does nothing
  void SetValueLabel(int code, const std::string& label) override;       // does nothing
  const std::vector<std::string>* GetValueLabels() const override;       // null
  void Display(std::ostream& out) const override;

 private:
  int fNumberOfBins = 0;
  std::vector<double> fCutpoints;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_SCOREBINNINGENCODER_H_
