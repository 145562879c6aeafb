#include "project/json_tree.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

#include "project/notation.h"

namespace kelvo {
namespace {

using Json = nlohmann::json;
using Type = JsonNode::Type;

constexpr std::size_t kMostMembers = 100;
constexpr std::size_t kValuesAtATime = 20'000;  // values between two looks at the progress
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// Hands the characters on and tells how many.
class CountingIterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = char;
  using difference_type = std::ptrdiff_t;
  using pointer = const char*;
  using reference = const char&;

  CountingIterator(const char* at, std::size_t* read) : at_(at), read_(read) {}
  reference operator*() const { return *at_; }
  CountingIterator& operator++() {
    ++at_;
    ++*read_;
    return *this;
  }
  bool operator==(const CountingIterator& other) const { return at_ == other.at_; }
  bool operator!=(const CountingIterator& other) const { return at_ != other.at_; }

 private:
  const char* at_;
  std::size_t* read_;
};

struct Reason {
  std::string_view words;  // of the library
  const char* german;
};
constexpr Reason kReasons[] = {
    {"unexpected end of input", "Die Datei endet mittendrin."},
    {"missing closing quote", "Ein Text ist nicht mit \" abgeschlossen."},
    {"control character", "Ein Steuerzeichen steht im Text; es ist als \\\\x.. zu schreiben."},
    {"forbidden character after backslash",
     "Hinter \\ steht, was dort nicht stehen darf; der umgekehrte Schrägstrich ist als \\\\ zu "
     "schreiben."},
    {"\\u", "\\u bezeichnet hier kein Zeichen."},
    {"surrogate", "\\u bezeichnet hier kein Zeichen."},
    {"number overflow", "Die Zahl ist zu groß."},
    {"invalid number", "Das ist keine gültige Zahl."},
    {"invalid literal", "Das ist weder Text noch Zahl noch true, false oder null."},
    {"expected end of input", "Hinter dem Ende steht noch etwas."}};

std::string GermanReason(std::string_view what) {
  for (const auto& [words, german] : kReasons) {
    if (what.find(words) != std::string_view::npos) return german;
  }
  return "Hier ist etwas anderes zu erwarten: ein Komma, ein Doppelpunkt, eine Klammer oder ein "
         "Anführungszeichen fehlt oder ist zu viel.";
}

// Builds the tree from what the parser meets.
class TreeBuilder : public nlohmann::json_sax<Json> {
 public:
  TreeBuilder(std::string_view text, const std::size_t& read, const ProjectProgress& progress)
      : text_(text), read_(read), progress_(progress) {}

  bool null() override { return Scalar({}); }
  bool boolean(bool yes) override {
    JsonNode node;
    node.type = Type::Bool;
    node.yes = yes;
    return Scalar(std::move(node));
  }
  bool number_integer(number_integer_t number) override { return Whole(number); }
  bool number_unsigned(number_unsigned_t number) override {
    if (number > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) {
      return TooLarge();
    }
    return Whole(static_cast<std::int64_t>(number));
  }
  // A whole number that is beyond all bounds comes here, too.
  bool number_float(number_float_t number, const string_t& digits) override {
    if (digits.find_first_of(".eE") == std::string::npos) return TooLarge();
    JsonNode node;
    node.type = Type::Real;
    node.real = number;
    return Number(std::move(node));
  }
  bool string(string_t& text) override {
    JsonNode node;
    node.type = Type::String;
    node.text = std::move(text);
    return Scalar(std::move(node));
  }
  bool binary(binary_t& /*bytes*/) override { return false; }
  bool start_object(std::size_t /*size*/) override { return Open(Type::Object); }
  bool start_array(std::size_t /*size*/) override { return Open(Type::Array); }
  bool end_object() override { return Close(); }
  bool end_array() override { return Close(); }
  bool key(string_t& name) override {
    const std::size_t offset = Begin();
    JsonNode& object = *open_.back();
    if (object.Find(name) != nullptr) {
      return Fail(offset, "„" + name + "“ steht hier zum zweiten Mal.");
    }
    if (object.names.size() == kMostMembers) return Fail(offset, "Hier stehen zu viele Felder.");
    object.names.push_back(std::move(name));
    past_ = read_;
    return true;
  }
  bool parse_error(std::size_t /*position*/, const std::string& /*token*/,
                   const nlohmann::detail::exception& error) override {
    const std::string_view what = error.what();
    const bool atEnd = read_ == 0 || what.find("unexpected end of input") != std::string_view::npos;
    return Fail(atEnd ? read_ : read_ - 1, GermanReason(what));
  }

