// SPDX-License-Identifier: Apache-2.0
#include "Progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <iostream>

namespace {

std::string timeText(double seconds) {
  const auto whole = static_cast<std::uint64_t>(std::clamp(seconds, 0.0, 1e9));
  if (whole < 60) return std::to_string(whole) + " s";
  if (whole < 3600) return std::to_string(whole / 60) + " min " + std::to_string(whole % 60) + " s";
  return groupedText(whole / 3600) + " h " + std::to_string(whole / 60 % 60) + " min";
}

std::string barText(double part) {
  constexpr std::size_t width = 20;
  const auto filled = static_cast<std::size_t>(std::lround(part * static_cast<double>(width)));
  return '[' + std::string(filled, '#') + std::string(width - filled, '.') + "] " +
         std::to_string(std::lround(part * 100)) + " %, ";
}

std::size_t terminalWidth() {
  winsize size{};
  return ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 1 ? size.ws_col : 80U;
}

}  // namespace

Progress::Progress(bool isWanted) : isShown_(isWanted && isatty(STDERR_FILENO) != 0) {}

void Progress::update(const State& state, Clock::time_point now) {
  if (!isShown_ || now - lastUpdate_ < std::chrono::milliseconds(200)) return;
  lastUpdate_ = now;
  const double seconds = std::chrono::duration<double>(now - start_).count();
  const auto done = state.answers + state.errors;
  std::string text;
  if (state.part) text = barText(std::clamp(*state.part, 0.0, 1.0));
  text += groupedText(state.answers) + " answers, " + groupedText(state.errors) + " errors, ";
  const double rate = seconds > 0 ? static_cast<double>(done) / seconds : 0;
  text += groupedText(static_cast<std::uint64_t>(rate)) + " per second";
  if (state.part && done > 0) {
    if (!firstPart_) firstPart_ = *state.part;
    const double covered = *state.part - *firstPart_;
    if (covered > 0) text += ", " + timeText(seconds * (1 - *state.part) / covered) + " left";
  }
  if (state.isPaused) text += ", the server asks to wait";
  text.resize(std::min(text.size(), terminalWidth() - 1));
  std::cerr << "\r\033[K" << text << std::flush;
}

void Progress::clear() const {
  if (isShown_) std::cerr << "\r\033[K" << std::flush;
}

std::string groupedText(std::uint64_t number) {
  std::string text = std::to_string(number);
  for (std::size_t at = text.size(); at > 3; at -= 3)
    text.insert(at - 3, 1, ',');
  return text;
}
