// Blocks of whole records, compared with a reader that looks at one byte after the other.

#include <random>

#include "tools/RunProgram.h"
#include "veyra/BlockReader.h"

namespace {

using namespace VeyraTest;
using namespace VeyraTool;

// Where records end: at line ends outside quotes.
std::vector<std::size_t> RecordEnds(const std::string& text) {
  std::vector<std::size_t> ends;
  bool isQuoted = false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '"') isQuoted = !isQuoted;
    const bool isPair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
    if (!isQuoted && (text[i] == '\n' || text[i] == '\r') && !isPair) ends.push_back(i + 1);
  }
  if (ends.empty() || ends.back() != text.size()) ends.push_back(text.size());
  return ends;
}

// Text in which quotes and line ends are rare enough for long records, or common.
std::string RandomText(std::mt19937& random, std::size_t size, bool isSparse) {
  const std::string characters = "\"\n\r,";
  std::string text(size, 'x');
  for (char& c : text) {
    const auto draw = random() % (isSparse ? 40000 : 8);
    if (draw < characters.size()) c = characters[draw];
  }
  return text;
}

TEST(BlockReader, CutsAtRecordEnds) {
  constexpr unsigned kSeed = 7;
  std::mt19937 random(kSeed);
  for (int round = 0; round < 60; ++round) {
    SCOPED_TRACE("seed " + std::to_string(kSeed) + ", round " + std::to_string(round));
    const TemporaryDirectory files;
    const std::string text = RandomText(random, 1 + random() % (5 * BlockReader::kBlockSize), round % 2 == 0);
    TextSource source(files.Write("text", text), "");
    BlockReader reader(source);
    std::string block;
    std::string all;
    std::size_t lines = 0;
    const std::vector<std::size_t> ends = RecordEnds(text);
    ASSERT_TRUE(reader.ReadRecord(block));
    EXPECT_EQ(block.size(), ends.front());
    for (bool hasBlock = true; hasBlock; hasBlock = reader.ReadBlock(block)) {
      all += block;
      lines += CountLines(block);
      EXPECT_TRUE(std::binary_search(ends.begin(), ends.end(), all.size())) << all.size();
    }
    EXPECT_TRUE(all == text);
    EXPECT_EQ(lines, CountLines(text));
  }
}

TEST(BlockReader, CountsLineEndsOfEveryKind) {
  EXPECT_EQ(CountLines("a\nb\r\nc\rd"), 3U);
  EXPECT_EQ(CountLines("\r\r\n\n"), 3U);
  EXPECT_EQ(CountLines("\r"), 1U);
}

}  // namespace
