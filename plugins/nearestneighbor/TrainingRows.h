// The rows of training data, from a table in the document or from a delimited file beside it.
//
// A file has a header with the names of its columns, which may stand in any order; it is UTF-8, with or
// without a byte order mark, packed by gzip or not, with quotes as in RFC 4180.  The header decides what
// parts the cells: tabs when it has one, else commas, else semicolons.  Cells that are empty or absent are
// missing.

#ifndef VEYRA_PLUGINS_NEARESTNEIGHBOR_TRAININGROWS_H_
#define VEYRA_PLUGINS_NEARESTNEIGHBOR_TRAININGROWS_H_

#include <functional>
#include <string>
#include <vector>
#include <xercesc/dom/DOMElement.hpp>

namespace KxVeyra_940::Plugin {

// One row.  Everything is lent until the action returns.
struct TrainingRow {
  const std::vector<const XMLCh*>& cells;  // by column asked for; null for a missing one
  std::string place;                       // "row 3", "data.csv, line 4"
};

using RowAction = std::function<void(const TrainingRow&)>;

// Both hand the rows, in their order, to `action`, with the cells of these columns.

// A column is a child element of the "row" elements of an "InlineTable", with or without its prefix.  Raises
// 260122 (column, "InlineTable") for a column that no row has, 260272 (column, "row") for one given twice.
// Returns the number of rows.
std::size_t ForEachRow(const xercesc::DOMElement& inlineTable, const std::vector<std::string>& columns,
                       const RowAction& action);

// Raises 260103 (path) for a file that cannot be read, 260122 (column, path) for a column that the header
// does not have, 260272 (column, path) for one that it has twice, 260156 (text, place) for a row that has not
// as many cells as the header, for a quote in a wrong place and for text that is not UTF-8.  Returns the
// number of rows.
std::size_t ForEachRow(const std::string& path, const std::vector<std::string>& columns,
                       const RowAction& action);

}  // namespace KxVeyra_940::Plugin

#endif  // VEYRA_PLUGINS_NEARESTNEIGHBOR_TRAININGROWS_H_
