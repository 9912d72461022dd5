// Packing a text as gzip does.

#ifndef VEYRA_TESTS_TOOLS_PACK_H_
#define VEYRA_TESTS_TOOLS_PACK_H_

#include <gtest/gtest.h>
#include <zlib.h>

#include <string>

namespace VeyraTest {

inline std::string Pack(const std::string& text) {
  z_stream stream{};
  EXPECT_EQ(deflateInit2(&stream, 9, Z_DEFLATED, 16 + MAX_WBITS, 8, Z_DEFAULT_STRATEGY), Z_OK);
  std::string packed(deflateBound(&stream, text.size()), '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(packed.data());
  stream.avail_out = static_cast<uInt>(packed.size());
  EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
  packed.resize(stream.total_out);
  deflateEnd(&stream);
  return packed;
}

}  // namespace VeyraTest

#endif  // VEYRA_TESTS_TOOLS_PACK_H_
