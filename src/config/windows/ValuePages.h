#pragma once

#include "config/windows/ConfigPage.h"

class QComboBox;

namespace kelvo {

/// "General".
class GeneralPage : public ConfigPage {
  Q_OBJECT
 public:
  explicit GeneralPage(Configuration& work);

 private:
  [[nodiscard]] QWidget* WarningLoop();
};

/// "Auto Play Settings".
class AutoPlayPage : public ConfigPage {
  Q_OBJECT
 public:
  explicit AutoPlayPage(Configuration& work);

 private:
  [[nodiscard]] QWidget* Delays();
};

/// "Mp3 Settings".
class EncodingPage : public ConfigPage {
  Q_OBJECT
 public:
  explicit EncodingPage(Configuration& work);

 private:
  struct Choice {
    int value;
    QString words;
  };
  /// A line of the grid with the choices for a value; one that is stored and is none of them is shown too.
  void AddChoices(QGridLayout& grid, const QString& name, const QString& fixedName, const QString& label,
                  const std::vector<Choice>& choices, int EncodingPresets::*member);
  template <typename List>
  [[nodiscard]] static std::vector<Choice> Plain(const List& list) {
    std::vector<Choice> choices;
    for (const int value : list) choices.push_back({value, QString::number(value)});
    return choices;
  }
};

}  // namespace kelvo
