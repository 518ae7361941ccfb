// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QUrl>
#include <map>

namespace quorvelkit {

/// A Mapbox style of version 8 that can be given to the engine.
class StyleDocument {
 public:
  StyleDocument() = default;
  explicit StyleDocument(const QByteArray& text);

  /// Why it cannot be used; empty when it can.
  QString flaw() const { return flaw_; }
  /// The sources that a document of their own (TileJSON) describes, by name.
  std::map<QString, QUrl> descriptions() const;
  /// Puts the description in the place of its URL. One that is none leaves the style without the
  /// source. Gives the reason, empty when there is none.
  QString describe(const QString& source, const QByteArray& description);
  void removeSource(const QString& source);
  /// What the sources want said about their data, each once, as HTML: the engine leaves it out.
  QString attribution() const;
  QByteArray text() const;

 private:
  void setSource(const QString& name, const QJsonValue& source);

  QString flaw_;
  // As it was read, until something in it is changed.
  QByteArray text_;
  QJsonObject style_;
};

}  // namespace quorvelkit
