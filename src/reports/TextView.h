#pragma once

#include "platform/Disks.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QObject>
#include <QString>

namespace kelvo {

/// A text file to be read. Owned by its window's host; logic thread, the file off it.
class TextView : public QObject {
  Q_OBJECT

 public:
  /// A line that is longer is shown to here.
  static constexpr qsizetype kLongestLine = 2000;

  struct Services {
    Disks& disks;
    Prompter& prompter;
  };
  explicit TextView(Services services) : services_(std::move(services)) {}

  void Open(const QString& path);
  /// Reads the file anew.
  void Refresh() { Open(path_); }
  /// Ends the load that is under way.
  void Cancel();
  [[nodiscard]] bool Loading() const { return loading_; }

  [[nodiscard]] const QString& Path() const { return path_; }
  [[nodiscard]] const QString& Text() const { return text_; }
  /// "Please Wait....", or why there is no text.
  [[nodiscard]] const QString& Words() const { return words_; }
  /// Tells how it gets on paper.
  void TellPrint();

 Q_SIGNALS:
  void Changed();

 private:
  [[nodiscard]] Job<> Load(QString path);
  void Take(const QString& text, const QString& words);

  Services services_;
  QString path_;
  QString text_;
  QString words_;
  bool loading_ = false;
  Job<> load_;
};

}  // namespace kelvo
