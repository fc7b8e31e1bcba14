#pragma once

#include "audio/engine/EngineSource.h"
#include "audio/engine/SoundBlock.h"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>

namespace kelvo {

/// Works ahead for one voice: keeps its ring full of the newest generation. One per player. Commands come
/// from the logic's thread; the work is done by Run on a thread of its own, or by FillNow where there are no
/// threads.
class Feeder {
 public:
  explicit Feeder(SoundRing& ring) : ring_(ring) {}

  /// Goes on at `start` as `generation`, with `source` when there is a new one. An earlier command that was
  /// not yet taken up is dropped. Logic thread, never waits for a file.
  void Begin(Generation generation, FrameIndex start, std::unique_ptr<EngineSource> source = nullptr);
  /// Lets go of the source. Logic thread.
  void Empty(Generation generation);
  /// A playing voice empties the ring, a stopped one does not: tells how closely to look after it. Logic
  /// thread.
  void SetPlaying(bool playing);

  /// Counts up with each stretch that the source gave, and is odd while one is asked of it. Any thread.
  [[nodiscard]] std::uint64_t Reads() const { return reads_.load(std::memory_order_relaxed); }

  /// Works until `stop`. The decoder's thread.
  void Run(const std::stop_token& stop);
  /// For who mixes without haste, where time is simulated: fills the ring as far as it goes or, with a thread
  /// in Run, waits until that has brought in what the next 4096 frames need at any rate.
  void FillNow();
  /// A thread will be in Run, and FillNow leaves the work to it. Before both.
  void SetThreaded() { threaded_ = true; }

 private:
  struct Command {
    Generation generation = 0;
    FrameIndex start = 0;
    std::unique_ptr<EngineSource> source;
    bool empty = false;
  };
  enum class Outcome { Pushed, RingIsFull, Done };

  void Give(Command command);
  void Wake();
  /// The thread in Run has brought in enough for now.
  [[nodiscard]] bool HasEnough(std::size_t blocks) const;
  void TakeCommand();
  [[nodiscard]] Outcome Step();
  /// Does what may wait for a disk.
  template <typename Work>
  auto Ask(Work&& work);

  SoundRing& ring_;

  std::mutex mutex_;
  std::condition_variable_any changed_;
  std::optional<Command> command_;
  std::uint64_t given_ = 0;  ///< counts the commands
  bool woken_ = false;
  bool playing_ = false;
  std::atomic<std::uint64_t> reads_{0};
  bool threaded_ = false;

  // Written by the decoder's thread:
  std::atomic<std::uint32_t> steps_{0};
  std::atomic<std::uint64_t> taken_{0};  ///< the last command that was taken up
  std::atomic<std::size_t> pushed_{0};   ///< blocks since then
  std::atomic<bool> ended_{true};

  // The decoder's thread alone:
  std::unique_ptr<EngineSource> source_;
  SoundBlock block_;
};

}  // namespace kelvo
