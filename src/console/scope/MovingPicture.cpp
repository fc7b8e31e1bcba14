#include "console/scope/MovingPicture.h"

#include <QPointer>

#include <algorithm>

namespace kelvo {

void PictureBeat::Hold(bool held) {
  held_ = held;
  Run();
}

void PictureBeat::Add(MovingPicture& picture) {
  watched_.push_back(&picture);
  Run();
}

void PictureBeat::Remove(MovingPicture& picture) {
  std::erase(watched_, &picture);
  Run();
}

void PictureBeat::Run() {
  const bool runs = !held_ && !watched_.empty();
  if (runs == timer_.Active()) return;
  timer_ = runs ? loop_.Every(kInterval, [this] { Beat(); }) : Timer();
}

void PictureBeat::Beat() {
  // Who hears of a picture may begin or cease to look at another one.
  const std::vector<MovingPicture*> watched = watched_;
  for (MovingPicture* const picture : watched) {
    if (std::find(watched_.begin(), watched_.end(), picture) != watched_.end()) picture->Renew();
  }
}

MovingPicture::~MovingPicture() {
  if (Watched()) beat_.Remove(*this);
}

std::shared_ptr<void> MovingPicture::Watch() {
  if (++onlookers_ == 1) {
    Begin();
    beat_.Add(*this);
  }
  // An onlooker may outlive the picture.
  return {static_cast<void*>(this), [picture = QPointer<MovingPicture>(this)](void*) {
            if (picture) picture->Leave();
          }};
}

void MovingPicture::Leave() {
  if (--onlookers_ > 0) return;
  beat_.Remove(*this);
  Rest();
}

}  // namespace kelvo
