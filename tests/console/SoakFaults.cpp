#include "console/SoakFaults.h"

#include <QFile>

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// Between two faults, on average.
constexpr int kFaultEvery = 45;
/// In every other of these periods the queue is not touched, so that it is played in its order.
constexpr int kSpell = 5400;
/// The most files that are bad at once, and the fewest rows that are left, so that there is always something
/// to play.
constexpr int kMostBad = 14;
constexpr int kFewestGoodRows = 5;
constexpr int kFewestRows = 8;
/// The desk gives up a load after ten seconds, and tries all rows again after five.
constexpr int kGiveUp = 16;
/// It finds out in five that a deck has stopped.
constexpr int kStandsStill = 6;
/// Seconds of sound that a player has in memory, at the least.
constexpr int kLeastMemory = 5;
/// After these the first start has come.
constexpr int kSwitchTime = 10;
/// The longest rise of the levels; one that a start asks for begins when its deck is heard.
constexpr double kRise = 3.2;
/// A load from a disk that hangs is given up in that time: with less between the end of one track and the end
/// of the other nothing can be done.
constexpr int kOneLoad = 12;

}  // namespace

void SoakFaults::Second(int second, const DeskSight& now) {
  second_ = second;
  for (auto end = ends_.begin(); end != ends_.end() && end->first <= second_;) {
    const auto done = ends_.extract(end);
    done.mapped()();
    end = ends_.begin();
  }
  if (chance_.Below(kFaultEvery) == 0) Begin(now);
}

void SoakFaults::SwitchOn() {
  const SoakMode mode = scene_.options.mode;
  // A preview that begins while both decks are heard takes one of them away.
  constexpr std::array kSides{-200, 200, 0};
  const int side = kSides[static_cast<std::size_t>(chance_.Below(mode == SoakMode::Preview ? 2 : 3))];
  if (!scene_.desk.Look().walking && !parts_.levels.Runs(Now())) {
    scene_.desk.MoveSlider(side);
    parts_.levels.OnSlider(side);
  }
  scene_.excuses.Add(u"switched on"_s, Now(), Now() + kSwitchTime,
                     {Touch::Silence, Touch::Start, Touch::Load, Touch::Cut});
  // A load that hung before may come back as late.
  scene_.excuses.Add(u"switched on"_s, Now(), Now() + kSwitchTime + 2, {Touch::Order});
  parts_.starts.OnSwitch();
  parts_.rounds.OnSwitch();
  scene_.desk.SwitchOn(mode == SoakMode::Jukebox   ? AutoMode::Jukebox
                       : mode == SoakMode::Preview ? AutoMode::Preview
                                                   : AutoMode::Kelvo,
                       mode == SoakMode::Random);
}

QByteArray SoakFaults::RandomInfo(double stored) {
  const auto number = [this](int from, int to) {
    return QByteArray::number(from + chance_.Below(to - from + 1));
  };
  const QByteArray kinds = number(1, 3) + ',' + number(1, 3);
  QByteArray places = number(0, 20) + ',' + number(0, 25);
  // Now and then longer than many a track.
  if (chance_.Below(5) == 0) places = number(100, 400) + ',' + number(60, 300);
  QByteArray speeds = number(0, 51) + ',' + number(0, 51);
  if (chance_.Below(8) == 0) places = number(0, 15);
  if (chance_.Below(8) == 0) speeds = number(0, 50);
  const QByteArray playMode = chance_.Below(10) == 0 ? number(0, 1) : number(0, 1) + ',' + kinds;
  const QByteArray endStyle = chance_.Below(10) == 0 ? QByteArray() : number(0, 1);
  return "~ALL CATEGORIES\r\n~ALL ARTISTS\r\n~ALL ALBUMS\r\n1999-Dec\r\n120\r\n7\r\n" + playMode + "\r\n" +
         places + "\r\n" + speeds + "\r\n" + number(0, 1) + "\r\n" + endStyle + "\r\n?\r\n" +
         QByteArray::number(stored, 'g', 12) + "\r\n";
}

