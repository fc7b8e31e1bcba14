#include "audio/engine/PulseProbe.h"

#include <pulse/pulseaudio.h>

#include <memory>

namespace kelvo {

namespace {

struct Deleter {
  void operator()(pa_mainloop* loop) const { pa_mainloop_free(loop); }
  void operator()(pa_context* context) const {
    pa_context_disconnect(context);
    pa_context_unref(context);
  }
  void operator()(pa_operation* operation) const { pa_operation_unref(operation); }
};

enum class Answer { None, NoOutput, Outputs };

void TakeServerInfo(pa_context* /*context*/, const pa_server_info* info, void* answer) {
  if (!info) return;
  *static_cast<Answer*>(answer) = info->default_sink_name ? Answer::Outputs : Answer::NoOutput;
}

/// Turns the loop until `done`, which it gives up after `turns` of 10 ms.
template <typename Condition>
bool Turn(pa_mainloop* loop, int turns, Condition done) {
  constexpr int kTurnMicroseconds = 10'000;
  for (int i = 0; i < turns && !done(); ++i) {
    if (pa_mainloop_prepare(loop, kTurnMicroseconds) < 0 || pa_mainloop_poll(loop) < 0 ||
        pa_mainloop_dispatch(loop) < 0) {
      return false;
    }
  }
  return done();
}

}  // namespace

bool PulseServerHasNoOutput() {
  constexpr int kMostTurns = 50;
  const std::unique_ptr<pa_mainloop, Deleter> loop(pa_mainloop_new());
  if (!loop) return false;
  const std::unique_ptr<pa_context, Deleter> context(
      pa_context_new(pa_mainloop_get_api(loop.get()), "Kelvo"));
  if (!context || pa_context_connect(context.get(), nullptr, PA_CONTEXT_NOAUTOSPAWN, nullptr) < 0)
    return false;
  const auto state = [&] { return pa_context_get_state(context.get()); };
  Turn(loop.get(), kMostTurns, [&] { return state() == PA_CONTEXT_READY || !PA_CONTEXT_IS_GOOD(state()); });
  if (state() != PA_CONTEXT_READY) return false;

  Answer answer = Answer::None;
  const std::unique_ptr<pa_operation, Deleter> question(
      pa_context_get_server_info(context.get(), TakeServerInfo, &answer));
  Turn(loop.get(), kMostTurns, [&] { return answer != Answer::None; });
  // An answer that comes late must find nobody to write to.
  if (question) pa_operation_cancel(question.get());
  return answer == Answer::NoOutput;
}

}  // namespace kelvo
