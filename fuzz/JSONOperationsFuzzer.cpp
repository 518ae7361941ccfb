// SPDX-License-Identifier: Apache-2.0
#include <fuzzer/FuzzedDataProvider.h>
#include <tests/support/JSONOracle.h>

#include <cstdlib>
#include <vector>

using namespace quorvelkit;

namespace {

Oracle::json_pointer pointerTo(const std::vector<JSONKey>& path) {
  Oracle::json_pointer pointer;
  for (const JSONKey& step : path)
    pointer /= step.kind() == JSONKey::Case::key ? step.key() : std::to_string(step.index());
  return pointer;
}

void write(Oracle& value, const std::vector<JSONKey>& path, const Oracle& object) {
  if (path.empty()) return;
  const auto end = pointerTo(path), container = end.parent_pointer();
  const bool isMember = path.back().kind() == JSONKey::Case::key && value.contains(container) &&
                        value[container].is_object();
  if (isMember || value.contains(end)) value[end] = object;
}

}  // namespace

// Input: a program of reads and writes. Runs it on JSON values that share data, and on models that
// share nothing. The results must be equal.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  FuzzedDataProvider input(bytes, size);
  const std::string start = R"({"a":{"b":[1,2,{"a":3}],"c":"x"},"b":[[],{},[4]],"c":null})";
  std::vector<JSON> values(3, JSON::parse(start));
  std::vector<Oracle> models(3, Oracle::parse(start));
  while (input.remaining_bytes() > 0) {
    const std::size_t target = input.ConsumeIntegralInRange<std::size_t>(0, 2);
    const std::size_t source = input.ConsumeIntegralInRange<std::size_t>(0, 2);
    std::vector<JSONKey> path;
    for (int i = input.ConsumeIntegralInRange(0, 4); i > 0; --i) {
      const int step = input.ConsumeIntegralInRange(0, 6);
      path.push_back(step < 3 ? JSONKey(step)
                              : JSONKey(std::string(1, static_cast<char>('a' + step - 3))));
    }
    JSON read = values[source];
    for (const JSONKey& step : path)
      read = read[step];
    const bool exists = models[source].contains(pointerTo(path));
    if (read.error().has_value() == exists) std::abort();
    const Oracle object = exists ? models[source][pointerTo(path)] : Oracle();
    if (read != fromOracle(object) || values[source][path] != read) std::abort();
    if (object.dump().size() > 2000) break;
    switch (input.ConsumeIntegralInRange(0, 3)) {
      case 0:
        values[target] = read.object();
        models[target] = object;
        break;
      case 1:
        values[target].set(path, 7);
        write(models[target], path, 7);
        break;
      default:
        std::vector<JSONKey> destination(
            path.begin(), path.begin() + static_cast<std::ptrdiff_t>(path.size() / 2));
        destination.emplace_back("d");
        values[target].set(destination, read);
        write(models[target], destination, object);
    }
    if (values[target] != fromOracle(models[target])) std::abort();
    if (models[target].dump().size() > 4000) break;
  }
  // No write has changed a copy.
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (values[i] != fromOracle(models[i])) std::abort();
  }
  return 0;
}
