#pragma once

#include <QWidget>

class QCheckBox;
class QSpinBox;
class QTimeEdit;

namespace kelvo {

class Fader;
class PlaylistGenerator;
struct GeneratorWishes;

/// How long a generated list is to last, and the rules by which it is chosen. GUI thread.
class RulesLine : public QWidget {
  Q_OBJECT
 public:
  RulesLine(PlaylistGenerator& generator, QWidget* parent);

  void Show();

 private:
  void BuildDuration();
  void BuildRules();
  void Join();
  template <typename Change>
  void Wish(Change change);

  PlaylistGenerator& generator_;
  Fader* duration_;
  QTimeEdit* exact_;
  QCheckBox* follow_;
  QSpinBox* within_;
  QSpinBox* artist_;
  QSpinBox* played_;
};

}  // namespace kelvo
