#include "project/node_reader.h"

#include <algorithm>

#include "base/wire_text.h"
#include "project/notation.h"

namespace kelvo {
namespace {

using Type = JsonNode::Type;

const char* Expected(Type type) {
  switch (type) {
    case Type::Bool:
      return "true oder false";
    case Type::Whole:
      return "eine ganze Zahl";
    case Type::Real:
      return "eine Zahl";
    case Type::String:
      return "ein Text in Anführungszeichen";
    case Type::Array:
      return "eine Liste in [ ]";
    case Type::Object:
      return "etwas in { }";
    case Type::Null:
      break;
  }
  return "null";
}

}  // namespace

std::string Within(const std::string& place, const std::string& part) {
  return place.empty() ? part : place + ", " + part;
}

void NodeReader::Allow(std::initializer_list<std::string_view> names) const {
  MustBe(Type::Object);
  for (std::size_t i = 0; i < node_->names.size(); ++i) {
    const std::string& name = node_->names[i];
    if (std::find(names.begin(), names.end(), name) != names.end()) continue;
    NodeReader(node_->items[i], place_).Fail("„" + name + "“ ist hier nicht bekannt.");
  }
}

NodeReader NodeReader::Member(std::string_view name) const {
  if (auto member = MemberIf(name)) return *std::move(member);
  Fail("„" + std::string(name) + "“ fehlt.");
}

std::optional<NodeReader> NodeReader::MemberIf(std::string_view name) const {
  MustBe(Type::Object);
  const JsonNode* const member = node_->Find(name);
  if (member == nullptr) return std::nullopt;
  return NodeReader(*member, Within(place_, std::string(name)));
}

NodeReader NodeReader::Item(std::size_t index, std::string_view noun) const {
  return {node_->items[index], Within(place_, std::string(noun) + " " + std::to_string(index + 1))};
}

void NodeReader::MustBe(Type type) const {
  if (node_->type != type) Fail(std::string("Hier muss ") + Expected(type) + " stehen.");
}

std::size_t NodeReader::Count() const {
  MustBe(Type::Array);
  return node_->items.size();
}

std::int64_t NodeReader::Whole() const {
  MustBe(Type::Whole);
  return node_->whole;
}

int NodeReader::Int(int least, int most) const {
  const std::int64_t number = Whole();
  if (number < least || number > most) {
    Fail("Hier geht es von " + std::to_string(least) + " bis " + std::to_string(most) + ".");
  }
  return static_cast<int>(number);
}

bool NodeReader::YesNo() const {
  MustBe(Type::Bool);
  return node_->yes;
}

std::string NodeReader::Text() const {
  MustBe(Type::String);
  auto text = PlainNotation(node_->text);
  if (!text) Fail("Hinter \\ steht weder e noch x mit zwei Ziffern 0-9, A-F noch ein zweites \\.");
  return *std::move(text);
}

std::string NodeReader::Wire() const {
  auto wire = WireText(Text());
  if (!wire) Fail("Hier steht ein Zeichen, das ein Terminal nicht kennt.");
  return *std::move(wire);
}

}  // namespace kelvo
