#include "Mutator.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <vector>

#include "Words.h"
#include "XmlTree.h"

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maximalSize);

namespace VeyraFuzz {

namespace {

class Mutation {
 public:
  Mutation(Node& top, unsigned seed) : fTop(top), fRandom(seed) {}

  void Run() {
    static constexpr void (Mutation::*kChanges[])() = {
        &Mutation::Double,        &Mutation::Drop,
        &Mutation::Swap,          &Mutation::Move,
        &Mutation::Copy,          &Mutation::Rename,
        &Mutation::Nest,          &Mutation::Unwrap,
        &Mutation::DropAttribute, &Mutation::AddAttribute,
        &Mutation::SetValue,      &Mutation::SetValue,
        &Mutation::SetValue,      &Mutation::DoubleAttribute,
        &Mutation::SetText,       &Mutation::TweakNumber,
        &Mutation::TweakNumber,   &Mutation::RenameAttribute,
    };
    for (std::size_t count = 1 + Below(4); count > 0; --count) {
      if (!Collect()) return;
      (this->*kChanges[Below(std::size(kChanges))])();
    }
  }

  // Puts a copy of one of the elements of `other` somewhere.
  void Graft(const Node& other) {
    Mutation donor(const_cast<Node&>(other), static_cast<unsigned>(fRandom()));
    if (!donor.Collect() || !Collect()) return;
    const Node copy = donor.AnyElement();
    Insert(AnyElement(), copy);
  }

 private:
  struct Place {
    Node* parent;
    std::size_t index;
  };

  // False when there is no element.
  bool Collect() {
    fElements.clear();
    fTexts.clear();
    CollectBelow(fTop);
    return !fElements.empty();
  }

  void CollectBelow(Node& parent) {
    for (std::size_t i = 0; i < parent.children.size(); ++i) {
      (parent.children[i].IsText() ? fTexts : fElements).push_back({&parent, i});
      CollectBelow(parent.children[i]);
    }
  }

  std::size_t Below(std::size_t count) { return fRandom() % count; }
  bool OneIn(std::size_t count) { return Below(count) == 0; }
  template <class List>
  auto& Any(List& list) {
    return list[Below(std::size(list))];
  }
  static Node& At(const Place& place) { return place.parent->children[place.index]; }
  Node& AnyElement() { return At(Any(fElements)); }

  void Insert(Node& parent, Node node) {
    auto& children = parent.children;
    const auto offset = static_cast<std::ptrdiff_t>(Below(children.size() + 1));
    children.insert(children.begin() + offset, std::move(node));
  }

  static void Erase(const Place& place) {
    auto& children = place.parent->children;
    children.erase(children.begin() + static_cast<std::ptrdiff_t>(place.index));
  }

  void Double() {
    const Place place = Any(fElements);
    Node copy = At(place);
    auto& children = place.parent->children;
    children.insert(children.begin() + static_cast<std::ptrdiff_t>(place.index), std::move(copy));
  }

  // The whole document is seldom dropped.
  void Drop() {
    const Place place = Any(fElements);
    if (place.parent != &fTop || OneIn(20)) Erase(place);
  }

  void Swap() {
    const Place place = Any(fElements);
    auto& children = place.parent->children;
    std::swap(children[place.index], children[Below(children.size())]);
  }

  void Move() {
    const Place place = Any(fElements);
    if (place.parent == &fTop) return;
    Node node = At(place);
    Erase(place);
    if (Collect()) Insert(AnyElement(), std::move(node));
  }

  void Copy() {
    Node copy = AnyElement();
    Insert(AnyElement(), std::move(copy));
  }

  void Rename() {
    Node& node = AnyElement();
    node.name = OneIn(2) ? AnyElement().name : Any(AllWords().elements);
  }

  // As many of the same element in each other.
  void Nest() {
    const Place place = Any(fElements);
    Node shell;
    shell.name = At(place).name;
    shell.attributes = At(place).attributes;
    for (std::size_t depth = OneIn(8) ? 1 + Below(300) : 1 + Below(3); depth > 0; --depth) {
      Node outer = shell;
      outer.children.push_back(std::move(At(place)));
      At(place) = std::move(outer);
    }
  }

  // What it holds takes its place.
  void Unwrap() {
    const Place place = Any(fElements);
    if (place.parent == &fTop) return;
    std::vector<Node> inner = std::move(At(place).children);
    Erase(place);
    auto& children = place.parent->children;
    children.insert(children.begin() + static_cast<std::ptrdiff_t>(place.index),
                    std::make_move_iterator(inner.begin()), std::make_move_iterator(inner.end()));
  }

  // An element with attributes, as far as a few looks find one.
  Node* Attributed() {
    for (int i = 0; i < 8; ++i) {
      Node& node = AnyElement();
      if (!node.attributes.empty()) return &node;
    }
    return nullptr;
  }

  std::pair<std::string, std::string>* AnyAttribute() {
    Node* const node = Attributed();
    return node == nullptr ? nullptr : &Any(node->attributes);
  }

