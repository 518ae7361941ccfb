// SPDX-License-Identifier: Apache-2.0
// The program whose variables the debugger prints.
#include <QuorvelKit/JSON/JSON.h>

using namespace quorvelkit;

namespace {

// The breakpoint.
[[gnu::noinline]] int stop(const JSON& json) { return static_cast<int>(json.size()); }

}  // namespace

int main() {
  const JSON frozen = JSON::parse(R"({"a":1,"b":[1,-2.5,"x\"\u00e9",[],{},true,null]})");
  JSON changed = frozen;
  changed.set("c", Decimal::parse("-12.50"));
  changed.set({"b", 1}, "a text that is too long for the buffer inside std::string");
  changed.set("d", UINT64_MAX);
  const JSON failed = frozen["x"], unknown = Value::unsupported(1);
  const ValueView view = changed.view().memberOrNull("b").element(2);
  const Value member = frozen["b"].object();
  JSON deep = 1, wide = JSON::makeArray(std::vector<int>(5000, 7));
  for (int i = 0; i < 5000; ++i)
    deep = JSON::makeArray({deep});
  return stop(frozen) == 0 || view.isNull() || member.isNull() ? 1 : 0;
}
