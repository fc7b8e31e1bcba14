#pragma once

#include "config/Configuration.h"

#include <QWidget>

#include <functional>
#include <vector>

class QCheckBox;
class QGridLayout;
class QLabel;

namespace kelvo {

class Fader;

/// One tab of the configuration. Its controls show the values that are being edited and change them at once;
/// nothing is kept here. GUI thread.
class ConfigPage : public QWidget {
  Q_OBJECT
 public:
  /// Shows the present values.
  void Show();

 protected:
  ConfigPage(Configuration& work, const QString& name);

  [[nodiscard]] Configuration& Work() { return work_; }
  [[nodiscard]] const ConfigValues& Values() const { return work_.Values(); }
  /// Calls `show` whenever the values are shown.
  void OnShow(std::function<void()> show) { shows_.push_back(std::move(show)); }

  struct SliderLook {
    QString name;
    QString fixedName;
    QString label;
    QString textName = {};  ///< fixed name of the label with the value; empty: none
    QString unit = {};      ///< behind the value
    QString tooltip;
  };
  /// A line of the grid: label, slider and value.
  void AddSlider(QGridLayout& grid, const SliderLook& look, const NumberSetting& range,
                 int ConfigValues::*member);
  struct CheckLook {
    QString name;
    QString fixedName;
    QString words;
    QString tooltip;
  };
  [[nodiscard]] QCheckBox* AddCheck(const CheckLook& look, bool ConfigValues::*member);

 private:
  Configuration& work_;
  std::vector<std::function<void()>> shows_;
};

}  // namespace kelvo
