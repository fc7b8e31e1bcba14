#pragma once

#include "audio/engine/OutputBackend.h"
#include "audio/engine/PulseStream.h"

#include <functional>
#include <list>
#include <map>
#include <mutex>
#include <stop_token>
#include <thread>
#include <vector>

namespace kelvo {

/// The outputs of the desktop's sound server: PulseAudio, or PipeWire, which speaks its language. Everything
/// is asked for and answered on one thread of its own, which never waits for an answer, so a server that is
/// slow or dead blocks no caller. Owned by the engine; logic thread.
class PulseBackend : public OutputBackend {
 public:
  using Maker = std::function<std::unique_ptr<OutputBackend>()>;

  /// `makeOther`: where outputs come from while no server answers. Called at most once, on the device thread.
  explicit PulseBackend(Maker makeOther);
  /// Closes what is open.
  ~PulseBackend() override;

  [[nodiscard]] QStringList Names() const override;
  [[nodiscard]] QString IdOf(const QString& name) const override;
  [[nodiscard]] QString NameOf(const QString& id) const override;
  [[nodiscard]] int NamesEpoch() const override { return epoch_.load(std::memory_order_acquire); }
  [[nodiscard]] bool HasLooked() const override;
  void Open(std::shared_ptr<DeviceLink> link) override;
  void Wake() override { pa_mainloop_wakeup(mainloop_.get()); }

 private:
  /// Lost: it was there a moment ago, and a restart may be under way.
  enum class Server { Unknown, Present, Lost, Absent };
  struct Sink {
    QByteArray id;  ///< the server's
    QString description;
    QString name;  ///< what a person reads; no two are the same
  };
  struct FreeMainloop {
    void operator()(pa_mainloop* loop) const { pa_mainloop_free(loop); }
  };

  // The device thread:
  void Run(const std::stop_token& stop);
  void Serve();
  void TakeRequests();
  void WatchServer();
  void Connect();
  void Disconnect();
  void PassOn();
  void TakeContextState();
  void AskForSinks();
  void TakeSinks(int end);
  [[nodiscard]] QString NameFor(const QByteArray& id, const QString& description);
  void Publish();
  void OpenStream(std::shared_ptr<DeviceLink> link);
  [[nodiscard]] Server Now() const { return server_.load(std::memory_order_relaxed); }

  const Maker makeOther_;
  std::unique_ptr<OutputBackend> other_;  ///< made before server_ is Absent for the first time
  const std::unique_ptr<pa_mainloop, FreeMainloop> mainloop_;
  mutable std::mutex mutex_;
  std::vector<std::shared_ptr<DeviceLink>> requests_;
  QStringList names_;
  QStringList ids_;                     ///< the server's, in the order of names_
  std::atomic<bool> requested_{false};  ///< there may be something in requests_
  std::atomic<Server> server_{Server::Unknown};
  std::atomic<int> epoch_{0};

  // The device thread alone:
  pa_context* context_ = nullptr;
  pa_usec_t connectedAt_ = 0;
  pa_usec_t nextConnect_ = 0;
  pa_usec_t nextLook_ = 0;  ///< behind a look that failed; 0 otherwise
  pa_usec_t lostAt_ = 0;
  bool wasPresent_ = false;
  std::vector<std::shared_ptr<DeviceLink>> waiting_;  ///< for the server's first answers
  std::vector<std::shared_ptr<DeviceLink>> lent_;     ///< given to the other backend
  std::map<QByteArray, PulseReserve> reserves_;       ///< by the server's id; empty is the default output
  std::list<PulseStream> streams_;
  std::map<QByteArray, Sink> known_;  ///< every sink there ever was: a name stays with its device
  std::vector<Sink> sinks_;           ///< the default one first
  std::vector<Sink> found_;           ///< by the look that is under way
  QByteArray default_;
  bool looking_ = false;
  bool lookAgain_ = false;

  std::jthread thread_;
};

}  // namespace kelvo
