// What the two categorical encoders share: a label for each code.

#ifndef VEYRA_DATA_SCORECATENCODER_H_
#define VEYRA_DATA_SCORECATENCODER_H_

#include <string>
#include <vector>

#include "veyra/Export.h"
#include "veyra/ScoreEncoder.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreCatEncoder : public ScoreEncoder {
 public:
  ~ScoreCatEncoder() override;

  void SetValueLabels(const std::vector<std::string>& labels) override;
  // Nothing for a code outside the categories.
  void SetValueLabel(int code, const std::string& label) override;
  const std::vector<std::string>* GetValueLabels() const override;

 protected:
  ScoreCatEncoder() = default;
  // Copies of an encoder hold its categories; labels stay with the encoder that they were given to.
  ScoreCatEncoder(const ScoreCatEncoder& other);
  ScoreCatEncoder& operator=(const ScoreCatEncoder& other);

 private:
  std::vector<std::string> fValueLabels;  // by code
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_SCORECATENCODER_H_