  JsonNode& Root() { return root_; }
  const std::optional<JsonFault>& Fault() const { return fault_; }
  bool WasStopped() const { return stopped_; }

 private:
  bool Fail(std::size_t offset, std::string reason) {
    fault_ = JsonFault{offset, std::move(reason)};
    return false;
  }
  bool TooLarge() { return Fail(Begin(), "Die Zahl ist zu groß."); }
  // Where the value begins that has just been read.
  std::size_t Begin() const {
    return std::min(text_.find_first_not_of(" \t\r\n,:", past_), text_.size());
  }
  bool Whole(std::int64_t number) {
    JsonNode node;
    node.type = Type::Whole;
    node.whole = number;
    return Number(std::move(node));
  }
  // Only the character behind it tells where a number ends.
  bool Number(JsonNode node) {
    node.offset = Begin();
    past_ = std::max(node.offset + 1, read_ - 1);
    return Add(std::move(node)) != nullptr;
  }
  bool Scalar(JsonNode node) {
    node.offset = Begin();
    past_ = read_;
    return Add(std::move(node)) != nullptr;
  }
  bool Open(Type type) {
    JsonNode node;
    node.type = type;
    node.offset = Begin();
    past_ = read_;
    if (open_.size() == kJsonDepth) {
      return Fail(node.offset, "Hier ist zu tief verschachtelt, mehr als " +
                                   std::to_string(kJsonDepth) + " Ebenen.");
    }
    JsonNode* const added = Add(std::move(node));
    if (added != nullptr) open_.push_back(added);
    return added != nullptr;
  }
  bool Close() {
    open_.pop_back();
    past_ = read_;
    return true;
  }
  // Only the last item of each level grows, so the places of the others stay.
  JsonNode* Add(JsonNode node) {
    stopped_ = ++values_ % kValuesAtATime == 0 && progress_ && !progress_(read_, text_.size());
    if (stopped_) return nullptr;
    JsonNode& place = open_.empty() ? root_ : open_.back()->items.emplace_back();
    place = std::move(node);
    return &place;
  }

  std::string_view text_;
  const std::size_t& read_;
  const ProjectProgress& progress_;
  std::size_t past_ = 0;  // behind the last value
  std::size_t values_ = 0;
  JsonNode root_;
  std::vector<JsonNode*> open_;
  std::optional<JsonFault> fault_;
  bool stopped_ = false;
};

}  // namespace

const JsonNode* JsonNode::Find(std::string_view name) const {
  const auto found = std::find(names.begin(), names.end(), name);
  if (found == names.end()) return nullptr;
  const auto index = static_cast<std::size_t>(found - names.begin());
  return index < items.size() ? &items[index] : nullptr;
}

std::variant<JsonNode, JsonFault, JsonStopped> ReadJson(std::string_view text,
                                                        const ProjectProgress& progress) {
  const std::size_t valid = Utf8Length(text);
  if (valid < text.size()) return JsonFault{valid, "Hier steht kein gültiges UTF-8."};
  if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) {
    return JsonFault{0, "Die Datei ist leer."};
  }
  const std::size_t mark = text.starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0;
  std::size_t read = mark;
  TreeBuilder tree(text, read, progress);
  const CountingIterator begin(text.data() + mark, &read);
  const CountingIterator end(text.data() + text.size(), &read);
  const bool whole = Json::sax_parse(begin, end, &tree);
  if (tree.WasStopped()) return JsonStopped{};
  if (tree.Fault()) return *tree.Fault();
  if (!whole) return JsonFault{read, GermanReason({})};
  return std::move(tree.Root());
}

}  // namespace kelvo
