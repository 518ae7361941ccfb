// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/StyleDocument_p.h>

#include <QJsonArray>
#include <QJsonDocument>

namespace quorvelkit {

namespace {

QString sourcesKey() { return QStringLiteral("sources"); }
QString urlKey() { return QStringLiteral("url"); }
QString attributionKey() { return QStringLiteral("attribution"); }

// For such a URL, the engine's plugin would use its built-in access token, which belongs to a third
// party.
bool isMapboxURL(const QString& url) {
  return url.trimmed().startsWith(QLatin1String("mapbox:"), Qt::CaseInsensitive);
}

// The value is a URL, an array of URLs, or an object with URLs.
bool containsMapboxURL(const QJsonValue& value) {
  if (value.isString()) return isMapboxURL(value.toString());
  if (value.isArray()) {
    for (const auto& item : value.toArray())
      if (containsMapboxURL(item)) return true;
  }
  if (!value.isObject()) return false;
  const QJsonObject object = value.toObject();
  for (const char* const key : {"url", "urls", "tiles", "data"}) {
    const QJsonValue url = object.value(QLatin1String(key));
    // The "data" member can be an object with GeoJSON data.
    if (!url.isObject() && containsMapboxURL(url)) return true;
  }
  return false;
}

// Returns the name of a part of the style that contains a mapbox: URL, or an empty string.
QString partWithMapboxURL(const QJsonObject& style) {
  for (const char* const key : {"sprite", "glyphs", "imports"}) {
    if (containsMapboxURL(style.value(QLatin1String(key)))) return QLatin1String(key);
  }
  const QJsonObject sources = style.value(sourcesKey()).toObject();
  for (auto source = sources.begin(); source != sources.end(); ++source) {
    if (containsMapboxURL(source.value())) return QStringLiteral("source %1").arg(source.key());
  }
  return QString();
}

QJsonObject parseObject(const QByteArray& text, QString& error) {
  QJsonParseError parseError;
  QJsonObject object = QJsonDocument::fromJson(text, &parseError).object();
  if (parseError.error != QJsonParseError::NoError) error = parseError.errorString();
  return object;
}

}  // namespace

StyleDocument::StyleDocument(const QByteArray& text) : style_(parseObject(text, error_)) {
  if (!error_.isEmpty()) return;
  const QString part = partWithMapboxURL(style_);
  if (style_.value(QStringLiteral("version")).toInt() != 8 ||
      !style_.value(QStringLiteral("layers")).isArray()) {
    error_ = QStringLiteral("it is not a Mapbox style of version 8");
  } else if (!part.isEmpty()) {
    error_ = QStringLiteral("its %1 has a mapbox: URL, which needs an access token").arg(part);
  }
}

std::map<QString, QUrl> StyleDocument::tileJSONURLs() const {
  std::map<QString, QUrl> urls;
  const QJsonObject sources = style_.value(sourcesKey()).toObject();
  for (auto source = sources.begin(); source != sources.end(); ++source) {
    const QString type = source->toObject().value(QStringLiteral("type")).toString();
    const QString url = source->toObject().value(urlKey()).toString();
    if (!url.isEmpty() && type != QLatin1String("image")) urls[source.key()] = QUrl(url);
  }
  return urls;
}

QString StyleDocument::resolveSource(const QString& name, const QByteArray& text) {
  const QJsonObject tileJSON = QJsonDocument::fromJson(text).object();
  QString error;
  if (!tileJSON.value(QStringLiteral("tiles")).isArray()) {
    error = QStringLiteral("its URL does not name a TileJSON document");
  } else if (containsMapboxURL(tileJSON)) {
    error = QStringLiteral("it has a mapbox: URL, which needs an access token");
  }
  if (!error.isEmpty()) {
    removeSource(name);
    return error;
  }
  QJsonObject source = style_.value(sourcesKey()).toObject().value(name).toObject();
  source.remove(urlKey());
  for (const char* const key :
       {"tiles", "minzoom", "maxzoom", "bounds", "scheme", "encoding", "attribution"}) {
    const QString member = QLatin1String(key);
    if (!source.contains(member) && tileJSON.contains(member))
      source.insert(member, tileJSON.value(member));
  }
  setSource(name, source);
  return QString();
}

void StyleDocument::removeSource(const QString& name) {
  setSource(name, QJsonValue(QJsonValue::Undefined));
}

void StyleDocument::setSource(const QString& name, const QJsonValue& source) {
  QJsonObject sources = style_.value(sourcesKey()).toObject();
  // An undefined value removes the member.
  sources.insert(name, source);
  style_.insert(sourcesKey(), sources);
}

QStringList StyleDocument::attributions() const {
  QStringList texts;
  const QJsonObject sources = style_.value(sourcesKey()).toObject();
  for (const auto& source : sources)
    texts += source.toObject().value(attributionKey()).toString();
  texts.removeAll(QString());
  texts.removeDuplicates();
  return texts;
}

QByteArray StyleDocument::text() const {
  return QJsonDocument(style_).toJson(QJsonDocument::Compact);
}

}  // namespace quorvelkit
