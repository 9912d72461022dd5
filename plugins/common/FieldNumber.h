// The numbers that stand for the values of a field.  A number stands for itself.
//
// Mathematics take a date-time by the number of its field's type: days since 1960, seconds.  Ranges, bounds
// and predicates take it the same way, but for a plain date, which they take by its days since 1970.

#ifndef VEYRA_PLUGINS_FIELDNUMBER_H_
#define VEYRA_PLUGINS_FIELDNUMBER_H_

#include <memory>
#include <string>

#include "veyra/ScoreDictVar.h"
#include "veyra/ScoreValue.h"

namespace KxVeyra_940::Plugin {

// REQUIRES: a value of the field's type, which is no text.
double NumberOf(const ScoreDictVar& field, const ScoreValue& value);
double RangeNumberOf(const ScoreDictVar& field, const ScoreValue& value);

// The value that RangeNumberOf gives the number of.
std::unique_ptr<ScoreValue> ValueOfRangeNumber(const ScoreDictVar& field, double number);
// The value of a date-time field that a document writes as such ("1970-01-11") or as its range number. Raises
// 260151.
std::unique_ptr<ScoreValue> ReadDateTime(const ScoreDictVar& field, const std::string& text);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_FIELDNUMBER_H_
