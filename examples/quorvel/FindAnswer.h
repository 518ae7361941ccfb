// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QuorvelKit/QVCandidate.h>
#include <QuorvelKit/QVReverseGeocodeResponse.h>
#include <QuorvelPlatform/Coordinate.h>

#include <optional>

/// Values of the find server that may be missing or impossible: then they are absent.

/// Returns the position of a candidate or an address, if it is one on the earth.
std::optional<quorvelkit::Coordinate> positionOf(const quorvelkit::QVCandidate& candidate);
std::optional<quorvelkit::Coordinate> positionOf(
    const quorvelkit::QVReverseGeocodeResponse& response);

/// Returns the score of a candidate from 0 to 100.
std::optional<double> scoreOf(const quorvelkit::QVCandidate& candidate);
