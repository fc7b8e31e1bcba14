#pragma once

#include "info/Profile.h"
#include "ui/ToolWindow.h"

class QLabel;
class QPushButton;

namespace kelvo {

class ElidedLabel;
class NoteEdit;
class PictureView;

/// The profile of an artist, an album or a genre. It is opened for a name, which TakeFiles hands over. GUI
/// thread.
class ProfileWindow : public ToolWindow {
  Q_OBJECT
 public:
  ProfileWindow(EventLoop& loop, Profile& profile);

  void TakeKeys() override;
  /// The name of whom it is to show.
  void TakeFiles(const QStringList& names) override;
  [[nodiscard]] Job<bool> MayClose() override { return profile_.MayClose(); }

 protected:
  void Refresh() override { profile_.Reread(); }

 private:
  void BuildCommands();
  void BuildFields();
  void BuildLayout();
  void Show();

  Profile& profile_;
  QLabel* nameTitle_;
  ElidedLabel* name_;
  ElidedLabel* note_;
  NoteEdit* text_;
  PictureView* picture_;
  QPushButton* addPicture_ = nullptr;
  QPushButton* removePicture_ = nullptr;
  QPushButton* delete_ = nullptr;
  QPushButton* save_ = nullptr;
  QPushButton* close_ = nullptr;
};

}  // namespace kelvo
