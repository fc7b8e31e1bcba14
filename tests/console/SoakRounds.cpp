#include "console/SoakRounds.h"

#include <cmath>

namespace kelvo::testing {

using namespace Qt::StringLiterals;

namespace {

/// The desk leaves a file that failed alone for a minute.
constexpr double kLeftAlone = 75;
/// The chance that a row is left out of so many draws may be one in this many.
constexpr double kEvenings = 1e6;

}  // namespace

void SoakBadFiles::End(const QString& path, double now) {
  since_.remove(path);
  until_[path] = now;
}

bool SoakBadFiles::Lately(const QString& path, double now) const {
  return since_.contains(path) || all_ + kLeftAlone > now || until_.value(path, -1000) + kLeftAlone > now;
}

void SoakRounds::OnSwitch() {
  edited_ = unknown_ = switched_ = true;
  if (scene_.options.mode != SoakMode::Random) missed_.clear();
  heard_.clear();
  failed_.clear();
  failedBefore_.clear();
}

void SoakRounds::Look(const DeskSight& now) {
  if (scene_.Preview()) {
    for (const SoakTrack& track : scene_.desk.Tracks()) {
      if (bad_.Lately(track.path, now.at)) failed_.insert(track.path);
    }
    return;
  }
  if (!edited_ || switched_ || !scene_.excuses.For(Touch::Order, now.at).isEmpty()) return;
  const bool loading = now.decks[Deck::One].loading || now.decks[Deck::Two].loading;
  if (loading) return;
  cursor_ = scene_.desk.SelectedRow();
  edited_ = unknown_ = false;
  // An order by chance does not care where the operator clicked.
  if (scene_.options.mode != SoakMode::Random) missed_.clear();
}

void SoakRounds::OnLoaded(const QString& path, const QString& before, const QString& other) {
  if (scene_.Preview()) {
    CheckPreview(path);
    return;
  }
  const QStringList rows = scene_.desk.RowPaths();
  if (edited_ || unknown_) return;
  if (scene_.options.mode == SoakMode::Random) {
    CheckRandom(path, other, rows);
  } else {
    CheckOrder(path, before, other, rows);
  }
}

void SoakRounds::CheckOrder(const QString& path, const QString& before, const QString& other,
                            const QStringList& rows) {
  const double now = scene_.desk.Now();
  const auto count = static_cast<int>(rows.size());
  for (int step = 1; step <= count; ++step) {
    const int row = (cursor_ + step - 1) % count + 1;
    const QString& each = rows[row - 1];
    if (each == path) {
      cursor_ = row;
      CountMissed(path, other, rows, count + 2);
      return;
    }
    if (each == before || each == other || bad_.Lately(each, now)) {
      // Its turn has passed for a reason.
      missed_[each] = 0;
      continue;
    }
    scene_.Violate(u"row %1 is passed over: it can be played, %2 was loaded"_s.arg(row).arg(path));
    cursor_ = static_cast<int>(rows.indexOf(path)) + 1;
    return;
  }
  scene_.Violate(u"%1 was loaded, which is in no row"_s.arg(path));
}

void SoakRounds::CheckRandom(const QString& path, const QString& other, const QStringList& rows) {
  if (!rows.contains(path)) scene_.Violate(u"%1 was loaded, which is in no row"_s.arg(path));
  const double now = scene_.desk.Now();
  const auto another = [&](const QString& each) { return each != other && !bad_.Lately(each, now); };
  if (path == other && std::any_of(rows.begin(), rows.end(), another))
    scene_.Violate(u"%1 was loaded a second time"_s.arg(path));
  // Each row has a share in the draws at least as great as any other that can be drawn.
  const double share = 1.0 / std::max(static_cast<double>(rows.size()) - 1, 1.0);
  CountMissed(path, other, rows, static_cast<int>(std::log(kEvenings * 30) / -std::log1p(-share)) + 1);
}

void SoakRounds::CountMissed(const QString& path, const QString& other, const QStringList& rows, int most) {
  const double now = scene_.desk.Now();
  for (const QString& each : rows) {
    if (each == path) {
      missed_[each] = 0;
    } else if (each != other && !bad_.Lately(each, now) && ++missed_[each] == most) {
      scene_.Violate(u"%1 was not heard in %2 loads"_s.arg(each).arg(most));
    }
  }
}

void SoakRounds::CheckPreview(const QString& path) {
  // Perhaps chosen before the desk was switched off.
  if (!scene_.excuses.For(Touch::Order, scene_.desk.Now()).isEmpty()) failedBefore_.insert(path);
  if (heard_.contains(path) && !failedBefore_.contains(path)) {
    for (const SoakTrack& track : scene_.desk.Tracks()) {
      const bool failed = failed_.contains(track.path) || failedBefore_.contains(track.path);
      if (failed || heard_.contains(track.path)) continue;
      scene_.Violate(u"%1 comes again before %2 has been heard"_s.arg(path, track.path));
      break;
    }
    // Where the new round began is not known: what failed before may belong to it already.
    failedBefore_ = (failedBefore_ & heard_) | std::exchange(failed_, {});
    heard_.clear();
  }
  heard_.insert(path);
}

}  // namespace kelvo::testing
