// Turns a variable's values into codes: categories into 0, 1, 2, ... or numbers into bins.
//
// Threads: EncodeConst, Decode and DecodeNum may run in several threads; Encode changes a categorical
// encoder and needs it alone.

#ifndef VEYRA_SCOREENCODER_H_
#define VEYRA_SCOREENCODER_H_

#include <iosfwd>
#include <string>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreEncoder {
 public:
  enum EncoderType : int {
    kBinningEncoder = 1,
    kCatNumericEncoder = 2,
    kCatStringEncoder = 3,
  };

  virtual ~ScoreEncoder();
  virtual EncoderType GetEncoderType() const = 0;
  virtual int GetNumberOfCategories() const = 0;
  // The code, counted from 0; a categorical encoder adds a category that it has not seen.
  virtual int Encode(const std::string& text) = 0;
  virtual int Encode(const ScoreValue* value) = 0;
  // The code, or -1 when the value has none.  Never changes the encoder.
  virtual int EncodeConst(const ScoreValue* value) const = 0;
  virtual int EncodeConst(const std::string& text) const = 0;
  // The category of a code: empty text, system-missing number where there is none.
  virtual std::string Decode(int code) const = 0;
  virtual double DecodeNum(int code) const = 0;
  virtual ScoreEncoder* Clone() const = 0;  // new; the caller owns it
  virtual void SetValueLabels(const std::vector<std::string>& labels) = 0;
  virtual void SetValueLabel(int code, const std::string& label) = 0;
  virtual const std::vector<std::string>* GetValueLabels() const = 0;  // lent; null for bins
  virtual void Display(std::ostream& out) const = 0;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_SCOREENCODER_H_
