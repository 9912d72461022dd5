#include "veyra/BlockReader.h"

#include <algorithm>

namespace VeyraTool {

namespace {

constexpr std::size_t kLeast = 64 * 1024;
constexpr std::size_t kMost = 8 * 1024 * 1024;
constexpr const char* kTooLong = "the row is longer than 64 MiB: is a quote left open?";

// How much to read behind so much text: what a block lacks, then ever more for a long record.
std::size_t WantedBehind(std::size_t size) {
  return size < BlockReader::kBlockSize ? std::max(kLeast, BlockReader::kBlockSize - size)
                                        : std::min(size, kMost);
}

}  // namespace

std::size_t EndOfRecord(std::string_view text, bool isWhole) {
  bool isQuoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') isQuoted = !isQuoted;
    if (isQuoted) continue;
    if (text[i] == '\n') return i + 1;
    if (text[i] != '\r') continue;
    if (i + 1 < text.size()) return i + (text[i + 1] == '\n' ? 2 : 1);
    if (isWhole) return i + 1;
  }
  return std::string_view::npos;
}

std::size_t CountLines(std::string_view text) {
  auto lines = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
  for (std::size_t at = text.find('\r'); at != std::string_view::npos; at = text.find('\r', at + 1)) {
    if (at + 1 == text.size() || text[at + 1] != '\n') ++lines;
  }
  return lines;
}

// Appends what the source has; false when it has no more.
bool BlockReader::Fill(std::string& text) {
  if (fAtEnd) return false;
  try {
    fAtEnd = !fSource.Append(text, WantedBehind(text.size()));
  } catch (const SourceFailure& failure) {
    fFailure = failure.what();
    fIsFailed = true;
    fAtEnd = true;
  }
  return !fAtEnd;
}

// Looks for the last record end of the text, whose first fScanned bytes are known; false when there is none.
// Whether a byte is quoted is told by the number of quotes before it: they are counted forwards, and the last
// record end is looked for backwards from there.
bool BlockReader::Scan(std::string_view text) {
  const std::string_view fresh = text.substr(fScanned);
  const bool isOdd = std::count(fresh.begin(), fresh.end(), '"') % 2 != 0;
  const bool isQuotedAtEnd = fIsQuoted != isOdd;
  bool isQuoted = isQuotedAtEnd;
  for (std::size_t i = text.size(); i > fScanned; --i) {
    const char c = text[i - 1];
    if (c == '"') isQuoted = !isQuoted;
    const bool mayBeHalf = c == '\r' && i == text.size();
    if (!isQuoted && (c == '\n' || (c == '\r' && !mayBeHalf))) {
      fRecordsEnd = i;
      break;
    }
  }
  // A "\r" at the end is looked at again with what follows.
  fScanned = text.size() - (text.ends_with('\r') ? 1 : 0);
  fIsQuoted = isQuotedAtEnd;
  return fRecordsEnd > 0;
}

bool BlockReader::ReadRecord(std::string& record) {
  for (bool mayHaveMore = true;;) {
    const std::size_t end = EndOfRecord(fTail, fAtEnd);
    if (end != std::string::npos) {
      record.assign(fTail, 0, end);
      fTail.erase(0, end);
      return true;
    }
    if (!mayHaveMore) break;
    if (fTail.size() > kLongestRecord) throw SourceFailure(kTooLong);
    mayHaveMore = Fill(fTail);
  }
  if (fIsFailed) throw SourceFailure(fFailure);
  record.swap(fTail);
  fTail.clear();
  return !record.empty();
}

bool BlockReader::ReadBlock(std::string& block) {
  block.swap(fTail);
  fTail.clear();
  fScanned = 0;
  fRecordsEnd = 0;
  fIsQuoted = false;
  for (;;) {
    const bool hasRecord = Scan(block);
    if (hasRecord && (block.size() >= kBlockSize || !fSource.GetBytes().IsReady())) break;
    if (!hasRecord && block.size() > kLongestRecord) {
      block.clear();
      throw SourceFailure(kTooLong);
    }
    if (!Fill(block)) return EndBlock(block);
  }
  fTail.assign(block, fRecordsEnd, std::string::npos);
  block.resize(fRecordsEnd);
  return true;
}

// The source has ended.
bool BlockReader::EndBlock(std::string& block) {
  if (!fIsFailed) return !block.empty();
  if (Scan(block)) {
    fTail.assign(block, fRecordsEnd, std::string::npos);
    block.resize(fRecordsEnd);
    return true;
  }
  throw SourceFailure(fFailure);
}

}  // namespace VeyraTool
