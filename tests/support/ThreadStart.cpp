// SPDX-License-Identifier: Apache-2.0
#include "tests/support/ThreadStart.h"

#include <dlfcn.h>
#include <pthread.h>

#include <cerrno>

using Start = int(pthread_t*, const pthread_attr_t*, void* (*)(void*), void*);

// The function of a sanitizer, which must intercept the start of each thread.
extern "C" __attribute__((weak)) Start __interceptor_pthread_create;

extern "C" int pthread_create(pthread_t* thread, const pthread_attr_t* attributes,
                              void* (*function)(void*), void* argument) noexcept {
  if (quorvelkit::test::threadsLeft-- <= 0) return EAGAIN;
  static Start* const start = __interceptor_pthread_create != nullptr
                                  ? &__interceptor_pthread_create
                                  : reinterpret_cast<Start*>(::dlsym(RTLD_NEXT, "pthread_create"));
  return start(thread, attributes, function, argument);
}
