#pragma once

#include <QWidget>

class QCheckBox;
class QSpinBox;

namespace kelvo {

class PlaylistGenerator;

/// The rules by which "Fit To Time" chooses. GUI thread.
class RulesLine : public QWidget {
  Q_OBJECT
 public:
  RulesLine(PlaylistGenerator& generator, QWidget* parent);

  void Show();

 private:
  void BuildRules();
  void Join();
  template <typename Change>
  void Wish(Change change);

  PlaylistGenerator& generator_;
  QCheckBox* follow_;
  QSpinBox* within_;
  QSpinBox* artist_;
  QSpinBox* played_;
};

}  // namespace kelvo
