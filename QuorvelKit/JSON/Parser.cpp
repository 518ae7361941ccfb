// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/KeyTable_p.h>
#include <QuorvelKit/JSON/MapMembers_p.h>
#include <QuorvelKit/JSON/NumberParser_p.h>
#include <QuorvelKit/JSON/Parser_p.h>
#include <QuorvelKit/JSON/StringParser_p.h>
#include <QuorvelKit/JSON/ValueAccess_p.h>

#include <algorithm>
#include <array>
#include <memory>
#include <tuple>
#include <utility>

namespace quorvelkit::detail {

namespace {

// Parses a text into a document, without recursion. The nodes of a container wait on a stack until
// the container is closed; then they are appended to the document together, hence contiguous.
//
// The parse functions take the current input position and return the position after what they
// parsed, or null on failure. (As a data member, the position would be written to memory in each
// step.) Most of them do not compare the position with the end: a Data ends with a 0 byte, which is
// not valid anywhere in a JSON text.
class Parser {
 public:
  explicit Parser(const Data& bytes) : begin_(bytes.data()), end_(begin_ + bytes.size()) {
    *frame_ = {};  // The frame of the document itself.
  }

  std::optional<Value> run(std::string& problem);

 private:
  // An open container.
  struct Frame {
    std::size_t firstChild;  // in pending_
    std::uint64_t keyBits;   // the bits of the keys parsed so far
    MemberKey memberKey;     // of the container itself
    char closingCharacter;
    bool isMap;
    bool hasDuplicateKey;
  };

  bool parseAll();
  const char* value(const char* p);
  const char* afterValue(const char* p);
  const char* openContainer(const char* p, bool isMap);
  const char* closeContainer(const char* p);
  const char* key(const char* p);
  std::pair<KeyTable::Entry*, const char*> unpredictedKey(const char* p);
  void noteDuplicateKey(const KeyTable::Entry& key) noexcept;
  const char* string(const char* p);
  const char* number(const char* p);
  const char* literal(const char* p, std::string_view text, ValueTag tag);
  void reserveNodes(const char* p, std::size_t count);

