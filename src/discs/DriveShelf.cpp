#include "discs/DriveShelf.h"

#include "platform/Words.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>

namespace kelvo {
namespace {

void Put(QSet<QString>& set, const QString& path, bool on) {
  if (on && !IsDiscImage(path)) {
    set.insert(path);
  } else {
    set.remove(path);
  }
}

}  // namespace

QString DiscWords(DiscState state) {
  switch (state) {
    case DiscState::Audio:
      return QStringLiteral("CDA");
    case DiscState::Mixed:
      return QStringLiteral("Audio");
    case DiscState::Data:
      return QStringLiteral("Data");
    case DiscState::NoDisc:
      return QStringLiteral("No CD In Drive");
    case DiscState::NotReady:
      break;
  }
  return QStringLiteral("Not Ready Or In Use");
}

QString DriveShelf::Place::Words() const {
  const QString name = image ? tr("%1 (Image)").arg(BaseName(QFileInfo(path).fileName())) : path;
  return disc.isEmpty() ? name : name + QStringLiteral(": ") + disc;
}

DriveShelf::DriveShelf(Services services) : services_(std::move(services)), calls_(services_.loop) {}

bool DriveShelf::Holds(const QString& path) const {
  return std::any_of(places_.begin(), places_.end(),
                     [&path](const Place& each) { return each.path == path; });
}

void DriveShelf::Refresh() {
  if (!refreshing_.Running()) refreshing_ = RunRefresh();
}

Job<> DriveShelf::RunRefresh() {
  try {
    const auto list = [drives = services_.drives] { return drives->Devices(); };
    const QString all = QStringLiteral("/dev");
    const QStringList devices = co_await calls_.Do(all, list);
    SetDevices(devices);
    for (const Place& place : places_) checking_.Add(Check(place.path));
  } catch (const Failure& failure) {
    NoteInLog(tr("The disc drives cannot be listed: ") + QString::fromUtf8(failure.what()));
  }
}

void DriveShelf::SetDevices(const QStringList& devices) {
  std::vector<Place> places;
  for (const QString& device : devices) {
    const auto known = std::find_if(places_.begin(), places_.end(),
                                    [&device](const Place& each) { return each.path == device; });
    places.push_back(known == places_.end() ? Place{device} : *known);
  }
  std::copy_if(places_.begin(), places_.end(), std::back_inserter(places), std::mem_fn(&Place::image));
  if (places == places_) return;
  places_ = std::move(places);
  Q_EMIT Changed();
}

Job<> DriveShelf::Check(QString path) {
  // Who looks at it already tells the same.
  if (!looking_.contains(path)) (void)co_await Look(path);
}

bool DriveShelf::AddImage(const QString& path) {
  if (!IsDiscImage(path)) return false;
  const QString sheet = ImageSheet(path);
  lastAdded_ = sheet;
  if (!Holds(sheet)) {
    places_.push_back({sheet, true});
    Q_EMIT Changed();
    checking_.Add(Check(sheet));
  }
  return true;
}

void DriveShelf::BrowseImage(std::function<void(const QString& place)> chosen) {
  if (!browsing_.Running()) browsing_ = RunBrowse(std::move(chosen));
}

Job<> DriveShelf::RunBrowse(std::function<void(const QString& place)> chosen) {
  const QString filter = tr("Disc Images (*.cue *.bin *.toc *.nrg *.CUE *.BIN *.TOC *.NRG)");
  const std::optional<QString> path = co_await services_.prompter.PickFile(tr("Open Disc Image"), {}, filter);
  if (!path) co_return;
  if (AddImage(*path)) {
    chosen(lastAdded_);
  } else {
    services_.prompter.Tell({tr("%1 Is No Disc Image !").arg(*path), {}});
  }
}

Job<> DriveShelf::Eject(QString path) {
  if (IsDiscImage(path)) {
    std::erase_if(places_, [&path](const Place& each) { return each.path == path; });
    Q_EMIT Changed();
    co_return;
  }
  const auto eject = [drives = services_.drives, path] { drives->Eject(path); };
  co_await calls_.Do(path, eject);
  checking_.Add(Check(path));
}

Job<> DriveShelf::CloseTray(QString path) {
  if (IsDiscImage(path)) co_return;
  const auto close = [drives = services_.drives, path] { drives->CloseTray(path); };
  co_await calls_.Do(path, close);
  checking_.Add(Check(path));
}

Job<DiscState> DriveShelf::Look(QString path) {
  if (looking_.contains(path)) co_return DiscState::NotReady;
  looking_.insert(path);
  const auto done = qScopeGuard([this, path] { looking_.remove(path); });
  const auto look = [drives = services_.drives, path] { return drives->Look(path); };
  DiscState state = DiscState::NotReady;
  try {
    state = co_await calls_.Do(path, look);
  } catch (const Failure&) {
    // Its words say it.
  }
  const auto place =
      std::find_if(places_.begin(), places_.end(), [&path](const Place& each) { return each.path == path; });
  if (place != places_.end() && place->disc != DiscWords(state)) {
    place->disc = DiscWords(state);
    Q_EMIT Changed();
  }
  co_return state;
}

void DriveShelf::SetRipping(const QString& path, bool on) {
  Put(ripping_, path, on);
  Q_EMIT UseChanged();
}

void DriveShelf::SetPlaying(const QString& path, bool on) {
  if (playing_.contains(path) == (on && !IsDiscImage(path))) return;
  Put(playing_, path, on);
  Q_EMIT UseChanged();
}

}  // namespace kelvo
