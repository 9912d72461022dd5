// Turns text categories into codes, in order of first appearance.
//
// Trailing blanks do not count, unless no space trim is set.  An all-blank text counts as " " when empty
// texts are categories of their own (the default), else as the empty text. Threads: const operations may run
// in several threads; Encode changes the encoder.  Nothing throws.

#ifndef VEYRA_DATA_SCORECATSTRINGENCODER_H_
#define VEYRA_DATA_SCORECATSTRINGENCODER_H_

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "data/ScoreCatEncoder.h"
#include "veyra/Export.h"

namespace KxVeyra_940 {

class VEYRA_API ScoreCatStringEncoder : public ScoreCatEncoder {
 public:
  // A repeated category keeps its first code.
  explicit ScoreCatStringEncoder(const std::vector<std::string>& texts);
  explicit ScoreCatStringEncoder(int capacity);
  // A copy holds the categories and both flags; assignment takes the categories and leaves the flags as they
  // are.  Neither takes the labels.
  ScoreCatStringEncoder(const ScoreCatStringEncoder& other);
  ScoreCatStringEncoder& operator=(const ScoreCatStringEncoder& other);
  ~ScoreCatStringEncoder() override;

  void SetNoSpaceTrim(bool noSpaceTrim) { fNoSpaceTrim = noSpaceTrim; }
  bool GetNoSpaceTrim() const { return fNoSpaceTrim; }
  void SetEmptyStringOK(bool emptyStringOK) { fEmptyStringOK = emptyStringOK; }
  bool GetEmptyStringOK() const { return fEmptyStringOK; }

  EncoderType GetEncoderType() const override;
  int GetNumberOfCategories() const override;
  // Values of every kind by their GetString().  -1 for null.
  int Encode(const std::string& text) override;
  int Encode(const ScoreValue* value) override;
  int EncodeConst(const ScoreValue* value) const override;
  int EncodeConst(const std::string& text) const override;
  std::string Decode(int code) const override;
  double DecodeNum(int code) const override;  // always system-missing
  ScoreEncoder* Clone() const override;
  void Display(std::ostream& out) const override;

 private:
  struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };
  using Codes = std::unordered_map<std::string, int, TextHash, std::equal_to<>>;

  std::string_view Normalised(std::string_view text) const;
  int Find(std::string_view text) const;         // -1 when absent as it stands
  int FindByRules(std::string_view text) const;  // -1 when absent under the flags too
  int FindOrAdd(std::string_view text);
  void RebuildLinks();

  Codes fCodes;
  std::vector<const std::string*> fLinks;  // by code, into fCodes
  int fLastCode = -1;
  bool fNoSpaceTrim = false;
  bool fEmptyStringOK = true;
};

}  // namespace KxVeyra_940

#endif  // VEYRA_DATA_SCORECATSTRINGENCODER_H_