  void push(std::uint64_t payload, ValueTag tag) {
    pending_.push(Node::make(payload, tag, memberKey_));
  }
  std::size_t childCount() const noexcept { return pending_.size() - frame_->firstChild; }
  static const char* skipWhiteSpace(const char* p) noexcept {
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
  GrowingArray<Node> pending_;  // the children of all open containers
  std::array<Frame, maximumNesting + 1> frames_;
  Frame* frame_ = frames_.data();
  MemberKey memberKey_;  // of the next value; empty in arrays
};

std::optional<Value> Parser::run(std::string& problem) {
  const std::size_t budget = MemoryBudget::remaining();
  MemoryBudget::consume(sizeof(Document));
  if (parseAll()) {
    document_->root = static_cast<std::uint32_t>(document_->nodes.size());
    document_->nodes.push(pending_[0]);
    document_->nodes.freeUnusedCapacity();
    document_->stringTable.freeUnusedCapacity();
    document_->keys.freeUnusedCapacity();
    document_->indexes.freeUnusedCapacity();
    MemoryBudget::restore(budget, document_->memorySize());
    return ValueAccess::fromDocument(document_.release());
  }
  MemoryBudget::restore(budget, 0);
  problem = std::string(problem_) + " at byte " + std::to_string(failedAt_ - begin_);
  return std::nullopt;
}

bool Parser::parseAll() {
  // Offsets and node numbers have 32 bits, and each byte makes at most one of them.
  if (static_cast<std::size_t>(end_ - begin_) >= UINT32_MAX) {
    return fail(begin_, "Document too large") != nullptr;
  }
  const bool hasByteOrderMark = std::string_view(begin_, end_).starts_with("\xEF\xBB\xBF");
  const char* p = skipWhiteSpace(begin_ + (hasByteOrderMark ? 3 : 0));
  do {
    if (frame_->isMap) p = key(p);
    if (p) p = value(p);
  } while (p && frame_ != frames_.data());
  if (p && p != end_) p = fail(p, "Unexpected character after the document");
  return p != nullptr;
}

// Parses a scalar, a string, an empty container or the opening character of another container;
// then everything up to the next key or value, or to the end of the document.
const char* Parser::value(const char* p) {
  switch (*p) {
    case '{':
    case '[':
      p = openContainer(p, *p == '{');
      if (!p || *p != frame_->closingCharacter) return p;
      p = closeContainer(p);
      break;
    case '"': p = string(p); break;
    case 't': p = literal(p, "true", ValueTag::true_); break;
    case 'f': p = literal(p, "false", ValueTag::false_); break;
    case 'n': p = literal(p, "null", ValueTag::null); break;
    default: p = number(p);
  }
  return p ? afterValue(p) : nullptr;
}

const char* Parser::afterValue(const char* p) {
  for (;;) {
    p = skipWhiteSpace(p);
    if (frame_ == frames_.data()) return p;
    if (*p == ',') return skipWhiteSpace(p + 1);
    if (*p != frame_->closingCharacter) {
      return fail(p, frame_->isMap ? "Expected ',' or '}'" : "Expected ',' or ']'");
    }
    p = closeContainer(p);
  }
}

const char* Parser::openContainer(const char* p, bool isMap) {
  if (frame_ == &frames_.back()) return fail(p, "Nesting too deep");
  *++frame_ = {pending_.size(), 0, memberKey_, isMap ? '}' : ']', isMap, false};
  memberKey_ = {};
  return skipWhiteSpace(p + 1);
}

const char* Parser::closeContainer(const char* p) {
  ++p;
  const Frame& frame = *frame_--;
  const bool large = pending_.size() - frame.firstChild >= Document::largeMapSize;
  if (frame.isMap && (frame.hasDuplicateKey || large)) {
    removeDuplicateKeys(pending_, frame.firstChild, *document_);
  }

  GrowingArray<Node>& nodes = document_->nodes;
  const std::size_t count = pending_.size() - frame.firstChild;
  const std::size_t first = nodes.size();
  if (nodes.unusedCapacity() < count) reserveNodes(p, count);
  nodes.append(pending_.data() + frame.firstChild, count);
  pending_.shrinkTo(frame.firstChild);
  if (frame.isMap && count >= Document::largeMapSize) {
    appendIndex(*document_, static_cast<std::uint32_t>(first), static_cast<std::uint32_t>(count));
  }
  memberKey_ = frame.memberKey;
  push(Node::range(first, count), frame.isMap ? ValueTag::frozenMap : ValueTag::frozenArray);
  return p;
}

// Parses a key and the colon after it. A predicted key needs no function call.
const char* Parser::key(const char* p) {
  if (*p != '"') return fail(p, "Expected a key");
  ++p;
  KeyTable::Entry* key = keys_.predict(p, end_);
  if (key) {
    p += key->length + 1;
  } else {
    std::tie(key, p) = unpredictedKey(p);
    if (!key) return nullptr;
  }
  keys_.advance(key);
  memberKey_ = key->memberKey;
  if ((frame_->keyBits & key->bit) != 0) noteDuplicateKey(*key);
  frame_->keyBits |= key->bit;
  if (key->position != childCount()) {
    key->position = childCount();
    document_->keyPositions.add(key->memberKey.hash(), key->position);
  }
  p = skipWhiteSpace(p);
  if (*p != ':') return fail(p, "Expected ':'");
  return skipWhiteSpace(p + 1);
}

// Returns a null key on failure.
[[gnu::noinline]] std::pair<KeyTable::Entry*, const char*> Parser::unpredictedKey(const char* p) {
  GrowingArray<char>& stringTable = document_->stringTable;
  const std::size_t start = stringTable.size();
  const StringResult result = parseString(p, end_, stringTable);
  if (result.problem) return {nullptr, fail(result.stop, result.problem)};
  return {keys_.intern(start, !result.escaped, childCount()), result.stop};
}

// Called if the map has a key with the same bit. Does nothing in large maps, from which duplicate
// keys are always removed.
[[gnu::noinline]] void Parser::noteDuplicateKey(const KeyTable::Entry& key) noexcept {
  const std::size_t members = childCount();
  if (frame_->hasDuplicateKey || members >= Document::largeMapSize) return;
  const Node* const first = pending_.data() + frame_->firstChild;
  frame_->hasDuplicateKey = std::any_of(
      first, first + members, [&](const Node& node) { return node.key.number == key.number; });
}

const char* Parser::string(const char* p) {
  GrowingArray<char>& stringTable = document_->stringTable;
  const std::size_t start = stringTable.size();
  const StringResult result = parseString(p + 1, end_, stringTable);
  if (result.problem) return fail(result.stop, result.problem);
  push(Node::range(start, stringTable.size() - start), ValueTag::frozenText);
  return result.stop;
}

const char* Parser::number(const char* p) {
  ValueBits number;
  const char* const stop = parseNumber(p, end_, number);
  if (!stop) {
    return fail(p, p == end_ ? "Unexpected end" : "Unexpected character or invalid number");
  }
  push(number.payload, number.tag());
  return stop;
}

const char* Parser::literal(const char* p, std::string_view text, ValueTag tag) {
  if (!std::string_view(p, end_).starts_with(text)) return fail(p, "Unexpected character");
  push(0, tag);
  return p + text.size();
}

// Makes room for `count` more nodes. Once an eighth of the input, or 1 MiB of it, has been parsed,
// estimates the final sizes of the node array and of the string table from it, so that a large
// document is allocated in one step and hardly larger than needed.
void Parser::reserveNodes(const char* p, std::size_t count) {
  constexpr std::size_t largestSample = 1 << 20;
  // The rest of the input may differ from the sample: grow by at most this factor in one step.
  constexpr double maximumGrowth = 16;
  const auto parsed = static_cast<std::size_t>(p - begin_);
  const auto total = static_cast<std::size_t>(end_ - begin_);
  const std::size_t required = document_->nodes.size() + count;
  // Asks for more than required only within half of the remaining memory budget.
  const auto reserve = [](auto& array, std::size_t requiredSize, std::size_t estimatedSize) {
    const std::size_t affordable =
        array.size() + array.unusedCapacity() + MemoryBudget::remaining() / sizeof(array[0]) / 2;
    array.reserve(std::max(requiredSize, std::min(estimatedSize, affordable)));
  };
  if (parsed < std::min(total / 8, largestSample)) {
    return reserve(document_->nodes, required, 2 * required);
  }
  const double growth =
      std::min(1.01 * static_cast<double>(total) / static_cast<double>(parsed), maximumGrowth);
  const auto estimated = [&](std::size_t size) {
    return std::max(static_cast<std::size_t>(static_cast<double>(size) * growth), size + size / 64);
  };
  reserve(document_->nodes, required, estimated(document_->nodes.size() + pending_.size()));
  reserve(document_->stringTable, 0, estimated(document_->stringTable.size()));
}

}  // namespace

std::optional<Value> parseDocument(const Data& bytes, std::string& problem) {
  return Parser(bytes).run(problem);
}

}  // namespace quorvelkit::detail
