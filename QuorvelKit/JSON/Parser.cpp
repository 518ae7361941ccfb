// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/KeyTable_p.h>
#include <QuorvelKit/JSON/NumberParser_p.h>
#include <QuorvelKit/JSON/Parser_p.h>
#include <QuorvelKit/JSON/StringParser_p.h>
#include <QuorvelKit/JSON/ValueCore_p.h>

#include <algorithm>
#include <array>
#include <memory>
#include <vector>

namespace quorvelkit::detail {

namespace {

// Values wait on a stack until the container around them closes; then they move into the document
// together. So children are contiguous, and nothing recurs.
class Parser {
 public:
  explicit Parser(std::string_view bytes)
      : begin_(bytes.data()), p_(begin_), end_(begin_ + bytes.size()) {}

  std::optional<Value> run(std::string& problem);

 private:
  struct Frame {
    std::size_t firstChild;
    std::uint64_t keysSeen;  // a bit for each key number modulo 64
    std::uint32_t key;       // of the container itself
    bool isMap;
    bool repeatsKey;
  };

  bool document();
  bool value();
  bool open(bool isMap);
  bool close();
  // Goes on behind a complete value, to the next value or the end of the document.
  bool afterValue(bool& done);
  bool key();
  bool stringValue();
  bool word(std::string_view text, ValueTag tag);
  void push(std::uint64_t payload, ValueTag tag) {
    const std::uint32_t hash = inMap() ? keys_.hash(key_) : 0;
    pending_.push({payload, key_, static_cast<std::uint32_t>(tag) | (hash << 8U)});
  }
  bool inMap() const noexcept { return depth_ > 0 && frames_[depth_ - 1].isMap; }
  void dropRepeatedKeys(std::size_t first);
  void appendIndex(std::uint32_t first, std::uint32_t count);

  void skipSpace() noexcept {
    while (p_ != end_ && (*p_ == ' ' || *p_ == '\n' || *p_ == '\r' || *p_ == '\t'))
      ++p_;
  }
  bool at(char c) const noexcept { return p_ != end_ && *p_ == c; }
  bool fail(const char* problem) noexcept {
    problem_ = problem;
    return false;
  }