const SoakTrack* SoakFaults::Victim() {
  const std::vector<SoakTrack>& tracks = scene_.desk.Tracks();
  const SoakTrack& track = tracks[static_cast<std::size_t>(chance_.Below(static_cast<int>(tracks.size())))];
  if (parts_.bad.Count() >= kMostBad || parts_.bad.Bad(track.path)) return nullptr;
  int good = 0;
  for (const QString& path : scene_.desk.RowPaths()) good += parts_.bad.Bad(path) ? 0 : 1;
  if (good <= kFewestGoodRows) return nullptr;
  parts_.bad.Begin(track.path);
  return &track;
}

void SoakFaults::Spoil(const std::function<void(const SoakTrack&)>& spoil,
                       const std::function<void(const SoakTrack&)>& mend) {
  const SoakTrack* track = Victim();
  if (!track) return;
  spoil(*track);
  After(30 + chance_.Below(1500), [this, track, mend] {
    mend(*track);
    parts_.bad.End(track->path, Now());
  });
}

void SoakFaults::SpoilLength(double seconds) {
  Spoil([this, seconds](const SoakTrack& track) { scene_.desk.SetLength(track, seconds); },
        [this](const SoakTrack& track) { scene_.desk.SetLength(track, track.length); });
}

void SoakFaults::Begin(const DeskSight& now) {
  ++scene_.result.faults;
  switch (chance_.Below(20)) {
    case 0:
      Spoil([this](const SoakTrack& track) { scene_.desk.RemoveFile(track); },
            [this](const SoakTrack& track) { scene_.desk.RestoreFile(track); });
      break;
    case 1:
      SpoilLength(-1);
      break;
    case 2:
      SpoilLength(0);
      break;
    case 3:
      SpoilLength(0.2 + chance_.Next() * 30);
      break;
    case 4:
      SpoilInfo();
      break;
    case 5:
    case 6:
      if ((second_ / kSpell) % 2 == 0) EditQueue();
      break;
    case 7:
      StopDecks();
      break;
    case 8:
      LoseDevice();
      break;
    case 9:
      DelayBeats();
      break;
    case 10:
      BreakDisk();
      break;
    case 11:
      Pause(now);
      break;
    case 12:
      Spoil([this](const SoakTrack& track) { scene_.desk.SetSilent(track, true); },
            [this](const SoakTrack& track) { scene_.desk.SetSilent(track, false); });
      break;
    case 13:
      Speak();
      break;
    case 14:
      // Takes nothing back that the desk does by itself.
      scene_.desk.Cancel();
      break;
    case 15:
    case 16:
      KillStream(now);
      break;
    case 17:
      SwitchOffAndOn(now);
      break;
    default:
      HangDisk();
      break;
  }
}

void SoakFaults::SpoilInfo() {
  const std::vector<SoakTrack>& tracks = scene_.desk.Tracks();
  const SoakTrack& track = tracks[static_cast<std::size_t>(chance_.Below(static_cast<int>(tracks.size())))];
  switch (chance_.Below(3)) {
    case 0:
      QFile::remove(track.infoPath);
      break;
    case 1:
      SoakDesk::Write(track.infoPath, QByteArray("\0\377,,9e99,-7\r\n\r\n", 15));
      break;
    default:
      SoakDesk::Write(track.infoPath, RandomInfo(track.stored));
      break;
  }
  parts_.starts.OnInfoChanged(track.infoPath);
}

void SoakFaults::EditQueue() {
  SoakDesk& desk = scene_.desk;
  const auto row = [&] { return 1 + chance_.Below(desk.RowCount() + 1); };
  const std::vector<SoakTrack>& tracks = desk.Tracks();
  switch (chance_.Below(4)) {
    case 0: {
      const int from = row();
      desk.MoveRow(from, row());
      break;
    }
    case 1:
      desk.ClickRow(row());
      break;
    case 2:
      // Its row goes when its file is gone.
      desk.ClickRow(row());
      if (desk.RowCount() > kFewestRows) desk.EditRow();
      break;
    default:
      desk.AddRow(tracks[static_cast<std::size_t>(chance_.Below(static_cast<int>(tracks.size())))]);
      break;
  }
  scene_.excuses.Add(u"queue edited"_s, Now(), Now() + 0.3, {Touch::Order});
  parts_.rounds.OnEdit();
}

