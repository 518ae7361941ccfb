// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/KeyTable_p.h>
#include <QuorvelKit/JSON/NumberParser_p.h>
#include <QuorvelKit/JSON/Parser_p.h>
#include <QuorvelKit/JSON/StringParser_p.h>
#include <QuorvelKit/JSON/ValueCore_p.h>

#include <algorithm>
#include <array>
#include <memory>
#include <tuple>
#include <utility>
#include <vector>

namespace quorvelkit::detail {

namespace {

// Values wait on a stack until the container around them closes; then they move into the document
// together. So children are contiguous, and nothing recurs.
//
// The steps take the place where they begin and give the one behind what they read, or null after
// a failure. (A member that held the place would be written to memory at every one.) Few ask
// whether they are at the end: the 0 behind the bytes is nothing that may stand in a document.
class Parser {
 public:
  explicit Parser(const Data& bytes) : begin_(bytes.data()), end_(begin_ + bytes.size()) {
    *frame_ = {};  // Of the document.
  }

  std::optional<Value> run(std::string& problem);

 private:
  struct Frame {
    std::size_t firstChild;
    std::uint64_t keysSeen;  // the bits of the keys
    Label label;             // of the container itself
    char end;
    bool isMap;
    bool repeatsKey;
  };

  bool document();
  // A scalar, an empty container or what opens another one, and what closes behind it, up to the
  // next key or value or the end of the document.
  const char* value(const char* p);
  const char* afterValue(const char* p);
  const char* open(const char* p, bool isMap);
  const char* close(const char* p);
  const char* key(const char* p);
  std::pair<KeyTable::Entry*, const char*> otherKey(const char* p);
  void lookForRepeated(const KeyTable::Entry& key) noexcept;
  const char* number(const char* p);
  const char* stringValue(const char* p);
  const char* word(const char* p, std::string_view text, ValueTag tag);
  void push(std::uint64_t payload, ValueTag tag) {
    pending_.push(Node::make(payload, tag, label_));
  }
  std::size_t membersSoFar() const noexcept { return pending_.size() - frame_->firstChild; }
  void makeRoom(const char* p, std::size_t count);
  void dropRepeatedKeys(std::size_t first);
  void appendIndex(std::uint32_t first, std::uint32_t count);

  static const char* skipSpace(const char* p) noexcept {
    while (static_cast<unsigned char>(*p) <= ' ' &&
           (*p == ' ' || *p == '\n' || *p == '\r' || *p == '\t'))
      ++p;
    return p;
  }
  const char* fail(const char* p, const char* problem) noexcept {
    failedAt_ = p;
    problem_ = problem;
    return nullptr;
  }

