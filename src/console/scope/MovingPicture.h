#pragma once

#include "platform/EventLoop.h"

#include <QObject>

#include <memory>
#include <vector>

namespace kelvo {

class MovingPicture;

/// The one beat of the pictures that follow the sound: sixty a second while any of them is looked at. Without
/// an onlooker no timer runs. Outlives its pictures; logic thread.
class PictureBeat {
 public:
  static constexpr Nanoseconds kInterval{1'000'000'000 / 60};

  explicit PictureBeat(EventLoop& loop) : loop_(loop) {}
  PictureBeat(const PictureBeat&) = delete;
  PictureBeat& operator=(const PictureBeat&) = delete;

  /// Held, every picture stays as it is.
  void Hold(bool held);

 private:
  friend class MovingPicture;
  void Add(MovingPicture& picture);
  void Remove(MovingPicture& picture);
  void Run();
  void Beat();

  EventLoop& loop_;
  std::vector<MovingPicture*> watched_;
  bool held_ = false;
  Timer timer_;
};

/// A picture of the sound that is worked out anew for each beat while somebody looks at it, and never
/// otherwise. Logic thread.
class MovingPicture : public QObject {
  Q_OBJECT
 public:
  explicit MovingPicture(PictureBeat& beat) : beat_(beat) {}
  ~MovingPicture() override;

  /// Somebody looks, as long as he keeps what he gets here.
  [[nodiscard]] std::shared_ptr<void> Watch();
  [[nodiscard]] bool Watched() const { return onlookers_ > 0; }

 Q_SIGNALS:
  /// The picture is another one.
  void Renewed();

 protected:
  /// Works the picture out; the heir emits Renewed where it is another one than before.
  virtual void Renew() = 0;
  /// The first onlooker is there.
  virtual void Begin() {}
  /// The last onlooker is gone: what feeds the picture is let go of.
  virtual void Rest() {}

 private:
  friend class PictureBeat;
  void Leave();

  PictureBeat& beat_;
  int onlookers_ = 0;
};

}  // namespace kelvo
