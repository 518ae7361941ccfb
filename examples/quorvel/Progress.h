// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>

/// The progress of a batch in one line of a terminal, on standard error: a bar, the number of
/// answers, errors, the rate and the time left. Writes nothing if standard error is no terminal.
class Progress {
 public:
  using Clock = std::chrono::steady_clock;

  struct State {
    std::uint64_t answers = 0;
    std::uint64_t errors = 0;
    /// The part of the input that has been read, from 0 to 1. Absent if its size is not known.
    std::optional<double> part;
    /// True while a server asks to wait.
    bool isPaused = false;
  };

  explicit Progress(bool isWanted);

  bool isShown() const { return isShown_; }
  /// Writes the line again if the last time is a fifth of a second ago.
  void update(const State& state, Clock::time_point now);
  /// Removes the line.
  void clear() const;

 private:
  const bool isShown_;
  const Clock::time_point start_ = Clock::now();
  std::optional<double> firstPart_;  // Where a batch continues that was interrupted.
  Clock::time_point lastUpdate_;
};

/// Returns a number with separators: 1234567 is "1,234,567".
std::string groupedText(std::uint64_t number);
