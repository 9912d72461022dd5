// Cases for the fields of any dictionary, and everything that can be read of an answer.

#ifndef VEYRA_FUZZ_CASES_H_
#define VEYRA_FUZZ_CASES_H_

#include <cstdint>
#include <string>

#include "data/CaseRecord.h"
#include "veyra/ScoreDictionary.h"
#include "veyra/ScoreModel.h"

namespace VeyraFuzz {

inline constexpr unsigned kRows = 8;
inline constexpr unsigned kFiniteRows = 6;  // as many at first hold finite numbers only

// A record with a slot for each field.
KxVeyra_940::CaseRecord MakeRecord(const KxVeyra_940::ScoreDictionary& fields);
// Fills it: row 0 is empty; the others hold categories of the dictionary, numbers (some at the ends of what a
// number is, and none at all), texts and dates, of the field's own kind or of another one.  The same values
// for the same row and seed.
void FillRow(KxVeyra_940::CaseRecord& record, const KxVeyra_940::ScoreDictionary& fields, unsigned row,
             unsigned seed);

// Scores the rows with the model and with a clone that was made before, reads all that a result, the model
// and its dictionaries lend, and stops the process when the two models answer differently.
void ScoreRows(KxVeyra_940::ScoreModel& model, unsigned seed);

// "-" for null.
std::string Shown(const KxVeyra_940::ScoreValue* value);
// Stops the process with both texts when they differ.
void RequireEqual(const char* what, const std::string& left, const std::string& right);

// Stops the process when the value is a number that is infinite or none: files of results cannot hold it.
void RequireFinite(const char* what, const KxVeyra_940::ScoreValue* value);

// A number that depends on all bytes.
unsigned SeedOf(const std::uint8_t* data, std::size_t size);

}  // namespace VeyraFuzz

#endif  // VEYRA_FUZZ_CASES_H_