void SoakFaults::StopDecks() {
  for (const Deck deck : kDecks) {
    if (chance_.Below(3) > 0) scene_.desk.StopDeck(deck);
  }
  scene_.excuses.Add(u"stopped by hand"_s, Now(), Now() + 0.2, {Touch::Cut, Touch::Kill});
  OnLoadDue();
}

void SoakFaults::LoseDevice() {
  scene_.desk.SetDeviceLost(true);
  After(1 + chance_.Below(60), [this] { scene_.desk.SetDeviceLost(false); });
}

void SoakFaults::DelayBeats() {
  const int late = 1 + chance_.Below(3);
  scene_.desk.DelayBeats(late);
  scene_.excuses.Add(u"late ticks"_s, Now(), Now() + late + 2.2, {Touch::Silence, Touch::Start, Touch::Load});
}

void SoakFaults::BreakDisk() {
  if (diskBroken_) return;
  diskBroken_ = true;
  const int kind = chance_.Below(3);
  const int lasts = 5 + chance_.Below(120);
  SoakDesk& desk = scene_.desk;
  if (kind == 0) {
    desk.SetOpenTime(3s);
    slow_ = u"slow disk"_s;
    scene_.excuses.Add(slow_, Now(), Now() + lasts + 3, {Touch::Load});
    if (scene_.Preview()) scene_.excuses.Add(slow_, Now(), Now() + lasts + 3, {Touch::Silence});
    if (loadDueAt_ + 2 > Now()) OnLoadDue();
  } else {
    const QString reason = kind == 1 ? u"all disks hang"_s : u"all files gone"_s;
    if (kind == 1) desk.SetHanging({desk.MusicFolder()});
    if (kind == 2) desk.TakeMusicAway();
    scene_.excuses.Add(reason, Now(), Now() + lasts + kGiveUp, {Touch::Load, Touch::Silence});
  }
  // What is not read in time is left alone for a while.
  parts_.bad.NoteAll(Now() + lasts);
  After(lasts, [this, kind] {
    scene_.desk.SetOpenTime(20ms);
    if (kind == 1) scene_.desk.SetHanging({});
    if (kind == 2) scene_.desk.BringMusicBack();
    slow_.clear();
    diskBroken_ = false;
  });
}

void SoakFaults::HangDisk() {
  if (diskBroken_) return;
  diskBroken_ = true;
  // Each third of the files lies on a disk of its own.
  const std::vector<SoakTrack>& tracks = scene_.desk.Tracks();
  const auto part = static_cast<std::size_t>(chance_.Below(3));
  QStringList rows = scene_.desk.RowPaths();
  QSet<QString> hanging;
  int good = 0;
  for (const QString& path : rows) good += parts_.bad.Bad(path) ? 0 : 1;
  for (std::size_t track = part; track < tracks.size(); track += 3) {
    const QString& path = tracks[track].path;
    const bool counts = rows.contains(path) && !parts_.bad.Bad(path);
    if (parts_.bad.Bad(path) || (counts && good <= kFewestGoodRows)) continue;
    if (counts) --good;
    hanging.insert(path);
    parts_.bad.Begin(path);
  }
  const int lasts = 10 + chance_.Below(600);
  scene_.desk.SetHanging(hanging);
  slow_ = u"hung disk"_s;
  scene_.excuses.Add(slow_, Now(), Now() + lasts + 1, {Touch::Load});
  // Nobody can know on which disk the next track by chance lies.
  if (scene_.Preview()) scene_.excuses.Add(slow_, Now(), Now() + lasts + 3, {Touch::Silence});
  if (loadDueAt_ + 2 > Now()) OnLoadDue();
  After(lasts, [this, hanging] {
    scene_.desk.SetHanging({});
    for (const QString& path : hanging) parts_.bad.End(path, Now());
    slow_.clear();
    diskBroken_ = false;
  });
}

