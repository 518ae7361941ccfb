// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/JSON/MemoryBudget.h>
#include <QuorvelKit/QVRawValue.h>
#include <QuorvelKit/QVResponseKey.h>
#include <QuorvelKit/QVStrictRead.h>
#include <QuorvelPlatform/Export.h>

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace quorvelkit {

/// The base of all models and responses: keeps the JSON that the object was made of. Models are
/// values and cheap to copy, since copies share one parsed document; most of their properties are
/// read from it each time. Reading one model from several threads at once is safe.
class QUORVELKIT_EXPORT QVBaseObject {
 public:
  explicit QVBaseObject(std::optional<JSON> json);
  virtual ~QVBaseObject();

  virtual const std::optional<JSON>& json() const;
  /// Models that were built of the former JSON stay as they are.
  virtual void setJSON(std::optional<JSON> json);

  /// The untyped value of a member: the null marker when there is no such member, absent when the
  /// object has no JSON. Every property that is read from the JSON is read through this.
  virtual std::optional<Value> getValue(const KeyView& key) const;

 protected:
  // Copying is for whole models: a QVBaseObject by itself would be a slice of one.
  QVBaseObject(const QVBaseObject&) = default;
  QVBaseObject(QVBaseObject&&) noexcept = default;
  QVBaseObject& operator=(const QVBaseObject&) = default;
  QVBaseObject& operator=(QVBaseObject&&) noexcept = default;

  /// The member as a T; absent when it is missing or no T (see strictRead).
  template <class T>
  std::optional<T> read(const KeyView& key) const {
    const auto value = getValue(key);
    if (!value) return std::nullopt;
    if constexpr (std::is_arithmetic_v<T>) {
      const std::optional<T> scalar = strictRead<T>(*value);
      if (!scalar) return std::nullopt;
      return *scalar;
    } else {
      return strictRead<T>(*value);
    }
  }
  template <class T>
  std::optional<T> read(QVResponseKey key) const {
    return read<T>(keyView(key));
  }
  /// The case that the member's text names; E::unknown in every other event.
  template <RawRepresentable E>
  E readCase(const KeyView& key) const {
    const auto value = getValue(key);
    const auto text = value ? value->text() : std::nullopt;
    return text ? fromRawValue<E>(*text).value_or(E::unknown) : E::unknown;
  }
  /// What a child object is made of: the member, unless it is missing or null.
  std::optional<JSON> child(const KeyView& key) const;
  /// A model of each element of the member, in their order; none when it is no list. While a call
  /// makes its response, the models count as part of its document
  /// (URLSessionConfiguration::maximumDocumentSize).
  template <class Model>
  std::vector<Model> children(const KeyView& key) const {
    std::vector<Model> models;
    const auto& own = json();
    const auto list = own ? own->view().member(key) : std::nullopt;
    if (!list || list->kind() != ValueView::Kind::array) return models;
    const std::size_t count = list->size();
    detail::MemoryBudget::take(count * sizeof(Model));
    models.reserve(count);
    preferLargePages(models.data(), count * sizeof(Model));
    for (std::size_t i = 0; i < count; ++i)
      models.emplace_back(JSON(list->element(i)));
    return models;
  }

 private:
  static void preferLargePages(void* block, std::size_t size) noexcept;

  std::optional<JSON> json_;
};

}  // namespace quorvelkit
