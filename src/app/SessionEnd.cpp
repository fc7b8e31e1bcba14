#include "app/SessionEnd.h"

namespace kelvo {

Job<bool> AnswerSessionEnd(SessionManager& manager, DeskAtSessionEnd desk) {
  desk.save();
  if (!desk.plays() || !manager.AllowsInteraction()) co_return false;
  const bool quit = co_await desk.mayQuit();
  if (quit) {
    // What was done while the question was open.
    desk.save();
    manager.Release();
  } else {
    manager.Cancel();
  }
  co_return quit;
}

}  // namespace kelvo
