// SPDX-License-Identifier: Apache-2.0
#include <QuorvelKit/JSON/JSON.h>
#include <QuorvelKit/JSON/ValueAccess_p.h>
#include <QuorvelKit/JSON/Writer_p.h>

#include <ostream>

namespace quorvelkit {

std::optional<Data> JSON::rawData(JSONWritingOptions options, std::optional<Error>* error) const {
  std::string text;
  const bool isContainer = type() == Type::array || type() == Type::dictionary;
  if (isContainer && detail::writeDocument(value_, options, text)) {
    if (error) error->reset();
    return Data(std::move(text));
  }
  if (error) {
    *error = Error::described(std::string(ErrorDomain), ErrorInvalidJSON, "JSON is invalid");
  }
  return std::nullopt;
}

std::optional<std::string> JSON::rawString(TextEncoding encoding,
                                           JSONWritingOptions options) const {
  switch (type()) {
    case Type::array:
    case Type::dictionary: {
      std::string text;
      if (!detail::writeDocument(value_, options, text)) return std::nullopt;
      if (encoding == TextEncoding::utf8) return text;
      return decodedText(text, encoding);
    }
    case Type::string:
    case Type::number:
    case Type::bool_: return stringValue();
    case Type::null: return "null";
    case Type::unknown: break;
  }
  return std::nullopt;
}

std::string JSON::description() const { return rawString().value_or("unknown"); }

std::ostream& operator<<(std::ostream& out, const JSON& json) { return out << json.description(); }

}  // namespace quorvelkit
