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

/// Base class of all models and responses. Stores the JSON of the object; most properties are read
/// from it on each call.
///
/// Models are values. Copies share one document, so copying is cheap. Several threads may read one
/// model at the same time.
class QUORVELKIT_EXPORT QVBaseObject {
 public:
  /// Stores the JSON of an object in an answer.
  explicit QVBaseObject(std::optional<JSON> json);
  virtual ~QVBaseObject();

  /// The JSON of the object. Absent if there is none.
  virtual const std::optional<JSON>& json() const;
  /// Models that were made from the previous JSON do not change.
  virtual void setJSON(std::optional<JSON> json);

  /// Returns the untyped value of a member: null if the member is missing, nullopt if the object
  /// has no JSON. All properties are read through this function, so an override affects them all,
  /// except objects and locations inside this object, which are read from json().
  virtual std::optional<Value> getValue(const KeyView& key) const;

 protected:
  // Protected against slicing.
  QVBaseObject(const QVBaseObject&) = default;
  QVBaseObject(QVBaseObject&&) noexcept = default;
  QVBaseObject& operator=(const QVBaseObject&) = default;
  QVBaseObject& operator=(QVBaseObject&&) noexcept = default;

  /// Returns the member as a T, or nullopt if it is missing or has another type (see strictRead).
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
  /// Returns the case whose raw value is the member's text, or E::unknown.
  template <RawRepresentable E>
  E readCase(const KeyView& key) const {
    const auto value = getValue(key);
    const auto text = value ? value->text() : std::nullopt;
    return text ? fromRawValue<E>(*text).value_or(E::unknown) : E::unknown;
  }
  /// Returns the JSON of a child model, or nullopt if the member is missing or null.
  std::optional<JSON> child(const KeyView& key) const;
  /// Returns one model for each element of an array, in order; empty if the member is not an array.
  /// While a call makes its response, the models count as part of its document
  /// (URLSessionConfiguration::maximumDocumentSize).
  template <class Model>
  std::vector<Model> children(const KeyView& key) const {
    std::vector<Model> models;
    const auto& own = json();
    const auto list = own ? own->view().member(key) : std::nullopt;
    if (!list || list->kind() != ValueView::Kind::array) return models;
    const std::size_t count = list->size();
    detail::MemoryBudget::consume(count * sizeof(Model));
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
