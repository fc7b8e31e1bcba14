#pragma once

#include "render/RenderDesk.h"
#include "render/RenderFile.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <mutex>

namespace kelvo {

/// What is to be rendered, and into what. A value that goes to the thread that does the work.
struct RenderOrder {
  RenderDesk::Setup desk;
  /// Puts rows into the queue of the desk, which is active then. Gives in words why there is nothing to play;
  /// empty when there is.
  std::function<QString(RenderDesk& desk)> fill;
  QString path;
  RenderFile::Kind kind = RenderFile::Kind::Wav;
  int mp3Kbps = RecordingFile::kMostKbps;
  bool replace = false;  ///< a file of that name may be there
};

/// What came of it.
struct RenderResult {
  enum class End {
    Done,
    Stopped,
    Failed,  ///< `error` tells why
  };
  End end = End::Done;
  QString error;         ///< one sentence
  bool endless = false;  ///< the desk would have gone on: the file ends in the middle
  int titles = 0;
  double seconds = 0;
  std::int64_t bytes = 0;
  QStringList skipped;  ///< titles that were passed over, each with why
  QStringList told;     ///< what the desk asked and told beside that
};

/// Plays the queue of a RenderDesk from its first row to its last as automatic play does, or as whatever
/// plays it when START is pressed, and writes what goes on air. Shared by the thread that does the work and
/// those who look on. A render that is stopped or fails leaves no file.
class RenderRun {
 public:
  explicit RenderRun(RenderOrder order) : order_(std::move(order)) {}

  /// Does all of the work. Once; any thread, which waits for disks.
  void Run();

  // Any thread.
  void Stop() { stop_.store(true, std::memory_order_relaxed); }
  /// How much is done, 0 to 1.
  [[nodiscard]] double Share() const { return share_.load(std::memory_order_relaxed); }
  /// Seconds of sound so far.
  [[nodiscard]] double Seconds() const { return seconds_.load(std::memory_order_relaxed); }
  /// The title that is being rendered.
  [[nodiscard]] QString Title() const;
  [[nodiscard]] const RenderOrder& Order() const { return order_; }

  /// Once Run is over.
  [[nodiscard]] const RenderResult& Result() const { return result_; }

 private:
  class Show;
  void Render();

  const RenderOrder order_;
  std::atomic<bool> stop_{false};
  std::atomic<double> share_{0};
  std::atomic<double> seconds_{0};
  mutable std::mutex mutex_;
  QString title_;
  RenderResult result_;
};

}  // namespace kelvo