  // An odd text, a word of the vocabulary, or what another attribute or text says.
  std::string AnyValue() {
    switch (Below(6)) {
      case 0:
        return Any(AllWords().odd);
      case 1:
        return Any(AllWords().values);
      case 2:
        if (!fTexts.empty()) return At(Any(fTexts)).text;
        break;
      case 3:
        if (OneIn(10)) return std::string(1 + Below(2000), static_cast<char>('a' + Below(26)));
        break;
      default:
        break;
    }
    const auto* const attribute = AnyAttribute();
    return attribute == nullptr ? std::string() : attribute->second;
  }

  void DropAttribute() {
    Node* const node = Attributed();
    if (node == nullptr) return;
    node->attributes.erase(node->attributes.begin() +
                           static_cast<std::ptrdiff_t>(Below(node->attributes.size())));
  }

  // Twice the same name is not well-formed: mostly another one is added, which the element may not know.
  void AddAttribute() {
    const std::string name = Any(AllWords().attributes);
    Node& node = AnyElement();
    const auto isSame = [&name](const auto& attribute) { return attribute.first == name; };
    if (std::none_of(node.attributes.begin(), node.attributes.end(), isSame) || OneIn(50))
      node.attributes.emplace_back(name, AnyValue());
  }

  void DoubleAttribute() {
    const auto* const attribute = AnyAttribute();
    if (attribute == nullptr) return;
    const auto copy = *attribute;
    Node& node = AnyElement();
    const auto held = std::find_if(node.attributes.begin(), node.attributes.end(),
                                   [&copy](const auto& other) { return other.first == copy.first; });
    if (held == node.attributes.end()) {
      node.attributes.push_back(copy);
    } else {
      held->second = copy.second;
    }
  }

  void RenameAttribute() {
    auto* const attribute = AnyAttribute();
    if (attribute != nullptr) attribute->first = Any(AllWords().attributes);
  }

  void SetValue() {
    std::string value = AnyValue();
    auto* const attribute = AnyAttribute();
    if (attribute != nullptr) attribute->second = std::move(value);
  }

  void SetText() {
    std::string text = AnyValue();
    if (!fTexts.empty() && !OneIn(8)) {
      Node& node = At(Any(fTexts));
      node.text = OneIn(3) ? node.text + " " + text : text;
      return;
    }
    Node node;
    node.text = std::move(text);
    if (!node.text.empty()) Insert(AnyElement(), std::move(node));
  }

  // Another digit, a sign, a shift of the point.
  void TweakNumber() {
    std::string* text = nullptr;
    if (!fTexts.empty() && OneIn(3)) {
      text = &At(Any(fTexts)).text;
    } else if (auto* const attribute = AnyAttribute()) {
      text = &attribute->second;
    }
    if (text == nullptr) return;
    const std::size_t at = text->find_first_of("0123456789");
    if (at == std::string::npos) return;
    static constexpr const char* kInserted[] = {"-", "0", "9", ".", "e", "1e", "00000000"};
    if (OneIn(2)) {
      (*text)[at] = static_cast<char>('0' + Below(10));
    } else {
      text->insert(at, Any(kInserted));
    }
  }

  Node& fTop;
  std::minstd_rand fRandom;
  std::vector<Place> fElements;
  std::vector<Place> fTexts;
};

// What does not fit is cut: the next reading closes what is open.
std::size_t Return(const std::string& document, std::uint8_t* data, std::size_t maximalSize) {
  const std::size_t size = std::min(document.size(), maximalSize);
  std::memcpy(data, document.data(), size);
  return size;
}

std::string_view AsText(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

}  // namespace

std::string MutateDocument(std::string_view document, unsigned seed) {
  Node top = ParseTree(document);
  Mutation(top, seed).Run();
  return Serialise(top);
}

std::string CrossDocuments(std::string_view document, std::string_view other, unsigned seed) {
  Node top = ParseTree(document);
  Mutation mutation(top, seed);
  mutation.Graft(ParseTree(other));
  if (seed % 2 == 0) mutation.Run();
  return Serialise(top);
}

}  // namespace VeyraFuzz

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maximalSize,
                                               unsigned seed) {
  if (seed % 16 == 0) return LLVMFuzzerMutate(data, size, maximalSize);
  return VeyraFuzz::Return(VeyraFuzz::MutateDocument(VeyraFuzz::AsText(data, size), seed), data, maximalSize);
}

extern "C" std::size_t LLVMFuzzerCustomCrossOver(const std::uint8_t* data1, std::size_t size1,
                                                 const std::uint8_t* data2, std::size_t size2,
                                                 std::uint8_t* out, std::size_t maximalSize, unsigned seed) {
  const auto document =
      VeyraFuzz::CrossDocuments(VeyraFuzz::AsText(data1, size1), VeyraFuzz::AsText(data2, size2), seed);
  return VeyraFuzz::Return(document, out, maximalSize);
}
