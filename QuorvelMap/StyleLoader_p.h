// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelMap/StyleDocument_p.h>

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

class QNetworkAccessManager;
class QNetworkReply;

namespace quorvelkit {

struct LoadedStyle {
  /// Why the style cannot be used. Empty if it can.
  QString error;
  /// The style for the engine, with the content of its TileJSON documents.
  QByteArray text;
  /// The attributions of the sources, each as HTML.
  QStringList attributions;
  /// One message for each source that was removed.
  QStringList sourceErrors;
};

/// Loads and checks a style and the TileJSON documents of its sources. The Mapbox GL engine does
/// not do this itself, because it reports no error if it cannot read its style, and then draws no
/// lines either. Use it on the GUI thread.
class StyleLoader {
 public:
  using Handler = std::function<void(const LoadedStyle& style)>;

  StyleLoader();
  ~StyleLoader();

  /// Calls the handler once: before load() returns if all documents are files or resources, later
  /// if one has an http or https URL. The next load(), cancel() and the destructor drop the
  /// handler.
  void load(const QUrl& url, Handler handler);
  void cancel();

 private:
  using ReadHandler = std::function<void(const QByteArray& text, const QString& error)>;

  void read(const QUrl& url, ReadHandler handler);
  void finishRead(const Handler& handler);

  std::unique_ptr<QNetworkAccessManager> network_;
  std::vector<QNetworkReply*> replies_;
  StyleDocument document_;
  QStringList sourceErrors_;
  std::size_t pendingReads_ = 0;
};

}  // namespace quorvelkit
