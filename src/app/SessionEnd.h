#pragma once

#include "platform/Job.h"

#include <functional>

namespace kelvo {

/// What the manager of a desktop session lets a program do that is asked to end with the session. The calls
/// are those of QSessionManager, which is never made but by Qt.
class SessionManager {
 public:
  virtual ~SessionManager() = default;
  /// Whether the person may be asked now.
  [[nodiscard]] virtual bool AllowsInteraction() = 0;
  /// The person has been asked; others may ask.
  virtual void Release() = 0;
  /// The session goes on.
  virtual void Cancel() = 0;
};

/// The desk, as the end of the session meets it.
struct DeskAtSessionEnd {
  /// Whether anything is heard.
  std::function<bool()> plays;
  /// Asks whether to quit; on Yes the desk has stopped.
  std::function<Job<bool>()> mayQuit;
  std::function<void()> save;
};

/// Answers a session that ends. What the desk keeps is saved first, for the process may be ended at any
/// moment from now on. Who listens is not cut off unasked: while a deck plays the person is asked where the
/// manager lets us, and a No keeps the session. Without a question the desk is left as it is: another program
/// may still stop the end, and the show goes on. True when the person wants to quit: the program has to end.
[[nodiscard]] Job<bool> AnswerSessionEnd(SessionManager& manager, DeskAtSessionEnd desk);

}  // namespace kelvo
