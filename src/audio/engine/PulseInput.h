#pragma once

#include "audio/SoundInput.h"

#include <QByteArray>

#include <pulse/pulseaudio.h>

#include <atomic>
#include <mutex>
#include <stop_token>
#include <thread>

namespace kelvo {

/// The inputs of the desktop's sound server. A thread of its own asks for them and captures, apart from the
/// one that plays; it is started when it is first needed. Without a server there are no inputs.
class PulseInput : public SoundInput {
 public:
  PulseInput() = default;
  ~PulseInput() override;

  [[nodiscard]] std::vector<Device> Devices() override;
  void Choose(const QString& id) override;
  [[nodiscard]] std::shared_ptr<const Tap> Sound() const override;

 private:
  struct FreeMainloop {
    void operator()(pa_mainloop* loop) const { pa_mainloop_free(loop); }
  };
  struct Source {
    Device device;
    bool ofOutput;  ///< what an output plays, not a microphone or a line
  };

  void Begin();
  // The capture thread:
  void Run(const std::stop_token& stop);
  void Serve();
  void Connect();
  void Disconnect();
  void TakeContextState();
  void AskForSources();
  void TakeSources(bool all);
  [[nodiscard]] bool IsThere(const QByteArray& id) const;
  void OpenStream(const QByteArray& id);
  void CloseStream();
  void TakeSound();
  void Write(const float* samples, std::size_t frames);
  void Publish(std::shared_ptr<const Tap> sound);

  mutable std::mutex mutex_;
  std::vector<Device> devices_;
  QByteArray wanted_;
  std::shared_ptr<const Tap> sound_;

  // The capture thread alone:
  std::unique_ptr<pa_mainloop, FreeMainloop> mainloop_;
  pa_context* context_ = nullptr;
  pa_usec_t nextConnect_ = 0;
  std::vector<Source> sources_;
  std::vector<Source> found_;  ///< by the look that is under way
  bool looking_ = false;
  bool lookAgain_ = false;
  pa_stream* stream_ = nullptr;
  QByteArray opened_;  ///< whose sound the stream is
  pa_usec_t nextOpen_ = 0;
  std::shared_ptr<Tap> tap_;
  FrameIndex at_ = 0;

  std::jthread thread_;
};

}  // namespace kelvo
