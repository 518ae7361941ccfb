// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <nlohmann/json.hpp>
#include <rapidjson/document.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quorvelkit::bench {

/// Values of nlohmann and of RapidJSON with a common interface. Reads of a missing member return
/// null, zero, false or an empty text.
struct NlohmannMember {
  const nlohmann::json* value;

  explicit operator bool() const { return value != nullptr; }
  NlohmannMember member(const char* key) const {
    const auto found = value->find(key);
    return {found == value->end() ? nullptr : &*found};
  }
  double number(const char* key) const { return get<double>(key); }
  std::int64_t integer(const char* key) const { return get<std::int64_t>(key); }
  bool boolean(const char* key) const { return get<bool>(key); }
  std::string text(const char* key) const { return get<std::string>(key); }
  std::vector<std::string> texts(const char* key) const {
    return get<std::vector<std::string>>(key);
  }
  template <class Visit>
  void forEach(const char* key, Visit visit) const {
    for (const nlohmann::json& element : value->at(key))
      visit(NlohmannMember{&element});
  }

 private:
  template <class T>
  T get(const char* key) const {
    const NlohmannMember found = member(key);
    return found ? found.value->get<T>() : T();
  }
};

struct RapidMember {
  const rapidjson::Value* value;

  explicit operator bool() const { return value != nullptr; }
  RapidMember member(const char* key) const {
    const auto found = value->FindMember(key);
    return {found == value->MemberEnd() ? nullptr : &found->value};
  }
  double number(const char* key) const {
    const RapidMember found = member(key);
    return found ? found.value->GetDouble() : 0;
  }
  std::int64_t integer(const char* key) const {
    const RapidMember found = member(key);
    return found ? found.value->GetInt64() : 0;
  }
  bool boolean(const char* key) const {
    const RapidMember found = member(key);
    return found && found.value->GetBool();
  }
  std::string text(const char* key) const {
    const RapidMember found = member(key);
    return found ? textOf(*found.value) : std::string();
  }
  std::vector<std::string> texts(const char* key) const {
    std::vector<std::string> all;
    if (const RapidMember found = member(key)) {
      for (const auto& element : found.value->GetArray())
        all.push_back(textOf(element));
    }
    return all;
  }
  template <class Visit>
  void forEach(const char* key, Visit visit) const {
    for (const auto& element : (*value)[key].GetArray())
      visit(RapidMember{&element});
  }

 private:
  static std::string textOf(const rapidjson::Value& value) {
    return std::string(value.GetString(), value.GetStringLength());
  }
};

/// Parses with the precision and the UTF-8 validation of the other libraries. Throws on failure.
void parseRapid(rapidjson::Document& document, std::string_view bytes);

}  // namespace quorvelkit::bench
