#include "audio/engine/Voice.h"

#include <algorithm>
#include <bit>

namespace kelvo {

static_assert(std::atomic<std::uint64_t>::is_always_lock_free && std::atomic<double>::is_always_lock_free);

namespace {

/// 5 ms for a start or a stop, 10 ms for a change of level.
constexpr int kEnvelopeSteps = kEngineRate / 200;
constexpr int kGainSteps = kEngineRate / 100;

constexpr int kFrameBits = 40;
constexpr std::uint64_t kFrameMask = (std::uint64_t{1} << kFrameBits) - 1;

std::uint64_t GenerationPart(Generation generation) {
  return std::uint64_t{generation} << kFrameBits;
}

}  // namespace

void Voice::Want(Generation generation, bool playing) {
  wanted_.store(std::uint64_t{generation} << 1 | (playing ? 1U : 0U), std::memory_order_release);
}

void Voice::SetGains(float left, float right) {
  const std::uint64_t word =
      std::uint64_t{std::bit_cast<std::uint32_t>(left)} << 32 | std::bit_cast<std::uint32_t>(right);
  wantedGains_.store(word, std::memory_order_relaxed);
}

std::optional<FrameIndex> Voice::PositionIn(Generation generation) const {
  const std::uint64_t word = position_.load(std::memory_order_acquire);
  if ((word & ~kFrameMask) != GenerationPart(generation)) return std::nullopt;
  return static_cast<FrameIndex>(word & kFrameMask);
}

bool Voice::HasEnded(Generation generation) const {
  return ended_.load(std::memory_order_acquire) == (std::uint64_t{generation} << 1 | 1U);
}

std::optional<FrameIndex> Voice::Began() const {
  const FrameIndex began = began_.load(std::memory_order_acquire);
  return began < 0 ? std::nullopt : std::optional(began);
}

void Voice::NotePosition() {
  if (!reader_.Started()) return;
  const auto frame = static_cast<std::uint64_t>(std::max<FrameIndex>(reader_.Position(), 0));
  now_.facts.position = GenerationPart(reader_.Current()) | (frame & kFrameMask);
}

const Voice::Kept* Voice::Find(MarkNumber mark) const {
  const Kept& kept = kept_[mark % kMostMarks];
  return kept.mark == mark ? &kept : nullptr;
}

void Voice::Keep(MarkNumber mark) noexcept {
  kept_[mark % kMostMarks] = {mark, now_, reader_.Here()};
  lastMark_ = mark;
}

bool Voice::CanGoBack(MarkNumber mark) const noexcept {
  const Kept* const kept = Find(mark);
  return !kept || reader_.CanGoTo(kept->place);
}

void Voice::GoBack(MarkNumber mark) noexcept {
  const Kept* const kept = Find(mark);
  now_ = kept ? kept->state : State();
  reader_.GoTo(kept ? kept->place : VarispeedReader::Mark());
}

void Voice::Tell(const Facts& facts, bool silent) noexcept {
  position_.store(facts.position, std::memory_order_release);
  ended_.store(facts.ended, std::memory_order_release);
  began_.store(facts.began, std::memory_order_release);
  silent_.store(silent, std::memory_order_release);
}

void Voice::TellUpTo(MarkNumber mark) noexcept {
  // A sound that has begun may be over again, and yet its owner must not take it out of what may be rendered
  // anew.
  if (const Kept* const kept = Find(mark)) Tell(kept->state.facts, now_.facts.silent && soundedAt_ < mark);
}

void Voice::TellAll() noexcept {
  Tell(now_.facts, now_.facts.silent);
}

bool Voice::Mix(std::span<float> target, FrameIndex at) noexcept {
  const std::uint64_t wanted = wanted_.load(std::memory_order_acquire);
  const auto generation = static_cast<Generation>(wanted >> 1);
  const bool playing = (wanted & 1U) != 0;
  const std::uint64_t gains = wantedGains_.load(std::memory_order_relaxed);
  const auto left = std::bit_cast<float>(static_cast<std::uint32_t>(gains >> 32));
  const auto right = std::bit_cast<float>(static_cast<std::uint32_t>(gains));
  const double rate = wantedRate_.load(std::memory_order_relaxed);

  AddTail(target);
  now_.left.Aim(left, kGainSteps);
  now_.right.Aim(right, kGainSteps);
  reader_.SetRate(rate);

  const std::size_t frames = target.size() / kChannels;
  bool fed = true;
  bool cameToEnd = false;
  std::size_t done = 0;
  while (done < frames) {
    if (reader_.Current() != generation && now_.envelope.Value() == 0.0F) reader_.Begin(generation, rate);
    const bool current = reader_.Current() == generation;
    const bool sounding = current && playing && !reader_.AtEnd();
    if (now_.envelope.Value() == 0.0F) {
      // Nobody hears these now: the next start is at the level that is wanted.
      now_.left.JumpTo(left);
      now_.right.JumpTo(right);
    }
    now_.envelope.Aim(sounding ? 1.0F : 0.0F, kEnvelopeSteps);
    if (!sounding && now_.envelope.Value() == 0.0F) break;

    std::size_t part = std::min(frames - done, kChunk);
    if (!sounding) part = std::min(part, static_cast<std::size_t>(now_.envelope.StepsLeft()));
    const bool begins = now_.envelope.Value() == 0.0F;
    const std::size_t got = Sound(target.data() + done * kChannels, part);
    if (begins && got > 0) now_.facts.began = at + static_cast<FrameIndex>(done);
    done += got;
    if (got == part) continue;

    // The data is over. What the end of a file does is its own affair; everything else fades.
    if (!reader_.AtEnd()) {
      fed = fed && !(sounding && reader_.Started() && !reader_.Overtaken());
      if (now_.envelope.Value() > 0.0F) {
        now_.tail = now_.last;
        now_.tailLeft = kEnvelopeSteps;
        AddTail(target.subspan(done * kChannels));
      }
    }
    now_.envelope.JumpTo(0.0F);
    if (!current) continue;
    cameToEnd = reader_.AtEnd();
    break;
  }
  reader_.DropOlder();
  waits_ = playing && (reader_.Current() != generation || !reader_.Started());
  NotePosition();
  if (reader_.Current() == generation && reader_.AtEnd() && reader_.Started()) {
    const std::uint64_t word = std::uint64_t{generation} << 1 | 1U;
    if (playing || now_.envelope.Value() > 0.0F || cameToEnd) now_.facts.ended = word;
    now_.envelope.JumpTo(0.0F);
  }
  now_.facts.silent = now_.envelope.Value() == 0.0F && now_.tailLeft == 0;
  if (!now_.facts.silent) {
    soundedAt_ = lastMark_;
    silent_.store(false, std::memory_order_release);
  }
  return fed;
}

std::size_t Voice::Sound(float* target, std::size_t frames) {
  const std::size_t got = reader_.Read(std::span(chunk_).first(frames * kChannels));
  if (got > 0 && !now_.envelope.Moving() && !now_.left.Moving() && !now_.right.Moving()) {
    // The same sums, without the steps between frames that keep the processor from doing several at once.
    const float left = now_.left.Value() * now_.envelope.Value();
    const float right = now_.right.Value() * now_.envelope.Value();
    for (std::size_t at = 0; at < got * kChannels; at += kChannels) {
      target[at] += chunk_[at] * left;
      target[at + 1] += chunk_[at + 1] * right;
    }
    const float* const last = &chunk_[(got - 1) * kChannels];
    now_.last = {last[0] * left, last[1] * right};
    return got;
  }
  for (std::size_t frame = 0; frame < got; ++frame) {
    now_.envelope.Step();
    now_.left.Step();
    now_.right.Step();
    now_.last.left = chunk_[frame * kChannels] * (now_.left.Value() * now_.envelope.Value());
    now_.last.right = chunk_[frame * kChannels + 1] * (now_.right.Value() * now_.envelope.Value());
    target[frame * kChannels] += now_.last.left;
    target[frame * kChannels + 1] += now_.last.right;
  }
  return got;
}

void Voice::AddTail(std::span<float> target) {
  for (std::size_t at = 0; at + 1 < target.size() && now_.tailLeft > 0; at += kChannels) {
    --now_.tailLeft;
    const float level = static_cast<float>(now_.tailLeft) / kEnvelopeSteps;
    target[at] += now_.tail.left * level;
    target[at + 1] += now_.tail.right * level;
  }
}

}  // namespace kelvo
