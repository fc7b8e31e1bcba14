#pragma once

namespace kelvo {

/// Marks the stretch in which this thread mixes for a device: no memory from the heap, no lock, no waiting.
/// The tests watch for it and end the program where that is broken.
class RealtimeScope {
 public:
  RealtimeScope() noexcept;
  ~RealtimeScope();
  RealtimeScope(const RealtimeScope&) = delete;
  RealtimeScope& operator=(const RealtimeScope&) = delete;

  [[nodiscard]] static bool Active() noexcept;
};

}  // namespace kelvo
