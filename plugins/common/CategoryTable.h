// The categories of one field, by code: which code a value has, found by hash.
//
// Texts are equal as the field's own rules have it (trailing blanks, blank texts), numbers within the
// tolerance of numeric values.  Threads: const operations may run in several threads.

#ifndef VEYRA_PLUGINS_CATEGORYTABLE_H_
#define VEYRA_PLUGINS_CATEGORYTABLE_H_

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940::Plugin {

constexpr int kNoCategory = -1;
// Stands for a missing value where a model deals with one itself.
constexpr int kMissingCategory = -2;

class CategoryTable {
 public:
  // The field's labelled values in their order.  Only the field's options are kept, not the field.
  explicit CategoryTable(const ScoreDictVar& field);
  CategoryTable(const CategoryTable&) = delete;
  CategoryTable& operator=(const CategoryTable&) = delete;
  ~CategoryTable();

  int Size() const { return static_cast<int>(fValues.size()); }
  // How many of the codes, from 0, stand for labelled values of the field.
  int GetListedCount() const { return fListedCount; }
  const ScoreValue& GetValue(int code) const { return *fValues[static_cast<std::size_t>(code)]; }

  // The code of the value; a new one when the table has none yet.  Takes nothing, clones what it adds.
  int Add(const ScoreValue& value);

  // kNoCategory when the table has no such value, or none of that kind.  Allocate nothing.
  int Find(const ScoreValue& value) const;
  int FindText(std::string_view text) const;
  int FindNumber(double number) const;

 private:
  static constexpr std::string_view kBlank = " ";

  std::string_view Normalised(std::string_view text) const;

  bool fNoSpaceTrim;
  bool fEmptyStringOK;
  int fListedCount = 0;
  std::vector<std::unique_ptr<ScoreValue>> fValues;
  std::unordered_map<std::string_view, int> fTexts;  // parts of the texts in fValues, or kBlank
  std::map<double, int> fNumbers;
};

// The categories of a target, which are texts without one (null).
std::unique_ptr<CategoryTable> MakeTargetTable(const ScoreDictVar* target);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_CATEGORYTABLE_H_
