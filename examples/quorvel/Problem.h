// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/Calls/QVNotSent.h>
#include <QuorvelKit/QVBaseResponse.h>

#include <optional>
#include <string>

/// A server that the configuration names, and the key of its root URL there.
struct Server {
  const char* name;
  const char* key;
};
inline constexpr Server navigationServer{"navigation server", "quorvel-navigation-root-url"};
inline constexpr Server findServer{"find server", "quorvel-find-root-url"};

/// Returns the error of a call as a sentence, or nullopt if it has none: the message of the server
/// or, without a readable one, the phrase of the status.
std::optional<std::string> problemOf(const quorvelkit::QVBaseResponse& response);

/// Returns why a request was not sent, as a sentence that says what to do.
std::string problemOf(const quorvelkit::QVNotSent& notSent, const Server& server);

/// Returns true if the body is a JSON object.
bool isJSONObject(const quorvelkit::QVBaseResponse& response);

/// Names an answer that has the wrong form: "http://host/path sent text/html with status 200".
std::string answerText(const quorvelkit::QVBaseResponse& response);
