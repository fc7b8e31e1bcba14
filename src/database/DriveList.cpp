#include "database/DriveList.h"

#include "database/NetworkDrive.h"
#include "platform/ErrorLog.h"
#include "platform/EventLoop.h"
#include "platform/Prompter.h"

#include <QDir>

#include <algorithm>

namespace kelvo {

DriveList::DriveList(EventLoop& loop, Prompter& prompter, QString title)
    : loop_(loop), prompter_(prompter), title_(std::move(title)) {}

bool DriveList::Lists(const QString& path) const {
  return std::any_of(places_.begin(), places_.end(),
                     [&path](const Place& each) { return each.path == path; });
}

void DriveList::Refresh() {
  if (!refreshing_.Running()) refreshing_ = RunRefresh();
}

Job<> DriveList::RunRefresh() {
  const auto list = [] { return ListVolumes(); };
  const std::vector<MountedVolume> volumes = co_await loop_.Offload(EventLoop::Lane::Apart, list);
  places_.clear();
  for (const MountedVolume& volume : volumes) places_.push_back({volume.kind, volume.path});
  for (const Place& place : added_) {
    if (!Lists(place.path)) places_.push_back(place);
  }
  Q_EMIT Changed();
}

void DriveList::MapNetworkDrive() {
  if (!asking_.Running()) asking_ = RunMap();
}

Job<> DriveList::RunMap() {
  const std::optional<QString> path = co_await kelvo::MapNetworkDrive(loop_, prompter_, title_);
  if (path) Add({MountedVolume::Kind::Network, QDir::cleanPath(*path)});
}

void DriveList::Browse() {
  if (!asking_.Running()) asking_ = RunBrowse();
}

Job<> DriveList::RunBrowse() {
  const std::optional<QString> path = co_await prompter_.PickFolder(title_, QDir::homePath());
  if (path) AddFolder(*path);
}

void DriveList::AddFolder(const QString& path) {
  Add({std::nullopt, QDir::cleanPath(path)});
}

void DriveList::Add(const Place& place) {
  if (!Lists(place.path)) {
    places_.push_back(place);
    added_.push_back(place);
    Q_EMIT Changed();
  }
  Q_EMIT Added(place.path);
}

}  // namespace kelvo
