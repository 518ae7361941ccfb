// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/NumberText_p.h>
#include <QuorvelKit/JSON/ValueCore_p.h>
#include <QuorvelKit/JSON/Writer_p.h>
#include <QuorvelPlatform/UTF8.h>

#include <algorithm>
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

  bool write(const ValueView& value);

 private:
  struct Frame {
    ValueView container;
    std::size_t size;
    std::size_t next;
    std::vector<std::size_t> order;  // of the members, when they are sorted
  };

  void open(const ValueView& container);
  void close();
  bool child(Frame& frame, ValueView& value);
  bool scalar(const ValueView& value);
  bool text(std::string_view text);
  void newLine() {
    if (pretty_) out_.append(1, '\n').append(frames_.size() * 2, ' ');
  }

  const bool pretty_;
  const bool sorted_;
  std::string& out_;
  std::vector<Frame> frames_;
};

bool Writer::write(const ValueView& value) {
  open(value);
  while (!frames_.empty()) {
    Frame& frame = frames_.back();
    if (frame.next == frame.size) {
      close();
      continue;
    }
    if (frame.next != 0) out_ += ',';
    newLine();
    ValueView next;
    if (!child(frame, next)) return false;
    if (ValueCore::isArray(next) || ValueCore::isMap(next)) {
      open(next);
    } else if (!scalar(next)) {
      return false;
    }
  }
  return true;
}

void Writer::open(const ValueView& container) {
  out_ += ValueCore::isMap(container) ? '{' : '[';
  Frame frame{container, container.size(), 0, {}};
  if (sorted_ && ValueCore::isMap(container)) {
    frame.order.resize(frame.size);
    std::iota(frame.order.begin(), frame.order.end(), std::size_t{0});
    std::sort(frame.order.begin(), frame.order.end(), [&](std::size_t a, std::size_t b) {
      return container.memberAt(a).first < container.memberAt(b).first;
    });
  }
  frames_.push_back(std::move(frame));
}

void Writer::close() {
  const bool isMap = ValueCore::isMap(frames_.back().container);
  const bool empty = frames_.back().size == 0;
  frames_.pop_back();
  if (!empty) newLine();
  out_ += isMap ? '}' : ']';
}

// Writes the key of the next child, when it has one, and gives its value.
bool Writer::child(Frame& frame, ValueView& value) {
  const std::size_t i = frame.next++;
  if (ValueCore::isArray(frame.container)) {
    value = frame.container.element(i);
    return true;
  }
  const auto [key, member] = frame.container.memberAt(frame.order.empty() ? i : frame.order[i]);
  if (!text(key)) return false;
  out_ += pretty_ ? ": " : ":";
  value = member;
  return true;
}

bool Writer::scalar(const ValueView& value) {
  switch (value.kind()) {
    case ValueView::Kind::null: out_ += "null"; return true;
    case ValueView::Kind::boolean: out_ += *value.boolean() ? "true" : "false"; return true;
    case ValueView::Kind::text: return text(*value.text());
    case ValueView::Kind::number: {
      const Number number = *value.storedNumber();
      if (!std::isfinite(number.doubleValue())) return false;
      std::visit([&](const auto& stored) { appendText(out_, stored); }, number.value());
      return true;
    }
    default: return false;
  }
}

bool Writer::text(std::string_view text) {
  if (!isUTF8(text)) return false;
  out_ += '"';
  std::size_t plain = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const auto byte = static_cast<unsigned char>(text[i]);
    if (byte >= ' ' && byte != '"' && byte != '\\') continue;
    out_.append(text, plain, i - plain);
    plain = i + 1;
    constexpr std::string_view meanings = "\"\\\b\f\n\r\t";
    constexpr std::string_view letters = "\"\\bfnrt";
    const std::size_t known = meanings.find(text[i]);
    if (known != std::string_view::npos) {
      out_.append(1, '\\').append(1, letters[known]);
    } else {
      constexpr char hex[] = "0123456789abcdef";
      out_.append("\\u00").append(1, hex[byte >> 4U]).append(1, hex[byte & 0xFU]);
    }
  }
  out_.append(text, plain);
  out_ += '"';
  return true;
}

}  // namespace

bool writeDocument(const ValueView& value, JSONWritingOptions options, std::string& out) {
  return Writer(options, out).write(value);
}

}  // namespace quorvelkit::detail
