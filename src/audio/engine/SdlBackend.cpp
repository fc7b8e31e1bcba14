#include "audio/engine/SdlBackend.h"

#include "audio/engine/CallbackPriority.h"

#include <QLoggingCategory>

#include <SDL2/SDL.h>

#include <chrono>
#include <string_view>
#include <utility>

namespace kelvo {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(logDevices, "kelvo.audio.devices", QtWarningMsg)

namespace {

constexpr auto kLookForEvents = 100ms;

/// The default device may change without an event, so it is asked for now and then.
constexpr int kTurnsPerNameCheck = 20;

void Deliver(void* link, Uint8* stream, int bytes) {
  // Once a device: its thread calls nothing else.
  [[maybe_unused]] thread_local const CallbackPriority priority;
  const auto count = static_cast<std::size_t>(bytes) / sizeof(float);
  static_cast<DeviceLink*>(link)->Deliver(std::span(reinterpret_cast<float*>(stream), count));
}

}  // namespace

SdlBackend::SdlBackend(int bufferFrames)
    : bufferFrames_(bufferFrames), thread_([this](const std::stop_token& stop) { Run(stop); }) {}

SdlBackend::~SdlBackend() = default;

QStringList SdlBackend::Names() const {
  const std::lock_guard lock(mutex_);
  return names_;
}

void SdlBackend::Open(std::shared_ptr<DeviceLink> link) {
  {
    const std::lock_guard lock(mutex_);
    requests_.push_back(std::move(link));
  }
  wake_.notify_one();
}

void SdlBackend::Run(const std::stop_token& stop) {
  // Without it the library takes SIGTERM for itself.
  SDL_SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
  SDL_SetHint(SDL_HINT_APP_NAME, "Kelvo");
  SDL_SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Kelvo");
  SDL_SetHint(SDL_HINT_AUDIO_DEVICE_STREAM_NAME, "Kelvo");
  // A sound server is spoken to elsewhere: here the hardware itself, unless a person wants another driver.
  const char* const asked = SDL_getenv("SDL_AUDIODRIVER");
  if (asked == nullptr || std::string_view(asked).find("pulse") != std::string_view::npos)
    SDL_SetHintWithPriority(SDL_HINT_AUDIODRIVER, "alsa", SDL_HINT_OVERRIDE);
  Initialise();
  looked_.store(true, std::memory_order_release);
  for (int turn = 1; !stop.stop_requested(); ++turn) {
    std::vector<std::shared_ptr<DeviceLink>> requests;
    {
      std::unique_lock lock(mutex_);
      wake_.wait_for(lock, stop, kLookForEvents, [this] { return !requests_.empty(); });
      requests.swap(requests_);
    }
    CloseDetached();
    for (const auto& link : requests) {
      if (!link->Detached()) OpenDevice(link);
    }
    if (HandleEvents() || turn % kTurnsPerNameCheck == 0) ReadNames();
  }
  ShutDown();
  // What the library keeps for a thread it only frees by itself on threads of its own making.
  SDL_TLSCleanup();
}

void SdlBackend::Initialise() {
  initialised_ = SDL_InitSubSystem(SDL_INIT_AUDIO) == 0;
  ReadNames();
}

void SdlBackend::ShutDown() {
  for (const auto& [id, link] : devices_) SDL_CloseAudioDevice(id);
  devices_.clear();
  if (initialised_) SDL_QuitSubSystem(SDL_INIT_AUDIO);
  initialised_ = false;
  ReadNames();
}

void SdlBackend::CloseDetached() {
  std::erase_if(devices_, [](const auto& device) {
    if (!device.second->Detached()) return false;
    SDL_CloseAudioDevice(device.first);
    return true;
  });
}

void SdlBackend::OpenDevice(const std::shared_ptr<DeviceLink>& link) {
  if (!initialised_) Initialise();
  SDL_AudioSpec wanted{};
  wanted.freq = kEngineRate;
  wanted.format = AUDIO_F32SYS;
  wanted.channels = kChannels;
  wanted.samples = static_cast<Uint16>(bufferFrames_);
  wanted.callback = Deliver;
  wanted.userdata = link.get();
  const QByteArray name = link->Name().toUtf8();
  // Where no device is listed the default one is not tried either: the library behind it would fill the
  // terminal with what it did not find.
  const bool mayOpen = initialised_ && SDL_GetNumAudioDevices(0) > 0;
  const SDL_AudioDeviceID id =
      mayOpen ? SDL_OpenAudioDevice(name.isEmpty() ? nullptr : name.constData(), 0, &wanted, nullptr, 0) : 0;
  if (id == 0) {
    qCDebug(logDevices) << "no device" << link->Name() << SDL_GetError();
    link->SetState(DeviceLink::State::Gone);
    // With nothing open, a fresh start takes no device away, and finds hardware that has come back.
    if (devices_.empty()) ShutDown();
    return;
  }
  devices_.emplace(id, link);
  link->SetState(DeviceLink::State::Running);
  SDL_PauseAudioDevice(id, 0);
}

bool SdlBackend::HandleEvents() {
  if (!initialised_) return false;
  bool changed = false;
  SDL_Event event;
  while (SDL_PollEvent(&event) != 0) {
    if (event.type != SDL_AUDIODEVICEADDED && event.type != SDL_AUDIODEVICEREMOVED) continue;
    changed = true;
    if (event.type == SDL_AUDIODEVICEADDED) continue;
    const auto device = devices_.find(event.adevice.which);
    if (device != devices_.end()) device->second->SetState(DeviceLink::State::Gone);
  }
  return changed;
}

void SdlBackend::ReadNames() {
  QStringList names;
  if (initialised_) {
    const int count = SDL_GetNumAudioDevices(0);
    for (int i = 0; i < count; ++i) {
      if (const char* name = SDL_GetAudioDeviceName(i, 0)) names << QString::fromUtf8(name);
    }
    char* standard = nullptr;
    SDL_AudioSpec spec{};
    if (SDL_GetDefaultAudioInfo(&standard, &spec, 0) == 0 && standard) {
      const QString first = QString::fromUtf8(standard);
      if (names.removeOne(first)) names.prepend(first);
    }
    SDL_free(standard);
  }
  const std::lock_guard lock(mutex_);
  names_ = names;
}

}  // namespace kelvo
