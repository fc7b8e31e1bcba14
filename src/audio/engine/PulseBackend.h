#pragma once

#include "audio/engine/OutputBackend.h"
#include "audio/engine/PulseStream.h"

#include <functional>
#include <list>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace kelvo {

/// The outputs of the desktop's sound server: PulseAudio, or PipeWire, which speaks its language. Everything
/// is asked for and answered on one thread of its own, which never waits for an answer, so a server that is
/// slow or dead holds up nobody. Owned by the engine; logic thread.
class PulseBackend : public OutputBackend {
 public:
  using Maker = std::function<std::unique_ptr<OutputBackend>()>;

  /// `makeOther`: where outputs come from while no server answers. Called at most once, on the device thread.
  explicit PulseBackend(Maker makeOther);
  /// Closes what is open.
  ~PulseBackend() override;

  [[nodiscard]] QStringList Names() const override;
  [[nodiscard]] bool HasLooked() const override;
  void Open(std::shared_ptr<DeviceLink> link) override;

 private:
  enum class Server { Unknown, Absent, Present };
  struct Sink {
    QByteArray id;  ///< the server's
    QString name;   ///< what a person reads; no two are the same
  };
  struct FreeMainloop {
    void operator()(pa_mainloop* loop) const { pa_mainloop_free(loop); }
  };

  // The device thread:
  void Run(const std::stop_token& stop);
  void Serve();
  void Connect();
  void Disconnect();
  void GoWithout();
  void TakeContextState();
  void AskForSinks();
  void TakeDefault(const pa_server_info* info);
  void TakeSink(const pa_sink_info* info, int end);
  void SinksRead();
  void OpenStream(std::shared_ptr<DeviceLink> link);

  const Maker makeOther_;
  std::unique_ptr<OutputBackend> other_;  ///< made before server_ is Absent for the first time
  const std::unique_ptr<pa_mainloop, FreeMainloop> mainloop_;
  mutable std::mutex mutex_;
  std::vector<std::shared_ptr<DeviceLink>> requests_;
  QStringList names_;
  std::atomic<bool> requested_{true};  ///< there may be something in requests_; at first: to look
  std::atomic<Server> server_{Server::Unknown};

  // The device thread alone:
  pa_context* context_ = nullptr;
  std::vector<std::shared_ptr<DeviceLink>> waiting_;  ///< for the server's first answers
  std::list<PulseStream> streams_;
  PulseReserve reserve_;
  std::vector<Sink> sinks_;  ///< the default one first
  std::vector<Sink> found_;  ///< by the look that is under way
  QByteArray default_;
  bool looking_ = false;
  bool lookAgain_ = false;

  std::jthread thread_;
};

}  // namespace kelvo
