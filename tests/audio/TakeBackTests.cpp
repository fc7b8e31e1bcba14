// What is queued for a device and not heard is rendered anew when there are orders.

#include "audio/TestSounds.h"
#include "audio/engine/OpenDecoder.h"
#include "audio/engine/OutputBackend.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <map>
#include <vector>

namespace kelvo::testing {

namespace {

constexpr FrameIndex kPeriod = 1024;
constexpr std::size_t kVoices = 3;

/// What one player is to do.
struct Order {
  Generation generation = 1;
  FrameIndex start = 0;
  bool playing = false;
  float left = 1;
  float right = 1;
  double rate = 1;
};
using Orders = std::array<Order, kVoices>;

/// A mixer with players that follow orders.
struct Desk {
  std::shared_ptr<OutputMixer> mixer = std::make_shared<OutputMixer>(true);
  std::vector<PlayerCore> cores = std::vector<PlayerCore>(kVoices);
  std::array<Generation, kVoices> begun{};

  Desk(const std::array<QString, kVoices>& files) {
    for (std::size_t i = 0; i < kVoices; ++i) {
      cores[i].feeder.Begin(1, 0, std::make_unique<EngineSource>(OpenDecoder(files[i])));
      begun[i] = 1;
    }
  }
  void Give(const Orders& orders) {
    for (std::size_t i = 0; i < kVoices; ++i) {
      const Order& order = orders[i];
      cores[i].voice.SetGains(order.left, order.right);
      cores[i].voice.SetRate(order.rate);
      cores[i].voice.Want(order.generation, order.playing);
      if (std::exchange(begun[i], order.generation) != order.generation)
        cores[i].feeder.Begin(order.generation, order.start);
    }
  }
  void Add(std::size_t voice) { EXPECT_TRUE(mixer->Add(cores[voice])); }
};

/// A device behind a queue of `reserve` frames.
class QueueingDevice {
 public:
  QueueingDevice(std::shared_ptr<OutputMixer> mixer, FrameIndex reserve)
      : link_(QString(), std::move(mixer)), reserve_(reserve) {
    link_.SetState(DeviceLink::State::Running);
  }

  /// Called with the frame from which on something is rendered.
  std::function<void(FrameIndex)> OnRender;
  Samples heard;

  void Fill() {
    while (reserve_ - Queued() >= kPeriod) Render(kPeriod);
  }
  void Play(FrameIndex frames) {
    for (FrameIndex i = 0; i < frames * 2 && !queue_.empty(); ++i) {
      heard.push_back(queue_.front());
      queue_.pop_front();
    }
  }
  void WriteAnew() {
    const FrameIndex back = Queued() > kPeriod ? link_.TakeBack(Queued() - kPeriod) : 0;
    queue_.resize(queue_.size() - static_cast<std::size_t>(back) * 2);
    written_ -= back;
    if (back > 0) Render(back);
  }
  void PlayOut() { Play(Queued()); }
  [[nodiscard]] FrameIndex Written() const { return written_; }
  [[nodiscard]] FrameIndex Heard() const { return static_cast<FrameIndex>(heard.size() / 2); }

 private:
  [[nodiscard]] FrameIndex Queued() const { return static_cast<FrameIndex>(queue_.size() / 2); }
  void Render(FrameIndex frames) {
    if (OnRender) OnRender(written_);
    Samples part(static_cast<std::size_t>(frames) * 2);
    link_.Deliver(part, reserve_ - kPeriod, Queued() + frames);
    queue_.insert(queue_.end(), part.begin(), part.end());
    written_ += frames;
  }

