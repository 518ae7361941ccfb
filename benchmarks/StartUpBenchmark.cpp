// SPDX-License-Identifier: Apache-2.0
// Measures what a program needs before its first route: compiling the header, loading the library
// and the first call.
// This program is not linked with the library, so that it measures the loading in a fresh process.
#include "NginxServer.h"

#include <benchmark/benchmark.h>
#include <dlfcn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace quorvelkit::bench {
namespace {

// Returns the seconds that a fresh process needs to load a library and its dependencies, or a
// negative number on failure.
double loadSeconds(const char* library) {
  int ends[2];
  if (::pipe(ends) != 0) return -1;
  const pid_t child = ::fork();
  if (child == 0) {
    const auto begin = std::chrono::steady_clock::now();
    void* const loaded = ::dlopen(library, RTLD_NOW);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    const double seconds = loaded ? time.count() : -1;
    const auto written = ::write(ends[1], &seconds, sizeof seconds);
    ::_exit(written == sizeof seconds ? 0 : 1);
  }
  double seconds = -1;
  ::close(ends[1]);
  if (::read(ends[0], &seconds, sizeof seconds) != sizeof seconds) seconds = -1;
  ::close(ends[0]);
  ::waitpid(child, nullptr, 0);
  return seconds;
}

void load(benchmark::State& state, const char* library) {
  for (auto _ : state) {
    const double seconds = loadSeconds(library);
    if (seconds < 0) return state.SkipWithError("the library cannot be loaded");
    state.SetIterationTime(seconds);
  }
}
BENCHMARK_CAPTURE(load, quorvelkit, QUORVELKIT_LIBRARY)
    ->Name("load/quorvelkit")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(load, libcurl, "libcurl.so.4")
    ->Name("load/libcurl")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

void call(benchmark::State& state, bool first) {
  static const NginxServer nginx;
  const std::string command = QUORVELKIT_STARTUP_PROBE " " + nginx.baseURL();
  for (auto _ : state) {
    FILE* const output = ::popen(command.c_str(), "r");
    double times[2];
    const int read = std::fscanf(output, "%lf %lf", &times[0], &times[1]);
    ::pclose(output);
    if (read != 2) return state.SkipWithError("the probe failed");
    state.SetIterationTime(times[first ? 0 : 1] * 1e-6);
  }
}
BENCHMARK_CAPTURE(call, first, true)
    ->Name("call/first")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(call, second, false)
    ->Name("call/second")
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

// The processor time of all child processes that have ended.
double childSeconds() {
  rusage usage{};
  ::getrusage(RUSAGE_CHILDREN, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

void include(benchmark::State& state, const char* source) {
  const std::string command = std::string(QUORVELKIT_COMPILE_SOURCE " ") + source;
  for (auto _ : state) {
    const double before = childSeconds();
    if (std::system(command.c_str()) != 0) return state.SkipWithError("the compiler failed");
    state.SetIterationTime(childSeconds() - before);
  }
}
BENCHMARK_CAPTURE(include, quorvelkit, QUORVELKIT_INCLUDE_SOURCE)
    ->Name("include/quorvelkit")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(include, standard, QUORVELKIT_INCLUDE_STANDARD_SOURCE)
    ->Name("include/standard")
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

// The size of the stripped shared library, for the table.
void size(benchmark::State& state) {
  for (auto _ : state) {
  }
  state.counters["bytes"] =
      static_cast<double>(std::filesystem::file_size(QUORVELKIT_STRIPPED_LIBRARY));
}
BENCHMARK(size)->Name("size/stripped")->Iterations(1);

}  // namespace
}  // namespace quorvelkit::bench
