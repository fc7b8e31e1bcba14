#pragma once

#include "console/Console.h"
#include "console/monitor/FadeTrial.h"
#include "playlists/PlayEditDesk.h"

namespace kelvo {

/// The desk as the editor of a track's play settings knows it. Owned by the editor; outlived by the desk.
class DeskOfPlayEdit : public PlayEditDesk {
 public:
  explicit DeskOfPlayEdit(Console& desk);

  [[nodiscard]] QString TrackBefore(const QString& path) const override;
  [[nodiscard]] QString WhyNoTrial() const override { return trial_.WhyNot(); }
  void Try(const PlayTrial& trial) override;
  void StopTrial() override { trial_.Stop(); }
  [[nodiscard]] bool Trying() const override { return trial_.Running(); }
  [[nodiscard]] QString TrialWords() const override { return trial_.Words(); }
  void Left() override;

 private:
  Console& desk_;
  FadeTrial trial_;
};

}  // namespace kelvo
