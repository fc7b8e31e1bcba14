#pragma once

#include "console/queue/PlayQueue.h"
#include "database/Catalogue.h"
#include "database/Paths.h"
#include "requests/RequestWords.h"
#include "requests/WordLists.h"

#include <QObject>

#include <functional>

namespace kelvo {

/// The audience's requests: takes the words for one track, puts it into the play queue, counts it in the list
/// of the most requested tracks, and is ready for the next. Follows its track through the catalogue. Owned by
/// its window's host; logic thread.
class Requests : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    const Catalogue& catalogue;
    PlayQueue& queue;
    Paths paths;
    QString wordFolder;  ///< of the lists of words
  };
  explicit Requests(Services services);

  /// The request is for the track of this music file.
  void SetTrack(const QString& path);
  /// Its name for the eye; empty when there is none.
  [[nodiscard]] QString TrackName() const;
  [[nodiscard]] Mref Track() const { return track_; }

  /// Why no request can be added now, in words; empty when one can.
  [[nodiscard]] QString WhyNoAdd() const;
  /// "Add To Queue". Nothing when a field is empty, or while one is being added.
  void Add(const RequestWords& words);

  [[nodiscard]] WordLists& Lists() { return lists_; }
  void ReadLists() { reading_ = lists_.Read(); }
  void AddToList(WordList list);

  /// What came of the last request, for the operator: "Request-2 : Artist - Title"; empty before the first.
  [[nodiscard]] const QString& Words() const { return words_; }

 Q_SIGNALS:
  void Changed();
  /// The request is in the queue: the fields are free for the next.
  void Added();

 private:
  [[nodiscard]] Job<> RunAdd(RequestWords words);
  [[nodiscard]] Job<> Count(QString name, QString path);

  Services services_;
  WordLists lists_;
  Mref track_ = Mref::None;
  QString path_;
  QString words_;
  Job<> adding_;
  Job<> reading_;
  Job<> editing_;
  JobList counting_;
};

}  // namespace kelvo