  const char* const begin_;
  const char* p_;
  const char* const end_;
  const char* problem_ = "";
  std::unique_ptr<Document> document_ = std::make_unique<Document>();
  KeyTable keys_{*document_};
  Run<Node> pending_;
  std::array<Frame, deepestNesting> frames_;
  std::size_t depth_ = 0;
  std::uint32_t key_ = 0;
};

std::optional<Value> Parser::run(std::string& problem) {
  if (document()) {
    document_->root = static_cast<std::uint32_t>(document_->nodes.size());
    document_->nodes.push(pending_[0]);
    document_->nodes.fit();
    document_->text.fit();
    document_->keys.fit();
    document_->order.fit();
    return ValueCore::take(document_.release());
  }
  problem = std::string(problem_) + " at byte " + std::to_string(p_ - begin_);
  return std::nullopt;
}

bool Parser::document() {
  // Places in a document have 32 bits, and no byte makes more than one of them.
  if (static_cast<std::size_t>(end_ - begin_) >= UINT32_MAX) return fail("Document too large");
  if (std::string_view(begin_, end_).starts_with("\xEF\xBB\xBF")) p_ += 3;
  skipSpace();
  for (bool done = false; !done;) {
    if (!value() || !afterValue(done)) return false;
  }
  return p_ == end_ || fail("Unexpected character behind the document");
}

bool Parser::value() {
  for (;;) {
    if (p_ == end_) return fail("Unexpected end");
    switch (*p_) {
      case '{':
        if (!open(true)) return false;
        if (at('}')) return close();
        if (!key()) return false;
        break;
      case '[':
        if (!open(false)) return false;
        if (at(']')) return close();
        break;
      case '"': return stringValue();
      case 't': return word("true", ValueTag::true_);
      case 'f': return word("false", ValueTag::false_);
      case 'n': return word("null", ValueTag::null);
      default: {
        ValueBits number;
        const char* const stop = parseNumber(p_, end_, number);
        if (!stop) return fail("Unexpected character or unreadable number");
        p_ = stop;
        push(number.payload, number.tag());
        return true;
      }
    }
  }
}

bool Parser::open(bool isMap) {
  if (depth_ == deepestNesting) return fail("Nesting too deep");
  frames_[depth_++] = {pending_.size(), 0, key_, isMap, false};
  ++p_;
  skipSpace();
  return true;
}

bool Parser::afterValue(bool& done) {
  for (;;) {
    skipSpace();
    if (depth_ == 0) {
      done = true;
      return true;
    }
    const bool isMap = inMap();
    if (at(',')) {
      ++p_;
      skipSpace();
      return !isMap || key();
    }
    if (!at(isMap ? '}' : ']')) return fail(isMap ? "Expected ',' or '}'" : "Expected ',' or ']'");
    if (!close()) return false;
  }
}

bool Parser::key() {
  if (!at('"')) return fail("Expected a key");
  ++p_;
  if (const auto guess = keys_.guess({p_, end_})) {
    key_ = *guess;
    p_ += keys_.lengthWithMark(key_);
  } else {
    Run<char>& text = document_->text;
    const std::size_t start = text.size();
    const StringResult result = parseString(p_, end_, text);
    if (result.problem) return fail(result.problem);
    key_ = keys_.number(start, !result.escaped);
  }
  keys_.follow(key_);

  Frame& frame = frames_[depth_ - 1];
  const std::uint64_t bit = std::uint64_t{1} << (key_ % 64U);
  if ((frame.keysSeen & bit) != 0 && !frame.repeatsKey) {
    // Large maps find out when they are sorted.
    const std::size_t members = pending_.size() - frame.firstChild;
    const Node* const first = pending_.data() + frame.firstChild;
    frame.repeatsKey =
        members < Document::indexedMembers &&
        std::any_of(first, first + members, [&](const Node& n) { return n.key == key_; });
  }
  frame.keysSeen |= bit;

  skipSpace();
  if (!at(':')) return fail("Expected ':'");
  ++p_;
  skipSpace();
  return true;
}

bool Parser::stringValue() {
  ++p_;
  Run<char>& text = document_->text;
  const std::size_t start = text.size();
  const StringResult result = parseString(p_, end_, text);
  if (result.problem) return fail(result.problem);
  push(Node::range(start, text.size() - start), ValueTag::frozenText);
  return true;
}

bool Parser::word(std::string_view text, ValueTag tag) {
  if (!std::string_view(p_, end_).starts_with(text)) return fail("Unexpected character");
  p_ += text.size();
  push(0, tag);
  return true;
}

bool Parser::close() {
  ++p_;
  const Frame frame = frames_[--depth_];
  const bool large = pending_.size() - frame.firstChild >= Document::indexedMembers;
  if (frame.isMap && (frame.repeatsKey || large)) dropRepeatedKeys(frame.firstChild);

  Run<Node>& nodes = document_->nodes;
  const std::size_t count = pending_.size() - frame.firstChild;
  const std::size_t first = nodes.size();
  if (nodes.size() + count > 0) {
    // What is still to come will most likely look like what has come.
    const double share = static_cast<double>(p_ - begin_) / static_cast<double>(end_ - begin_);
    nodes.reserveMore(
        count, static_cast<std::size_t>(static_cast<double>(nodes.size() + count) / share * 1.05));
  }
  nodes.append(pending_.data() + frame.firstChild, count);
  pending_.shrinkTo(frame.firstChild);
  if (frame.isMap && count >= Document::indexedMembers) {
    appendIndex(static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(count));
  }
  key_ = frame.key;
  push(Node::range(first, count), frame.isMap ? ValueTag::frozenMap : ValueTag::frozenArray);
  return true;
}

// Keeps each key's first place and last value.
void Parser::dropRepeatedKeys(std::size_t first) {
  Node* const members = pending_.data() + first;
  const auto count = static_cast<std::uint32_t>(pending_.size() - first);
  std::vector<std::uint32_t> order(count);
  for (std::uint32_t i = 0; i < count; ++i)
    order[i] = i;
  std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    return members[a].key != members[b].key ? members[a].key < members[b].key : a < b;
  });
  std::vector<bool> dropped(count, false);
  for (std::uint32_t i = 0; i < count;) {
    std::uint32_t last = i;
    while (last + 1 < count && members[order[last + 1]].key == members[order[i]].key)
      ++last;
    members[order[i]] = members[order[last]];
    for (std::uint32_t j = i + 1; j <= last; ++j)
      dropped[order[j]] = true;
    i = last + 1;
  }
  std::uint32_t kept = 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (!dropped[i]) members[kept++] = members[i];
  }
  pending_.shrinkTo(first + kept);
}

void Parser::appendIndex(std::uint32_t first, std::uint32_t count) {
  Run<std::uint32_t>& order = document_->order;
  const std::size_t start = order.size();
  order.reserveMore(count);
  for (std::uint32_t i = 0; i < count; ++i)
    order.push(i);
  const Node* const members = document_->nodes.data() + first;
  std::sort(order.data() + start, order.data() + start + count,
            [&](std::uint32_t a, std::uint32_t b) {
              if (members[a].hash() != members[b].hash())
                return members[a].hash() < members[b].hash();
              return document_->keyText(members[a].key) < document_->keyText(members[b].key);
            });
  document_->nodes.push({Node::range(start, count), 0, 0});
}

}  // namespace

std::optional<Value> parseDocument(std::string_view bytes, std::string& problem) {
  return Parser(bytes).run(problem);
}

}  // namespace quorvelkit::detail
