// Turns the inputs of a case, or of a training instance, into the numbers that are compared.
//
// Threads: GetPlace may run in several; Add and Learn belong to the building of a model.

#ifndef VEYRA_PLUGINS_NEARESTNEIGHBOR_CASECOORDINATES_H_
#define VEYRA_PLUGINS_NEARESTNEIGHBOR_CASECOORDINATES_H_

#include <cstddef>
#include <string>
#include <vector>

#include "common/CategoryTable.h"
#include "common/Inputs.h"
#include "nearestneighbor/Measure.h"

namespace KxVeyra_940::Plugin {

class CaseCoordinates {
 public:
  CaseCoordinates() = default;
  // The inputs know how the fields are read: as numbers, or as categories of their tables.  A measure of
  // counts wants 0 and 1: a number is 1 unless it is 0, a text is one of "0", "false", "1" and "true".
  CaseCoordinates(std::vector<ComparedField> fields, bool isBinary, Inputs& inputs);

  const std::vector<ComparedField>& GetFields() const { return fFields; }
  // Takes note of new categories.  Raises 260151, with `place` as its detail, for a text that is neither 0
  // nor 1 where it has to be.
  void Learn(const Inputs& inputs, const std::string& place);

  // By field; NaN for a missing value.  REQUIRES: `place` has the size of the fields.
  void GetPlace(const CaseValues& values, std::vector<double>& place) const;

 private:
  struct Reading {
    bool isCategory = false;
    std::vector<double> numbers;  // by category, where categories stand for 0 and 1
  };

  double CoordinateOf(std::size_t field, const CaseValues& values) const;

  std::vector<ComparedField> fFields;
  std::vector<Reading> fReadings;  // by field
  bool fIsBinary = false;
};

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_NEARESTNEIGHBOR_CASECOORDINATES_H_
