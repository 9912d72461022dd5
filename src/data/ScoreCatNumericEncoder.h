// Turns numeric categories into codes, in order of first appearance.  Numbers match exactly.
//
// Threads: const operations may run in several threads; Encode changes the encoder.  Nothing throws.

#ifndef VEYRA_DATA_SCORECATNUMERICENCODER_H_
#define VEYRA_DATA_SCORECATNUMERICENCODER_H_

#include <string>
#include <unordered_map>
#include <vector>

#include "data/ScoreCatEncoder.h"
#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreCatNumericEncoder : public ScoreCatEncoder {
 public:
  // A repeated value keeps its first code.
  explicit ScoreCatNumericEncoder(const std::vector<double>& values);
  explicit ScoreCatNumericEncoder(int capacity);
  // Copies hold the categories and their codes, not the labels.
  ScoreCatNumericEncoder(const ScoreCatNumericEncoder& other) = default;
  ScoreCatNumericEncoder& operator=(const ScoreCatNumericEncoder& other) = default;
  ~ScoreCatNumericEncoder() override;

  // NaN is no category: -1.
  int Encode(double number);
  int EncodeConst(double number) const;

  EncoderType GetEncoderType() const override;
  int GetNumberOfCategories() const override;
  // Values of every kind by their GetDouble(); texts are read as numbers.  -1 for null.
  int Encode(const std::string& text) override;
  int Encode(const ScoreValue* value) override;
  int EncodeConst(const ScoreValue* value) const override;
  int EncodeConst(const std::string& text) const override;
  std::string Decode(int code) const override;  // always empty
  double DecodeNum(int code) const override;
  ScoreEncoder* Clone() const override;
  void Display(std::ostream& out) const override;

 private:
  std::unordered_map<double, int> fCodes;
  std::vector<double> fValues;  // by code
  int fLastCode = -1;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_SCORECATNUMERICENCODER_H_
