// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/NumberText_p.h>
#include <QuorvelKit/JSON/UnescapedText_p.h>
#include <QuorvelKit/JSON/ValueAccess_p.h>
#include <QuorvelKit/JSON/Writer_p.h>
#include <QuorvelPlatform/UTF8.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>
#include <vector>

namespace quorvelkit::detail {

namespace {

class Writer {
 public:
  Writer(JSONWritingOptions options, std::string& out)
      : pretty_(contains(options, JSONWritingOptions::prettyPrinted)),
        sorted_(contains(options, JSONWritingOptions::sortedKeys)),
        out_(out) {}

  // Views are passed by value, in two registers.
  bool write(ValueView value);

 private:
  struct Frame {
    ValueView container;
    bool isMap;
    std::size_t size;
    std::size_t next;
    std::vector<std::size_t> order;  // positions of the members, if the keys are sorted
  };

  void open(ValueView container);
  void close();
  bool member(const Frame& frame, std::size_t i);
  bool child(ValueView value);
  bool number(ValueView value);
  bool text(std::string_view text);
  void escape(char character);
  void newLine() {
    if (pretty_) out_.append(1, '\n').append(frames_.size() * 2, ' ');
  }

  const bool pretty_;
  const bool sorted_;
  std::string& out_;
  std::vector<Frame> frames_;
};

bool Writer::write(ValueView value) {
  open(value);
  while (!frames_.empty()) {
    Frame& frame = frames_.back();
    if (frame.next == frame.size) {
      close();
      continue;
    }
    if (frame.next != 0) out_ += ',';
    newLine();
    const std::size_t i = frame.next++;
    if (!(frame.isMap ? member(frame, i) : child(frame.container.element(i)))) return false;
  }
  return true;
}

void Writer::open(ValueView container) {
  Frame frame{container, ValueAccess::isMap(container), container.size(), 0, {}};
  out_ += frame.isMap ? '{' : '[';
  if (sorted_ && frame.isMap) {
    frame.order.resize(frame.size);
    std::iota(frame.order.begin(), frame.order.end(), std::size_t{0});
    std::sort(frame.order.begin(), frame.order.end(), [&](std::size_t a, std::size_t b) {
      return container.memberAt(a).first < container.memberAt(b).first;
    });
  }
  frames_.push_back(std::move(frame));
}

void Writer::close() {
  const bool isMap = frames_.back().isMap;
  const bool empty = frames_.back().size == 0;
  frames_.pop_back();
  if (!empty) newLine();
  out_ += isMap ? '}' : ']';
}

// The following functions return false if the value cannot be written.
bool Writer::member(const Frame& frame, std::size_t i) {
  const auto [key, value] = frame.container.memberAt(frame.order.empty() ? i : frame.order[i]);
  if (!text(key)) return false;
  out_ += pretty_ ? ": " : ":";
  return child(value);
}

// Opens a container; writes any other value.
bool Writer::child(ValueView value) {
  switch (value.kind()) {
    case ValueView::Kind::null: out_ += "null"; return true;
    case ValueView::Kind::boolean: out_ += *value.boolean() ? "true" : "false"; return true;
    case ValueView::Kind::text: return text(*value.text());
    case ValueView::Kind::number: return number(value);
    case ValueView::Kind::array:
    case ValueView::Kind::map: open(value); return true;
    default: return false;
  }
}

bool Writer::number(ValueView value) {
  const ValueBits& bits = ValueAccess::bits(value);
  switch (bits.tag()) {
    case ValueTag::int64: appendText(out_, static_cast<std::int64_t>(bits.payload)); return true;
    case ValueTag::uint64: appendText(out_, bits.payload); return true;
    case ValueTag::float64: {
      const auto number = std::bit_cast<double>(bits.payload);
      appendText(out_, number);
      return std::isfinite(number);
    }
    default: {
      const Decimal& decimal = ValueAccess::cell<DecimalCell>(value).decimal;
      appendText(out_, decimal);
      return !decimal.isNotANumber();
    }
  }
}

bool Writer::text(std::string_view text) {
  const char* p = text.data();
  const char* const end = p + text.size();
  out_ += '"';
  for (;;) {
    std::uint64_t nonASCII = 0;
    const char* const stop = endOfUnescaped(p, end, nonASCII);
    const std::string_view unescaped(p, stop);
    if (nonASCII != 0 && !isUTF8(unescaped)) return false;
    out_ += unescaped;
    if (stop == end) break;
    escape(*stop);
    p = stop + 1;
  }
  out_ += '"';
  return true;
}

void Writer::escape(char character) {
  constexpr std::string_view characters = "\"\\\b\f\n\r\t";
  constexpr std::string_view letters = "\"\\bfnrt";
  const std::size_t letter = characters.find(character);
  if (letter != std::string_view::npos) {
    out_.append(1, '\\').append(1, letters[letter]);
  } else {
    constexpr char hex[] = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(character);
    out_.append("\\u00").append(1, hex[byte >> 4U]).append(1, hex[byte & 0xFU]);
  }
}

}  // namespace

bool writeDocument(const ValueView& value, JSONWritingOptions options, std::string& out) {
  return Writer(options, out).write(value);
}

}  // namespace quorvelkit::detail
