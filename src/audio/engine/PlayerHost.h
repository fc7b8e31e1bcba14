#pragma once

#include <functional>
#include <memory>

namespace kelvo {

class EnginePlayer;
class EventLoop;
class Output;
struct PlayerCore;

/// What a player needs of the engine that made it. Outlives its players; logic thread.
class PlayerHost {
 public:
  [[nodiscard]] virtual EventLoop& Loop() = 0;
  /// Does `work` on a thread of its own, or at once where there are none.
  virtual void OpenApart(std::function<void()> work) = 0;
  /// Polls the players at the loop's next turn.
  virtual void PollSoon() = 0;
  /// A core on `output`, with a decoder's thread of its own. Throws Failure when the output is full.
  [[nodiscard]] virtual std::shared_ptr<PlayerCore> MakeCore(Output& output) = 0;
  /// Takes over a core that has no player any more, until nothing of it sounds.
  virtual void Retire(std::shared_ptr<Output> output, std::shared_ptr<PlayerCore> core) = 0;
  /// The player is about to go.
  virtual void Forget(EnginePlayer& player) = 0;

 protected:
  ~PlayerHost() = default;
};

}  // namespace kelvo
