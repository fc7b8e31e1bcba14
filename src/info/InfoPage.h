#pragma once

#include "info/InfoFiles.h"
#include "platform/Job.h"

#include <QObject>

namespace kelvo {

class Disks;
class EventLoop;
class Prompter;

/// A text with its picture, as it is read and edited. Owned by who knows where it is: the Info Centre, a
/// profile. Logic thread; the disk off it.
class InfoPage : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    QString pictures;  ///< where the operator looks for pictures
    Trash trash;
  };
  /// Of a text, in letters: what a person reads is far below it, and what is dropped by mistake is above.
  static constexpr qsizetype kMostLetters = 300'000;

  explicit InfoPage(Services services);

  /// Reads text and picture. False, with the operator told, when that failed: then the page takes no edit.
  [[nodiscard]] Job<bool> Load(InfoPlace place);
  /// Nothing is shown.
  void Clear();
  /// The files have this name now, or are about to.
  void Move(const InfoPlace& place) { place_ = place; }
  /// The files are gone; a changed text stays.
  void Lose();
  /// The page is not there and begins empty: a save makes it.
  void Begin() { editable_ = true; }

  [[nodiscard]] const InfoPlace& Place() const { return place_; }
  [[nodiscard]] bool Shown() const { return !place_.name.isEmpty(); }
  /// The text was there when it was read.
  [[nodiscard]] bool Found() const { return found_; }
  /// It was looked for, and is not there.
  [[nodiscard]] bool Missing() const { return missing_; }
  [[nodiscard]] bool Editable() const { return editable_; }

  [[nodiscard]] const QString& Text() const { return text_; }
  /// What the operator made of it.
  void SetText(const QString& text);
  [[nodiscard]] bool Dirty() const { return dirty_; }
  /// Drops what was changed.
  void Revert();
  /// False, with the operator told, when it could not be saved; the text is dirty still.
  [[nodiscard]] Job<bool> Save();
  /// Writes another text in the place of what is there, and shows it.
  [[nodiscard]] Job<bool> Replace(QString text);
  /// The operator wants to put in more than a text can hold.
  void RefuseLength();

  /// Path of the picture; empty: there is none.
  [[nodiscard]] const QString& Picture() const { return picture_; }
  /// Counts the reads: a picture of the same path may be another.
  [[nodiscard]] int PictureTurn() const { return pictureTurn_; }
  /// Lets the operator pick one.
  [[nodiscard]] Job<> PickPicture();
  /// Takes the one that was dropped.
  [[nodiscard]] Job<> TakeDropped(QStringList files);
  [[nodiscard]] Job<> RemovePicture();

 Q_SIGNALS:
  /// Another text is shown.
  void TextReplaced();
  void Changed();

 private:
  [[nodiscard]] Job<> RunTake(QString path);
  [[nodiscard]] Job<> ReadPicture();
  /// In Lane::Files, when the disk answers; false, with the operator told, when it does not.
  [[nodiscard]] Job<bool> Write(std::function<void()> work);
  void Tell(const QString& words);

  Services services_;
  InfoPlace place_;
  QString text_;
  QString saved_;  ///< as it is on disk
  QString picture_;
  int pictureTurn_ = 0;
  bool found_ = false;
  bool missing_ = false;
  bool editable_ = false;
  bool dirty_ = false;
};

}  // namespace kelvo