  const char* const begin_;
  const char* const end_;
  const char* failedAt_ = begin_;
  const char* problem_ = "";
  std::unique_ptr<Document> document_ = std::make_unique<Document>();
  KeyTable keys_{*document_};
  Run<Node> pending_;
  std::array<Frame, deepestNesting + 1> frames_;
  Frame* frame_ = frames_.data();
  Label label_;  // Of the value to come; empty in arrays.
};

std::optional<Value> Parser::run(std::string& problem) {
  const std::size_t rest = MemoryBudget::rest();
  MemoryBudget::take(sizeof(Document));
  if (document()) {
    document_->root = static_cast<std::uint32_t>(document_->nodes.size());
    document_->nodes.push(pending_[0]);
    document_->nodes.fit();
    document_->text.fit();
    document_->keys.fit();
    document_->order.fit();
    MemoryBudget::restore(rest, document_->bytes());
    return ValueCore::take(document_.release());
  }
  MemoryBudget::restore(rest, 0);
  problem = std::string(problem_) + " at byte " + std::to_string(failedAt_ - begin_);
  return std::nullopt;
}

bool Parser::document() {
  // Places in a document have 32 bits, and no byte makes more than one of them.
  if (static_cast<std::size_t>(end_ - begin_) >= UINT32_MAX) {
    return fail(begin_, "Document too large") != nullptr;
  }
  const bool hasMark = std::string_view(begin_, end_).starts_with("\xEF\xBB\xBF");
  const char* p = skipSpace(begin_ + (hasMark ? 3 : 0));
  do {
    if (frame_->isMap) p = key(p);
    if (p) p = value(p);
  } while (p && frame_ != frames_.data());
  if (p && p != end_) p = fail(p, "Unexpected character behind the document");
  return p != nullptr;
}

const char* Parser::value(const char* p) {
  switch (*p) {
    case '{':
    case '[':
      p = open(p, *p == '{');
      if (!p || *p != frame_->end) return p;
      p = close(p);
      break;
    case '"': p = stringValue(p); break;
    case 't': p = word(p, "true", ValueTag::true_); break;
    case 'f': p = word(p, "false", ValueTag::false_); break;
    case 'n': p = word(p, "null", ValueTag::null); break;
    default: p = number(p);
  }
  return p ? afterValue(p) : nullptr;
}

const char* Parser::open(const char* p, bool isMap) {
  if (frame_ == &frames_.back()) return fail(p, "Nesting too deep");
  *++frame_ = {pending_.size(), 0, label_, isMap ? '}' : ']', isMap, false};
  label_ = {};
  return skipSpace(p + 1);
}

const char* Parser::afterValue(const char* p) {
  for (;;) {
    p = skipSpace(p);
    if (frame_ == frames_.data()) return p;
    if (*p == ',') return skipSpace(p + 1);
    if (*p != frame_->end) {
      return fail(p, frame_->isMap ? "Expected ',' or '}'" : "Expected ',' or ']'");
    }
    p = close(p);
  }
}

// A key that comes as it was guessed calls nothing.
const char* Parser::key(const char* p) {
  if (*p != '"') return fail(p, "Expected a key");
  ++p;
  KeyTable::Entry* key = keys_.guess(p, end_);
  if (key) {
    p += key->length + 1;
  } else {
    std::tie(key, p) = otherKey(p);
    if (!key) return nullptr;
  }
  keys_.follow(key);
  label_ = key->label;
  if ((frame_->keysSeen & key->bit) != 0) lookForRepeated(*key);
  frame_->keysSeen |= key->bit;
  if (key->place != membersSoFar()) {
    key->place = membersSoFar();
    document_->places.add(key->label.hash(), key->place);
  }
  p = skipSpace(p);
  if (*p != ':') return fail(p, "Expected ':'");
  return skipSpace(p + 1);
}

// Gives the key as well, null after a failure.
[[gnu::noinline]] std::pair<KeyTable::Entry*, const char*> Parser::otherKey(const char* p) {
  Run<char>& text = document_->text;
  const std::size_t start = text.size();
  const StringResult result = parseString(p, end_, text);
  if (result.problem) return {nullptr, fail(result.stop, result.problem)};
  return {keys_.find(start, !result.escaped, membersSoFar()), result.stop};
}

// Large maps find out when they are sorted.
[[gnu::noinline]] void Parser::lookForRepeated(const KeyTable::Entry& key) noexcept {
  const std::size_t members = membersSoFar();
  if (frame_->repeatsKey || members >= Document::indexedMembers) return;
  const Node* const first = pending_.data() + frame_->firstChild;
  frame_->repeatsKey =
      std::any_of(first, first + members, [&](const Node& n) { return n.key() == key.number; });
}

const char* Parser::number(const char* p) {
  ValueBits number;
  const char* const stop = parseNumber(p, end_, number);
  if (!stop) {
    return fail(p, p == end_ ? "Unexpected end" : "Unexpected character or unreadable number");
  }
  push(number.payload, number.tag());
  return stop;
}

const char* Parser::stringValue(const char* p) {
  Run<char>& text = document_->text;
  const std::size_t start = text.size();
  const StringResult result = parseString(p + 1, end_, text);
  if (result.problem) return fail(result.stop, result.problem);
  push(Node::range(start, text.size() - start), ValueTag::frozenText);
  return result.stop;
}

const char* Parser::word(const char* p, std::string_view text, ValueTag tag) {
  if (!std::string_view(p, end_).starts_with(text)) return fail(p, "Unexpected character");
  push(0, tag);
  return p + text.size();
}

const char* Parser::close(const char* p) {
  ++p;
  const Frame& frame = *frame_--;
  const bool large = pending_.size() - frame.firstChild >= Document::indexedMembers;
  if (frame.isMap && (frame.repeatsKey || large)) dropRepeatedKeys(frame.firstChild);

  Run<Node>& nodes = document_->nodes;
  const std::size_t count = pending_.size() - frame.firstChild;
  const std::size_t first = nodes.size();
  if (nodes.room() < count) makeRoom(p, count);
  nodes.append(pending_.data() + frame.firstChild, count);
  pending_.shrinkTo(frame.firstChild);
  if (frame.isMap && count >= Document::indexedMembers) {
    appendIndex(static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(count));
  }
  label_ = frame.label;
  push(Node::range(first, count), frame.isMap ? ValueTag::frozenMap : ValueTag::frozenArray);
  return p;
}

// Once a part of the document is known, what is to come is taken to be like it; so a large one
// finds its room in one step, and hardly more than it needs.
void Parser::makeRoom(const char* p, std::size_t count) {
  const auto read = static_cast<std::size_t>(p - begin_);
  const auto all = static_cast<std::size_t>(end_ - begin_);
  const std::size_t least = document_->nodes.size() + count;
  constexpr std::size_t enough = 1 << 20;
  // What cannot be had is not asked for, unless it is needed.
  const auto reserve = [](auto& run, std::size_t needed, std::size_t expected) {
    const std::size_t most = run.size() + run.room() + MemoryBudget::rest() / sizeof(run[0]) / 2;
    run.reserve(std::max(needed, std::min(expected, most)));
  };
  if (read < std::min(all / 8, enough)) return reserve(document_->nodes, least, 2 * least);
  // By at most so much at a time, should the rest be something else after all.
  constexpr double most = 16;
  const double rest = std::min(1.01 * static_cast<double>(all) / static_cast<double>(read), most);
  const auto expected = [&](std::size_t soFar) {
    return std::max(static_cast<std::size_t>(static_cast<double>(soFar) * rest),
                    soFar + soFar / 64);
  };
  reserve(document_->nodes, least, expected(document_->nodes.size() + pending_.size()));
  reserve(document_->text, 0, expected(document_->text.size()));
}

// Keeps each key's first place and last value.
void Parser::dropRepeatedKeys(std::size_t first) {
  Node* const members = pending_.data() + first;
  const auto count = static_cast<std::uint32_t>(pending_.size() - first);
  const std::size_t scratch = count * sizeof(std::uint32_t) + count / 8;
  MemoryBudget::take(scratch);
  std::vector<std::uint32_t> order(count);
  for (std::uint32_t i = 0; i < count; ++i)
    order[i] = i;
  std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
    return members[a].key() != members[b].key() ? members[a].key() < members[b].key() : a < b;
  });
  std::vector<bool> dropped(count, false);
  for (std::uint32_t i = 0; i < count;) {
    std::uint32_t last = i;
    while (last + 1 < count && members[order[last + 1]].key() == members[order[i]].key())
      ++last;
    members[order[i]] = members[order[last]];
    for (std::uint32_t j = i + 1; j <= last; ++j)
      dropped[order[j]] = true;
    i = last + 1;
  }
  std::uint32_t kept = 0;
  for (std::uint32_t i = 0; i < count; ++i) {
    if (dropped[i]) continue;
    document_->places.add(members[i].hash(), kept);
    members[kept++] = members[i];
  }
  pending_.shrinkTo(first + kept);
  MemoryBudget::giveBack(scratch);
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
              return document_->keyText(members[a].key()) < document_->keyText(members[b].key());
            });
  document_->nodes.push({Node::range(start, count), {}});
}

}  // namespace

std::optional<Value> parseDocument(const Data& bytes, std::string& problem) {
  return Parser(bytes).run(problem);
}

}  // namespace quorvelkit::detail
