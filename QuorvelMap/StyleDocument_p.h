// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <map>

namespace quorvelkit {

/// A Mapbox style, version 8, with the checks and changes that it needs before an engine uses it.
class StyleDocument {
 public:
  StyleDocument() = default;
  explicit StyleDocument(const QByteArray& text);

  /// Why the style cannot be used. Empty if it can.
  QString error() const { return error_; }
  /// The URLs of the TileJSON documents of the sources, by source name.
  std::map<QString, QUrl> tileJSONURLs() const;
  /// Replaces the URL of the source by the content of its TileJSON document. Removes the source and
  /// returns the reason if the document cannot be used; returns an empty string otherwise.
  QString resolveSource(const QString& source, const QByteArray& tileJSON);
  void removeSource(const QString& source);
  /// The attributions of the sources without duplicates, each as HTML.
  QStringList attributions() const;
  /// Written anew from the values that were checked. The engine's parser reads some texts
  /// differently, for example objects with duplicate keys.
  QByteArray text() const;

 private:
  void setSource(const QString& name, const QJsonValue& source);

  QString error_;
  QJsonObject style_;
};

}  // namespace quorvelkit
