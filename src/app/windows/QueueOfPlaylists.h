#pragma once

#include "playlists/PlaylistQueue.h"

namespace kelvo {

class PlayQueue;
struct ConsoleState;

/// The desk's play queue, as playlists use it. Logic thread.
class QueueOfPlaylists final : public PlaylistQueue {
 public:
  QueueOfPlaylists(PlayQueue& queue, const ConsoleState& state) : queue_(queue), state_(state) {}

  [[nodiscard]] int Count() const override;
  [[nodiscard]] QString Name() const override;
  [[nodiscard]] bool HoldsGroup() const override;
  [[nodiscard]] bool Closed() const override;
  [[nodiscard]] bool Holds(Mref track) const override;
  [[nodiscard]] std::vector<Row> Rows() const override;
  [[nodiscard]] QString GroupQuestion(const QString& cannot) const override;
  void SetName(const QString& name) override;
  void Take(const Load& load) override;

 private:
  PlayQueue& queue_;
  const ConsoleState& state_;
};

}  // namespace kelvo
