#include "data/ScoreCatStringEncoder.h"

#include <algorithm>
#include <ostream>

#include "data/NumericValue.h"
#include "data/StringValue.h"
#include "data/TextRules.h"

namespace KxVeyra_940 {

ScoreCatStringEncoder::ScoreCatStringEncoder(const std::vector<std::string>& texts)
    : ScoreCatStringEncoder(static_cast<int>(texts.size())) {
  for (const std::string& text : texts) FindOrAdd(text);
}

ScoreCatStringEncoder::ScoreCatStringEncoder(int capacity) {
  const auto size = static_cast<std::size_t>(std::max(capacity, 0));
  fCodes.reserve(size);
  fLinks.reserve(size);
}

ScoreCatStringEncoder::ScoreCatStringEncoder(const ScoreCatStringEncoder& other)
    : ScoreCatEncoder(other),
      fCodes(other.fCodes),
      fLastCode(other.fLastCode),
      fNoSpaceTrim(other.fNoSpaceTrim),
      fEmptyStringOK(other.fEmptyStringOK) {
  RebuildLinks();
}

ScoreCatStringEncoder& ScoreCatStringEncoder::operator=(const ScoreCatStringEncoder& other) {
  if (this == &other) return *this;
  ScoreCatEncoder::operator=(other);
  fCodes = other.fCodes;
  fLastCode = other.fLastCode;
  RebuildLinks();
  return *this;
}

ScoreCatStringEncoder::~ScoreCatStringEncoder() = default;

ScoreEncoder::EncoderType ScoreCatStringEncoder::GetEncoderType() const { return kCatStringEncoder; }

int ScoreCatStringEncoder::GetNumberOfCategories() const { return fLastCode + 1; }

int ScoreCatStringEncoder::Encode(const std::string& text) { return FindOrAdd(text); }

int ScoreCatStringEncoder::Encode(const ScoreValue* value) {
  if (value == nullptr) return -1;
  const StringValue* const text = AsString(value);
  return text != nullptr ? FindOrAdd(text->GetText()) : FindOrAdd(value->GetString());
}

int ScoreCatStringEncoder::EncodeConst(const ScoreValue* value) const {
  if (value == nullptr) return -1;
  const StringValue* const text = AsString(value);
  return text != nullptr ? FindByRules(text->GetText()) : FindByRules(value->GetString());
}

int ScoreCatStringEncoder::EncodeConst(const std::string& text) const { return FindByRules(text); }

std::string ScoreCatStringEncoder::Decode(int code) const {
  return code >= 0 && code <= fLastCode ? *fLinks[static_cast<std::size_t>(code)] : std::string();
}

double ScoreCatStringEncoder::DecodeNum(int) const { return NumericValue::gSysmisValue; }

ScoreEncoder* ScoreCatStringEncoder::Clone() const { return new ScoreCatStringEncoder(*this); }

void ScoreCatStringEncoder::Display(std::ostream& out) const {
  out << "\tScoreCatStringEncoder object:  Last code = " << fLastCode << std::endl;
  for (std::size_t code = 0; code < fLinks.size(); ++code) {
    out << "\t\t" << code << "\t\t";
    if (fLinks[code] != nullptr) {
      out << *fLinks[code] << std::endl;
    } else {
      out << "ERROR\n";
    }
  }
}

std::string_view ScoreCatStringEncoder::Normalised(std::string_view text) const {
  const std::string_view trimmed = TrimTrailingBlanks(text);
  const bool isBlank = trimmed.empty() && !text.empty();
  return isBlank && fEmptyStringOK ? std::string_view(" ") : trimmed;
}

int ScoreCatStringEncoder::Find(std::string_view text) const {
  const auto entry = fCodes.find(text);
  return entry == fCodes.end() ? -1 : entry->second;
}

int ScoreCatStringEncoder::FindByRules(std::string_view text) const {
  const int code = Find(text);
  if (code >= 0 || fNoSpaceTrim) return code;
  const std::string_view normalised = Normalised(text);
  return normalised == text ? code : Find(normalised);
}

int ScoreCatStringEncoder::FindOrAdd(std::string_view text) {
  const int code = FindByRules(text);
  if (code >= 0) return code;
  const auto entry = fCodes.emplace(fNoSpaceTrim ? text : Normalised(text), fLastCode + 1).first;
  fLinks.push_back(&entry->first);
  return ++fLastCode;
}

void ScoreCatStringEncoder::RebuildLinks() {
  fLinks.assign(fCodes.size(), nullptr);
  for (const auto& [text, code] : fCodes) fLinks[static_cast<std::size_t>(code)] = &text;
}

}  // namespace KxVeyra_940