  DeviceLink link_;
  const FrameIndex reserve_;
  std::deque<float> queue_;
  FrameIndex written_ = 0;
};

struct Music {
  TemporaryTree folder;
  std::array<QString, kVoices> files;
  Music() {
    for (unsigned i = 0; i < kVoices; ++i) {
      Samples sound = Noise(44100 * 2, i + 1);
      // Loud enough for the limiter to work when two sound at once.
      for (float& sample : sound) sample *= 2.5F;
      files[i] = folder.Write(QStringLiteral("%1.wav").arg(i),
                              WaveFile(sound, {.coding = WaveKind::Coding::Float32}));
    }
  }
};

void Change(Order& order, Dice& dice, bool mayGlide) {
  switch (dice.Below(8)) {
    case 0:
    case 1:
    case 2:
      order.playing = !order.playing;
      break;
    case 3:
      order.left = static_cast<float>(dice.Between(0, 1));
      order.right = static_cast<float>(dice.Between(0, 1));
      break;
    case 4:
      if (mayGlide) order.rate = dice.Below(2) == 0 ? 1.0 : dice.Between(0.5, 2);
      break;
    default:
      ++order.generation;
      order.start = dice.Below(44100 * 2);
      break;
  }
}

}  // namespace

TEST(TakeBack, WhatIsHeardIsWhatAMixerWithoutAQueueWouldHavePlayed) {
  const Music music;
  Dice dice;
  SCOPED_TRACE(::testing::Message() << "seed " << dice.Seed());
  for (int run = 0; run < 4; ++run) {
    const FrameIndex reserve = run % 3 == 0 ? 24 * 1024 : 6 * 1024;
    Desk desk(music.files);
    Orders orders;
    QueueingDevice device(desk.mixer, reserve);
    std::map<FrameIndex, Orders> timeline;  // from which frame on which orders were followed
    device.OnRender = [&](FrameIndex from) {
      timeline.erase(timeline.lower_bound(from), timeline.end());
      timeline[from] = orders;
    };
    // The last one comes while the others play. It may be taken back to before it was there, and a player
    // that is new has no rate to glide from.
    desk.Give(orders);
    desk.Add(0);
    desk.Add(1);
    const auto tap = desk.mixer->OpenTap();
    Samples tapped;
    std::array<bool, kVoices> ended{};
    for (int step = 0; step < 200; ++step) {
      if (step == 100) desk.Add(2);
      device.Fill();
      const auto from = static_cast<FrameIndex>(tapped.size() / 2);
      tapped.resize(static_cast<std::size_t>(tap->Settled()) * 2);
      ASSERT_TRUE(tap->Read(from, std::span(tapped).subspan(static_cast<std::size_t>(from) * 2)));
      EXPECT_LE(tap->Heard(), device.Heard());
      EXPECT_GE(tap->Heard(), device.Heard() - 2 * kPeriod);
      device.Play(dice.Below(1500));
      if (dice.Below(3) != 0) continue;
      const auto voice = static_cast<std::size_t>(dice.Below(step < 100 ? 2 : kVoices));
      const auto before = orders[voice].generation;
      Change(orders[voice], dice, voice < 2);
      desk.Give(orders);
      if (orders[voice].generation != before) ended[voice] = false;
      if (dice.Below(4) != 0) device.WriteAnew();
      for (std::size_t each = 0; each < kVoices; ++each) {
        const bool now = desk.cores[each].voice.HasEnded(orders[each].generation);
        EXPECT_TRUE(now || !ended[each]) << "an end that was told can't be taken back";
        ended[each] = now;
      }
    }
    device.PlayOut();
    EXPECT_TRUE(std::equal(tapped.begin(), tapped.end(), device.heard.begin())) << "what went on air";

    Desk reference(music.files);
    for (std::size_t each = 0; each < kVoices; ++each) reference.Add(each);
    Samples expected(device.heard.size());
    for (auto at = timeline.begin(); at != timeline.end(); ++at) {
      const auto next = std::next(at);
      const FrameIndex to = next == timeline.end() ? device.Written() : next->first;
      reference.Give(at->second);
      const auto first = static_cast<std::size_t>(at->first) * 2;
      reference.mixer->Render(std::span(expected).subspan(first, static_cast<std::size_t>(to) * 2 - first));
    }
    const auto [wrong, right] = std::mismatch(device.heard.begin(), device.heard.end(), expected.begin());
    ASSERT_EQ(wrong, device.heard.end()) << "at frame " << (wrong - device.heard.begin()) / 2 << " of run "
                                         << run << ": " << *wrong << ", not " << *right;
    ASSERT_LT(*std::max_element(expected.begin(), expected.end()), 0.8913F);
    EXPECT_EQ(desk.mixer->Underruns(), 0U);
    for (std::size_t each = 0; each < kVoices; ++each) {
      EXPECT_TRUE(!ended[each] || reference.cores[each].voice.HasEnded(orders[each].generation));
    }
  }
}

TEST(TakeBack, AnOrderIsHeardAPeriodLaterAndPositionsTellWhereItActs) {
  const Music music;
  Desk desk(music.files);
  desk.Add(0);
  QueueingDevice device(desk.mixer, 24 * 1024);
  Orders orders;
  desk.Give(orders);
  for (int i = 0; i < 40; ++i) {
    device.Fill();
    device.Play(kPeriod);
  }
  const FrameIndex asked = device.Heard();
  orders[0].playing = true;
  desk.Give(orders);
  device.WriteAnew();
  for (int i = 0; i < 20; ++i) {
    device.Fill();
    device.Play(kPeriod);
  }
  const auto sound =
      std::find_if(device.heard.begin(), device.heard.end(), [](float each) { return each != 0; });
  const auto began = (sound - device.heard.begin()) / 2 - static_cast<std::ptrdiff_t>(Limiter::kLookAhead);
  EXPECT_GE(began, asked + kPeriod);
  EXPECT_LE(began, asked + kPeriod + static_cast<FrameIndex>(kMarkFrames));
  const FrameIndex told = desk.cores[0].voice.PositionIn(1).value_or(-1);
  EXPECT_NEAR(static_cast<double>(told), static_cast<double>(device.Heard() - began), 2.0 * kPeriod);

  // Stopped, it stays where it was heard to stop.
  orders[0].playing = false;
  desk.Give(orders);
  device.WriteAnew();
  for (int i = 0; i < 40; ++i) {
    device.Fill();
    device.Play(kPeriod);
  }
  const FrameIndex stopped = desk.cores[0].voice.PositionIn(1).value_or(-1);
  EXPECT_GE(stopped, told);
  EXPECT_LE(stopped, told + 2 * kPeriod + 300);
  EXPECT_TRUE(desk.cores[0].voice.Silent());
}

TEST(TakeBack, AnEndIsToldOnceItCantBeTakenBackAndNotWhenItWas) {
  const Music music;
  Desk desk(music.files);
  desk.Add(0);
  QueueingDevice device(desk.mixer, 24 * 1024);
  Orders orders;
  orders[0] = {.generation = 2, .start = 44100 * 2 - 3000, .playing = true};
  desk.Give(orders);
  device.Fill();
  EXPECT_FALSE(desk.cores[0].voice.HasEnded(2)) << "it lies in the queue";
  EXPECT_FALSE(desk.cores[0].voice.Silent());
  device.Play(kPeriod);
  orders[0].playing = false;
  desk.Give(orders);
  device.WriteAnew();
  for (int i = 0; i < 60; ++i) {
    device.Fill();
    device.Play(kPeriod);
  }
  EXPECT_FALSE(desk.cores[0].voice.HasEnded(2)) << "it was stopped before";
  EXPECT_TRUE(desk.cores[0].voice.Silent());
  orders[0].playing = true;
  desk.Give(orders);
  device.WriteAnew();
  for (int i = 0; i < 60; ++i) {
    device.Fill();
    device.Play(kPeriod);
  }
  EXPECT_TRUE(desk.cores[0].voice.HasEnded(2));
  EXPECT_EQ(desk.cores[0].voice.PositionIn(2), 44100 * 2);
}

TEST(TakeBack, NothingThatWasPlayedOtherwiseIsTakenBack) {
  const Music music;
  Desk desk(music.files);
  DeviceLink link(QString(), desk.mixer);
  link.SetState(DeviceLink::State::Running);
  Samples part(2048);
  EXPECT_EQ(link.TakeBack(1000), 0);
  for (int i = 0; i < 4; ++i) link.Deliver(part, 5000);
  // The silent clock renders in its place.
  desk.mixer->Render(part);
  EXPECT_EQ(link.TakeBack(5000), 0);
  link.Deliver(part, 5000);
  EXPECT_EQ(link.TakeBack(5000), 1024);
  for (int i = 0; i < 4; ++i) link.Deliver(part, 3000);
  link.SetState(DeviceLink::State::Gone);
  link.Deliver(part, 3000);
  link.SetState(DeviceLink::State::Running);
  EXPECT_EQ(link.TakeBack(5000), 0) << "silence lies between";
  link.Deliver(part, 3000);
  link.Detach();
  EXPECT_EQ(link.TakeBack(5000), 0);
}

}  // namespace kelvo::testing
