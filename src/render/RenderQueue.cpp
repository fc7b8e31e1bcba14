#include "render/RenderQueue.h"

#include "console/Console.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>

#include <utility>

namespace kelvo {

namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(RenderQueue)
};

constexpr int kFewestRows = 3;
const QString kNoName = QStringLiteral("(No Name)");

/// The tracks of some rows as a catalogue of their own.
class TrackCopies {
 public:
  explicit TrackCopies(const Catalogue& catalogue) : catalogue_(catalogue) {}

  /// The number that the row's track has among the copies.
  Mref Add(const QueueEntry& row) {
    const auto known = numbers_.constFind(row.path);
    if (known != numbers_.constEnd()) return *known;
    const QFileInfo file(row.path);
    CatalogueRow copy;
    copy.name = file.completeBaseName();
    copy.extension = QLatin1Char('.') + file.suffix();
    if (catalogue_.IsTrack(row.track)) copy.duration = catalogue_.TrackDurations(row.track);
    tracks.push_back(std::move(copy));
    return *numbers_.insert(row.path, ToMref(static_cast<int>(tracks.size())));
  }

  std::vector<CatalogueRow> tracks;

 private:
  const Catalogue& catalogue_;
  QHash<QString, Mref> numbers_;
};

}  // namespace

RenderDesk::Setup SetupOf(Console& desk) {
  const Console::Services& have = desk.GetServices();
  return {.title = have.title,
          .settings = have.settings.Text(),
          .paths = have.paths,
          .programFolder = have.programFolder,
          .start = have.loop.Now(),
          .mode = desk.Automatic().Mode(),
          .random = desk.Automatic().RandomTicked(),
          .fadeSpeed = desk.Fades().FadeSpeed(),
          .delta = desk.Automatic().SldDelta()};
}

std::function<QString(RenderDesk& desk)> CopyOfQueue(Console& desk) {
  const PlayQueue& queue = desk.Queue();
  TrackCopies copies(desk.Tracks());
  QueueFill fill{.clearFirst = true, .rows = {}};
  fill.group = queue.GroupQueueFlag();
  if (fill.group) fill.name = queue.Name();
  for (int index = 1; index <= queue.Count(); ++index) {
    const QueueEntry& row = queue.Row(index);
    QueueFill::Row copy{.track = copies.Add(row), .title = row.title, .path = row.path, .note = row.note};
    const QStringList lines = fill.group ? queue.GroupLinesOf(index) : QStringList();
    if (lines.isEmpty()) fill.rows.push_back(copy);
    for (const QString& line : lines) {
      copy.line = line;
      fill.rows.push_back(copy);
    }
  }
  return [tracks = std::move(copies.tracks), fill = std::move(fill),
          music = desk.GetServices().paths(Paths::Music)](RenderDesk& target) {
    target.Tracks().Replace(CatalogueTables(music));
    for (const CatalogueRow& each : tracks) target.Tracks().Append(each);
    target.Desk().ActivateLoaded();
    target.Desk().Queue().Take(fill);
    return QString();
  };
}

QString NameOfQueue(Console& desk) {
  const QString& name = desk.Queue().Name();
  return name == kNoName ? QString() : name;
}

QString WhyNoRender(Console& desk) {
  if (desk.Queue().Count() < kFewestRows)
    return Text::tr("There Must Be A Minimum of 3 Tracks in The Play Queue !");
  if (desk.Automatic().Mode() == AutoMode::Preview) return Text::tr("A preview plays no queue");
  return {};
}

}  // namespace kelvo
