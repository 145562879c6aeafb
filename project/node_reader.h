#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "project/json_tree.h"

namespace kelvo {

/// What is not understood of a tree, and where.
struct NodeFault {
  std::size_t offset;
  std::string place;
  std::string reason;
};

/// A value of the tree with the words for its place. What is not as it must be throws NodeFault.
class NodeReader {
 public:
  NodeReader(const JsonNode& node, std::string place) : node_(&node), place_(std::move(place)) {}

  const JsonNode& Node() const { return *node_; }
  const std::string& Place() const { return place_; }
  [[noreturn]] void Fail(const std::string& reason) const {
    throw NodeFault{node_->offset, place_, reason};
  }
  /// Only these members may be there.
  void Allow(std::initializer_list<std::string_view> names) const;

  /// Fails where it is not there.
  NodeReader Member(std::string_view name) const;
  std::optional<NodeReader> MemberIf(std::string_view name) const;
  /// An item of an array, by its words: "Befehl" gives "Befehl 3" for the third one.
  NodeReader Item(std::size_t index, std::string_view noun) const;

  void MustBe(JsonNode::Type type) const;
  std::size_t Count() const;  ///< of an array
  std::int64_t Whole() const;
  int Int(int least, int most) const;
  bool YesNo() const;
  /// A string's plain text, UTF-8.
  std::string Text() const;
  /// The same of characters that can go on the wire, as a wire text.
  std::string Wire() const;

 private:
  const JsonNode* node_;
  std::string place_;
};

/// Places go from the whole to the part: "Makro 7, Inhalt".
std::string Within(const std::string& place, const std::string& part);

}  // namespace kelvo
