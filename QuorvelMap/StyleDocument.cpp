// SPDX-License-Identifier: Apache-2.0
#include <QuorvelMap/StyleDocument_p.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <QStringList>

namespace quorvelkit {

namespace {

QString sourcesKey() { return QStringLiteral("sources"); }
QString urlKey() { return QStringLiteral("url"); }
QString attributionKey() { return QStringLiteral("attribution"); }

// The engine would look such an address up with the token of somebody else that its plugin carries.
bool isForeign(const QString& address) {
  return address.trimmed().startsWith(QLatin1String("mapbox:"), Qt::CaseInsensitive);
}

// An address, a list of addresses, or objects that have them under one of these names.
bool namesForeign(const QJsonValue& value) {
  if (value.isString()) return isForeign(value.toString());
  if (value.isArray()) {
    for (const auto& item : value.toArray())
      if (namesForeign(item)) return true;
  }
  if (!value.isObject()) return false;
  const QJsonObject object = value.toObject();
  for (const char* const key : {"url", "urls", "tiles", "data"}) {
    const QJsonValue address = object.value(QLatin1String(key));
    // Data that stand in the style itself are no addresses.
    if (!address.isObject() && namesForeign(address)) return true;
  }
  return false;
}

// Which part of the style names a mapbox: address; empty when none does.
QString foreignPartOf(const QJsonObject& style) {
  for (const char* const key : {"sprite", "glyphs", "imports"}) {
    if (namesForeign(style.value(QLatin1String(key)))) return QLatin1String(key);
  }
  const QJsonObject sources = style.value(sourcesKey()).toObject();
  for (auto source = sources.begin(); source != sources.end(); ++source) {
    if (namesForeign(source.value())) return QStringLiteral("source %1").arg(source.key());
  }
  return QString();
}

}  // namespace

StyleDocument::StyleDocument(const QByteArray& text) : text_(text) {
  QJsonParseError error;
  style_ = QJsonDocument::fromJson(text, &error).object();
  const QString foreign = foreignPartOf(style_);
  if (error.error != QJsonParseError::NoError) {
    flaw_ = error.errorString();
  } else if (style_.value(QStringLiteral("version")).toInt() != 8 ||
             !style_.value(QStringLiteral("layers")).isArray()) {
    flaw_ = QStringLiteral("it is not a Mapbox style of version 8");
  } else if (!foreign.isEmpty()) {
    flaw_ =
        QStringLiteral("its %1 has a mapbox: address, which needs an access token").arg(foreign);
  }
}

std::map<QString, QUrl> StyleDocument::descriptions() const {
  std::map<QString, QUrl> urls;
  const QJsonObject sources = style_.value(sourcesKey()).toObject();
  for (auto source = sources.begin(); source != sources.end(); ++source) {
    const QString type = source->toObject().value(QStringLiteral("type")).toString();
    const QString url = source->toObject().value(urlKey()).toString();
    if (!url.isEmpty() && type != QLatin1String("image")) urls[source.key()] = QUrl(url);
  }
  return urls;
}

QString StyleDocument::describe(const QString& name, const QByteArray& text) {
  const QJsonObject description = QJsonDocument::fromJson(text).object();
  QString problem;
  if (!description.value(QStringLiteral("tiles")).isArray()) {
    problem = QStringLiteral("its description is no TileJSON document");
  } else if (namesForeign(description)) {
    problem = QStringLiteral("it has a mapbox: address, which needs an access token");
  }
  if (!problem.isEmpty()) {
    removeSource(name);
    return problem;
  }
  QJsonObject source = style_.value(sourcesKey()).toObject().value(name).toObject();
  source.remove(urlKey());
  for (const char* const key :
       {"tiles", "minzoom", "maxzoom", "bounds", "scheme", "encoding", "attribution"}) {
    const QString member = QLatin1String(key);
    if (!source.contains(member) && description.contains(member))
      source.insert(member, description.value(member));
  }
  setSource(name, source);
  return QString();
}

void StyleDocument::removeSource(const QString& name) {
  setSource(name, QJsonValue(QJsonValue::Undefined));
}

void StyleDocument::setSource(const QString& name, const QJsonValue& source) {
  QJsonObject sources = style_.value(sourcesKey()).toObject();
  // An undefined value removes it.
  sources.insert(name, source);
  style_.insert(sourcesKey(), sources);
  text_.clear();
}

QString StyleDocument::attribution() const {
  QStringList notices;
  const QJsonObject sources = style_.value(sourcesKey()).toObject();
  for (const auto& source : sources)
    notices += source.toObject().value(attributionKey()).toString();
  notices.removeAll(QString());
  notices.removeDuplicates();
  return notices.join(u' ');
}

QByteArray StyleDocument::text() const {
  return text_.isEmpty() ? QJsonDocument(style_).toJson(QJsonDocument::Compact) : text_;
}

}  // namespace quorvelkit
