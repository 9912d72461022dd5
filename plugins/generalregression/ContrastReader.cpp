#include "generalregression/ContrastReader.h"

#include <optional>
#include <string>

#include "common/Keywords.h"
#include "error/Raise.h"
#include "translate/DomReader.h"
#include "translate/PMMLTranslator.h"
#include "vocabulary/PMMLModelTags.h"
#include "vocabulary/PMMLStandardTags.h"

namespace KxVeyra_940::Plugin {

namespace Tags = PMMLModelTags;
namespace StandardTags = PMMLStandardTags;
using xercesc::DOMElement;

namespace {

constexpr std::size_t kMostNumbers = std::size_t{1} << 22;

enum class Kind { kAny, kSymmetric, kDiagonal };
constexpr Keyword<Kind> kKinds[] = {{StandardTags::XML_VAL_ANY, Kind::kAny},
                                    {StandardTags::XML_VAL_SYMMETRIC, Kind::kSymmetric},
                                    {StandardTags::XML_VAL_DIAGONAL, Kind::kDiagonal}};

using Rows = std::vector<std::vector<double>>;

std::optional<std::size_t> ReadSize(const DOMElement& element, const char* attribute) {
  const std::optional<int> size = OptionalInteger(element, attribute);
  if (!size.has_value()) return std::nullopt;
  if (*size <= 0) Raise(MessageId::kNotPositive, {std::to_string(*size), attribute});
  return static_cast<std::size_t>(*size);
}

void RequireLength(std::size_t expected, const std::vector<double>& row) {
  if (row.size() == expected) return;
  Raise(MessageId::kArraySizeMismatch,
        {std::to_string(expected), Tags::XML_ATT_ARRAY_N, std::to_string(row.size())});
}

class MatrixReader {
 public:
  explicit MatrixReader(const DOMElement& element)
      : fElement(element), fKind(ReadKeyword(element, Tags::XML_ATT_KIND, kKinds)) {}

  NumberMatrix Read() {
    ForEachChildElement(&fElement, [&](const DOMElement& child) {
      if (HasTag(child, Tags::XML_ELE_ARRAY)) {
        fRows.push_back(PMMLTranslator::VerifyDoubleArray(&child, 0));
      } else if (HasTag(child, StandardTags::XML_ELE_MATCELL)) {
        fHasCells = true;
      } else if (!HasTag(child, Tags::XML_ELE_EXTENSION)) {
        Raise(MessageId::kInvalidNodeIn,
              {PMMLTranslator::ToString(child.getTagName()), Tags::XML_ELE_MATRIX});
      }
    });
    if (fRows.empty() && !fHasCells) Raise(MessageId::kNoChildElement, {Tags::XML_ELE_MATRIX});
    SizeMatrix();
    if (fHasCells) {
      ReadCells();
    } else if (fKind == Kind::kDiagonal) {
      RequireLength(fMatrix.rows, fRows.front());
      for (std::size_t i = 0; i < fMatrix.rows; ++i) Set(i, i, fRows.front()[i]);
    } else {
      ReadRows();
    }
    return std::move(fMatrix);
  }

 private:
  void SizeMatrix() {
    const bool isSquare = fKind != Kind::kAny;
    std::size_t rows = fKind == Kind::kDiagonal && !fHasCells ? fRows.front().size() : fRows.size();
    std::size_t columns = isSquare || fHasCells ? rows : fRows.front().size();
    const std::optional<std::size_t> givenRows = ReadSize(fElement, Tags::XML_ELE_MATRIX_NBROWS);
    const std::optional<std::size_t> givenColumns = ReadSize(fElement, Tags::XML_ELE_MATRIX_NBCOLS);
    if (fHasCells) {
      if (!givenRows.has_value() || !givenColumns.has_value()) {
        const char* const missing =
            givenRows.has_value() ? Tags::XML_ELE_MATRIX_NBCOLS : Tags::XML_ELE_MATRIX_NBROWS;
        Raise(MessageId::kMissingAttributeOf, {missing, Tags::XML_ELE_MATRIX});
      }
      rows = *givenRows;
      columns = *givenColumns;
    }
    RequireSize(Tags::XML_ELE_MATRIX_NBROWS, givenRows, rows);
    RequireSize(Tags::XML_ELE_MATRIX_NBCOLS, givenColumns, columns);
    if (isSquare && rows != columns) RequireSize(Tags::XML_ELE_MATRIX_NBCOLS, columns, rows);
    if (columns > kMostNumbers / rows) {
      Raise(MessageId::kUnsupportedValue, {std::to_string(columns), Tags::XML_ELE_MATRIX_NBCOLS});
    }
    const double others = OptionalNumber(fElement, StandardTags::XML_ATT_OFFDIAGDEFAULT).value_or(0);
    fMatrix = {rows, columns, std::vector<double>(rows * columns, others)};
    const double diagonal = OptionalNumber(fElement, StandardTags::XML_ATT_DIAGDEFAULT).value_or(others);
    for (std::size_t i = 0; i < std::min(rows, columns); ++i) Set(i, i, diagonal);
  }

  static void RequireSize(const char* attribute, std::optional<std::size_t> given, std::size_t found) {
    if (!given.has_value() || *given == found) return;
    Raise(MessageId::kNumberMismatchIn, {std::to_string(*given), attribute, std::to_string(found),
                                         Tags::XML_ELE_ARRAY, Tags::XML_ELE_MATRIX});
  }

  // Counted from 1.
  std::size_t ReadPosition(const DOMElement& cell, const char* attribute, std::size_t size) const {
    const int position = BaseTranslator::VerifyInt(RequiredAttribute(cell, attribute));
    if (position < 1 || static_cast<std::size_t>(position) > size) {
      Raise(MessageId::kInvalidAttributeValueIn,
            {std::to_string(position), attribute, StandardTags::XML_ELE_MATCELL});
    }
    return static_cast<std::size_t>(position) - 1;
  }

  void ReadCells() {
    ForEachChildElement(&fElement, [&](const DOMElement& child) {
      if (!HasTag(child, StandardTags::XML_ELE_MATCELL)) return;
      const std::size_t row = ReadPosition(child, Tags::XML_ELE_ROW, fMatrix.rows);
      const std::size_t column = ReadPosition(child, StandardTags::XML_ATT_COL, fMatrix.columns);
      std::u16string buffer;
      const double number = BaseTranslator::VerifyDouble(TextOf(child, buffer));
      Set(row, column, number);
      if (fKind == Kind::kSymmetric) Set(column, row, number);
    });
  }

  void ReadRows() {
    for (std::size_t row = 0; row < fMatrix.rows; ++row) {
      const bool isHalf = fKind == Kind::kSymmetric;
      RequireLength(isHalf ? row + 1 : fMatrix.columns, fRows[row]);
      for (std::size_t column = 0; column < fRows[row].size(); ++column) {
        Set(row, column, fRows[row][column]);
        if (isHalf) Set(column, row, fRows[row][column]);
      }
    }
  }

  void Set(std::size_t row, std::size_t column, double number) {
    fMatrix.numbers[row * fMatrix.columns + column] = number;
  }

  const DOMElement& fElement;
  Kind fKind;
  Rows fRows;
  bool fHasCells = false;
  NumberMatrix fMatrix;
};

}  // namespace

NumberMatrix ReadMatrix(const DOMElement& element) { return MatrixReader(element).Read(); }

}  // namespace KxVeyra_940::Plugin
