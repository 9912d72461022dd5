// A document as elements, attributes and texts that can be moved about.  What is read need not be
// well-formed: unknown markup is kept as text, ends without a beginning are dropped, and what is left open is
// closed.

#ifndef VEYRA_FUZZ_XMLTREE_H_
#define VEYRA_FUZZ_XMLTREE_H_

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace VeyraFuzz {

struct Node {
  std::string name;  // empty for a text
  std::string text;  // as the document writes it, references included
  std::vector<std::pair<std::string, std::string>> attributes;  // values as the document writes them
  std::vector<Node> children;

  bool IsText() const { return name.empty(); }
};

// The nodes at the top are the children of the answer, which has no name.
Node ParseTree(std::string_view document);
std::string Serialise(const Node& top);

}  // namespace VeyraFuzz

#endif  // VEYRA_FUZZ_XMLTREE_H_
