// Ends the test program where a thread allocates, frees or locks while it mixes for a device. Linked into the
// tests of the room, it watches all of them.

#include "audio/engine/RealtimeScope.h"

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>

namespace {

void Forbid(const char* what) noexcept {
  if (!kelvo::RealtimeScope::Active()) return;
  // By hand: a stream could allocate.
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, what, std::strlen(what));
  std::abort();
}

void* Allocate(std::size_t size, std::size_t alignment) {
  Forbid("heap memory was taken in the callback\n");
  if (alignment <= alignof(std::max_align_t)) return std::malloc(size == 0 ? 1 : size);
  return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}

void* AllocateOrThrow(std::size_t size, std::size_t alignment) {
  void* const memory = Allocate(size, alignment);
  if (!memory) throw std::bad_alloc();
  return memory;
}

void Release(void* memory) noexcept {
  if (memory) Forbid("heap memory was given back in the callback\n");
  std::free(memory);
}

constexpr std::size_t kUsual = alignof(std::max_align_t);

}  // namespace

void* operator new(std::size_t size) {
  return AllocateOrThrow(size, kUsual);
}
void* operator new[](std::size_t size) {
  return AllocateOrThrow(size, kUsual);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size, kUsual);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
  return Allocate(size, kUsual);
}
void* operator new(std::size_t size, std::align_val_t at) {
  return AllocateOrThrow(size, std::size_t(at));
}
void* operator new[](std::size_t size, std::align_val_t at) {
  return AllocateOrThrow(size, std::size_t(at));
}
void operator delete(void* memory) noexcept {
  Release(memory);
}
void operator delete[](void* memory) noexcept {
  Release(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  Release(memory);
}
void operator delete[](void* memory, std::size_t) noexcept {
  Release(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  Release(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept {
  Release(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept {
  Release(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept {
  Release(memory);
}

#if !defined(__SANITIZE_THREAD__)
// The thread sanitizer has this place itself.
extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
  using Lock = int (*)(pthread_mutex_t*);
  static const auto real = reinterpret_cast<Lock>(::dlsym(RTLD_NEXT, "pthread_mutex_lock"));
  Forbid("a lock was taken in the callback\n");
  return real(mutex);
}
#endif

namespace kelvo::testing {

TEST(RealtimeGuardDeathTest, AnAllocationOrALockInTheCallbackEndsTheTests) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(
      {
        const RealtimeScope scope;
        const auto number = std::make_unique<int>(1);
        std::fputs(*number == 1 ? "went on" : "", stderr);
      },
      "heap memory was taken");
#if !defined(__SANITIZE_THREAD__)
  EXPECT_DEATH(
      {
        std::mutex mutex;
        const RealtimeScope scope;
        const std::lock_guard lock(mutex);
        std::fputs("went on", stderr);
      },
      "a lock was taken");
#endif
}

}  // namespace kelvo::testing