void SoakFaults::KillStream(const DeskSight& now) {
  const Deck deck = chance_.Below(2) == 0 ? Deck::One : Deck::Two;
  const int kind = chance_.Below(3);
  if (!now.decks[deck].playing) return;
  parts_.bad.Note(now.decks[deck].path, Now());
  if (kind == 0) {
    parts_.starts.OnBrokeOff(deck);
    scene_.desk.BreakOff(deck);
    scene_.excuses.Add(u"stream broke off"_s, Now(), Now() + 0.2, {Touch::Cut, Touch::Kill});
  } else if (kind == 1) {
    // What is in memory is for the start of the next one: that is no reason for silence.
    const int left = kLeastMemory + chance_.Below(6);
    scene_.desk.LoseDisk(deck, left);
    const auto lost = u"disk lost on air"_s;
    parts_.bad.Note(now.decks[deck].path, Now() + left);
    scene_.excuses.Add(lost, Now(), Now() + left + kStandsStill, {Touch::Cut, Touch::Start, Touch::Load});
    scene_.excuses.Add(lost, Now() + left, Now() + left + 0.2, {Touch::Kill});
  } else {
    scene_.desk.StandStill(deck);
    // Until it is found out, and the tick behind that.
    const auto stood = u"stood still"_s;
    scene_.excuses.Add(stood, Now(), Now() + 0.2, {Touch::Kill});
    scene_.excuses.Add(stood, Now(), Now() + kStandsStill, {Touch::Silence});
    // And the tick behind that.
    scene_.excuses.Add(stood, Now(), Now() + kStandsStill + 2, {Touch::Cut, Touch::Start, Touch::Load});
  }
  OnLoadDue();
}

void SoakFaults::Speak() {
  scene_.desk.SetSpeaking(1000 * chance_.Below(3), 1 + chance_.Below(10));
  scene_.desk.PressSpeak();
  ++speaking_;
  const int lasts = 1 + chance_.Below(90);
  scene_.excuses.Add(u"speaking"_s, Now(), Now() + lasts + kRise, {Touch::Level});
  After(lasts, [this] {
    // A button is let go once.
    if (--speaking_ == 0) scene_.desk.ReleaseSpeak();
  });
}

void SoakFaults::Pause(const DeskSight& now) {
  if (now.pause) return;
  scene_.desk.TogglePause();
  if (!scene_.desk.Look().pause) return;
  After(5 + chance_.Below(300), [this] { scene_.desk.TogglePause(); });
}

void SoakFaults::SwitchOffAndOn(const DeskSight& now) {
  if (!now.on) return;
  const int away = chance_.Below(5);
  const bool stops = chance_.Below(2) == 0;
  scene_.result.skipped += scene_.desk.Skipped();
  scene_.excuses.Add(u"switched off"_s, Now(), Now() + away + 0.5,
                     {Touch::Silence, Touch::Start, Touch::Load, Touch::Cut, Touch::Kill, Touch::Order});
  scene_.desk.SwitchOff();
  // The next start finds them playing, or silent.
  if (stops) {
    for (const Deck deck : kDecks) scene_.desk.StopDeck(deck);
  }
  After(away, [this] { SwitchOn(); });
}

void SoakFaults::OnLoadDue() {
  loadDueAt_ = Now();
  // One that is only slow holds it up once for each file that is no good.
  const double time =
      scene_.desk.OpenTime() > 1 ? scene_.desk.OpenTime() * (2 + parts_.bad.Count()) : kOneLoad;
  if (!slow_.isEmpty()) scene_.excuses.Add(slow_, Now(), Now() + time, {Touch::Silence});
}

}  // namespace kelvo::testing
