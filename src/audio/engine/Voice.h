#pragma once

#include "audio/engine/Marks.h"
#include "audio/engine/Ramp.h"
#include "audio/engine/SoundBlock.h"
#include "audio/engine/VarispeedReader.h"

#include <array>
#include <atomic>
#include <optional>
#include <span>

namespace kelvo {

/// What one player sounds like. The logic's thread says what is wanted and reads what came of it, each in a
/// single atomic word; Mix runs in the device's callback and takes a ramp to every change. What comes of it
/// is told when it can't be taken back any more. Owned by a player's core.
class Voice {
 public:
  explicit Voice(SoundRing& ring) : reader_(ring) {}

  // The logic's thread.
  void Want(Generation generation, bool playing);
  void SetGains(float left, float right);
  void SetRate(double rate) { wantedRate_.store(rate, std::memory_order_relaxed); }
  /// The voice's position in `generation`; nothing before it has reached it.
  [[nodiscard]] std::optional<FrameIndex> PositionIn(Generation generation) const;
  /// True when `generation` has been played to its end.
  [[nodiscard]] bool HasEnded(Generation generation) const;
  /// The frame of its output in which what sounds began, or what sounded last; nothing before the first.
  [[nodiscard]] std::optional<FrameIndex> Began() const;
  /// True when nothing of it sounds any more.
  [[nodiscard]] bool Silent() const { return silent_.load(std::memory_order_acquire); }

  // The callback.
  /// Adds `target.size() / 2` frames to `target`, which is frame `at` and on of its output. Returns false
  /// when it ran dry: it should have sounded and its ring was empty.
  bool Mix(std::span<float> target, FrameIndex at = 0) noexcept;
  /// True when it is to play and its data has not come.
  [[nodiscard]] bool Waits() const { return waits_; }
  /// Keeps the present state as `mark`.
  void Keep(MarkNumber mark) noexcept;
  /// True when GoBack would find all that it needs.
  [[nodiscard]] bool CanGoBack(MarkNumber mark) const noexcept;
  /// Goes on from where it was at `mark`; a voice that is younger begins anew.
  void GoBack(MarkNumber mark) noexcept;
  /// Tells what had come about at `mark`: no GoBack goes further.
  void TellUpTo(MarkNumber mark) noexcept;
  /// Tells what has come about: there is no GoBack.
  void TellAll() noexcept;

 private:
  struct Frame {
    float left = 0;
    float right = 0;
  };
  /// Reads up to `frames` frames, levels them and adds them at `target`; returns how many there were.
  std::size_t Sound(float* target, std::size_t frames);
  void AddTail(std::span<float> target);
  void NotePosition();

  /// What the logic's thread is told, in its form.
  struct Facts {
    std::uint64_t position = 0;  ///< low 24 bits of the generation, then 40 bits of frame
    std::uint64_t ended = 0;     ///< generation << 1 | 1
    FrameIndex began = -1;       ///< in the output's frames
    bool silent = true;
  };
  /// All that makes the next frames, but for the orders and the sound itself.
  struct State {
    Ramp<float> envelope{0.0F};
    Ramp<float> left{0.0F};
    Ramp<float> right{0.0F};
    Frame last;        ///< the last frame that was added
    Frame tail;        ///< what an abrupt silence starts from, and
    int tailLeft = 0;  ///< how much of its ramp to zero is left
    Facts facts;
  };
  struct Kept {
    MarkNumber mark = 0;
    State state;
    VarispeedReader::Mark place;
  };
  [[nodiscard]] const Kept* Find(MarkNumber mark) const;
  void Tell(const Facts& facts, bool silent) noexcept;

  std::atomic<std::uint64_t> wanted_{0};       ///< generation << 1 | playing
  std::atomic<std::uint64_t> wantedGains_{0};  ///< two floats; starts silent
  std::atomic<double> wantedRate_{1.0};
  std::atomic<std::uint64_t> position_{0};
  std::atomic<std::uint64_t> ended_{0};
  std::atomic<FrameIndex> began_{-1};
  std::atomic<bool> silent_{true};

  // The callback alone:
  VarispeedReader reader_;
  State now_;
  bool waits_ = false;
  std::array<Kept, kMostMarks> kept_{};
  MarkNumber lastMark_ = 0;   ///< kept last
  MarkNumber soundedAt_ = 0;  ///< the mark before the last frames that were not silent
  static constexpr std::size_t kChunk = 256;
  std::array<float, kChunk * kChannels> chunk_{};
};

}  // namespace kelvo
