#include "veyra/Failures.h"

#include <array>
#include <cstdio>

#include "xml/XmlText.h"

namespace VeyraTool {

namespace {

constexpr std::size_t kShownBytes = 80;

std::string PlaceText(const DataPlace& place) {
  std::string text;
  if (place.line > 0) text.append("line ").append(std::to_string(place.line));
  if (place.line > 0 && place.column > 0) text += ", ";
  if (place.column > 0) text.append("column ").append(std::to_string(place.column));
  if (!place.field.empty()) text.append(" (").append(place.field).append(")");
  return text.empty() ? text : text + ": ";
}

}  // namespace

DataFailure::DataFailure(const std::string& file, const DataPlace& place, const std::string& reason)
    : CommandFailure(kDataRefused, file + ": " + PlaceText(place) + reason) {}

void RowFailure::Set(std::string_view newKind, std::size_t newColumn, std::string_view newField,
                     std::string_view newReason) {
  kind.assign(newKind);
  column = newColumn;
  field.assign(newField);
  reason.assign(newReason);
}

std::string RowFailure::GetText() const { return kind + ": " + PlaceText({0, column, field}) + reason; }

std::string Quoted(std::string_view cell) {
  const bool isCut = cell.size() > kShownBytes;
  if (isCut) {
    cell = cell.substr(0, kShownBytes);
    // Not in the middle of a character.
    cell = cell.substr(0, KxXML_940::WellFormedPrefix(cell));
  }
  std::string text = "'";
  for (const char c : cell) {
    if (static_cast<unsigned char>(c) >= 0x20 && c != 0x7F) {
      text += c;
      continue;
    }
    std::array<char, 8> escaped{};
    std::snprintf(escaped.data(), escaped.size(), "\\x%02X", static_cast<unsigned>(c));
    text += c == '\n' ? "\\n" : c == '\r' ? "\\r" : c == '\t' ? "\\t" : escaped.data();
  }
  return text + (isCut ? "...'" : "'");
}

}  // namespace VeyraTool
