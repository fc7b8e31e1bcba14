#include "datamanager/FileSizes.h"

#include "platform/ErrorLog.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>

namespace kelvo {
namespace {

constexpr std::size_t kFilesALook = 400;

std::vector<std::int64_t> SizesOf(const QStringList& paths) {
  std::vector<std::int64_t> sizes;
  sizes.reserve(static_cast<std::size_t>(paths.size()));
  for (const QString& path : paths) {
    const QFileInfo file(path);
    sizes.push_back(file.isFile() ? file.size() : kSizeMissing);
  }
  return sizes;
}

}  // namespace

FileSizes::FileSizes(EventLoop& loop, Disks& disks, const ManagerTexts& texts)
    : loop_(loop), disks_(disks), texts_(texts) {}

std::int64_t FileSizes::Of(DispMode mode, Mref row) const {
  const Sizes& sizes = sizes_[static_cast<std::size_t>(mode)];
  const auto place = static_cast<std::size_t>(row);
  return place < sizes.size() ? sizes[place] : kSizeUnknown;
}

void FileSizes::Keep(DispMode mode, Mref row, std::int64_t size) {
  Sizes& sizes = Kept(mode);
  const auto place = static_cast<std::size_t>(row);
  if (place >= sizes.size()) sizes.resize(place + 1, kSizeUnknown);
  sizes[place] = size;
}

void FileSizes::Want(DispMode mode, std::vector<Mref> rows) {
  std::erase_if(rows, [&](Mref row) { return Of(mode, row) != kSizeUnknown; });
  wantedMode_ = mode;
  wanted_ = std::move(rows);
  if (!wanted_.empty() && !reading_.Running()) reading_ = ReadWanted();
}

Job<> FileSizes::ReadWanted() {
  while (!wanted_.empty()) {
    const DispMode mode = wantedMode_;
    const std::vector<Mref> rows = std::exchange(wanted_, {});
    const bool read = co_await ReadSome(mode, rows);
    if (!read) continue;
    // What was wanted meanwhile may be known by now.
    std::erase_if(wanted_, [this](Mref row) { return Of(wantedMode_, row) != kSizeUnknown; });
    Q_EMIT Read();
  }
}

Job<bool> FileSizes::ReadSome(DispMode mode, std::span<const Mref> rows) {
  if (rows.empty()) co_return true;
  QStringList paths;
  paths.reserve(static_cast<qsizetype>(rows.size()));
  for (const Mref row : rows) paths.append(texts_.Path(mode, row));
  const unsigned renumbered = renumbered_;
  const auto look = [paths] { return SizesOf(paths); };
  std::optional<std::vector<std::int64_t>> sizes;
  try {
    sizes = co_await disks_.Look(paths.front(), look);
  } catch (...) {
    basHandleError(QStringLiteral(" dman sizes"), tr("The sizes of the files could not be read."));
  }
  if (renumbered != renumbered_) co_return false;
  for (std::size_t place = 0; place < rows.size(); ++place)
    Keep(mode, rows[place], sizes ? (*sizes)[place] : kSizeMissing);
  co_return true;
}

Job<> FileSizes::ReadAll(DispMode mode, std::vector<Mref> rows, const std::function<void(double)>& onShare) {
  Turn turn(loop_);
  const unsigned renumbered = renumbered_;
  for (std::size_t first = 0; first < rows.size() && renumbered == renumbered_; first += kFilesALook) {
    const std::size_t last = std::min(first + kFilesALook, rows.size());
    std::vector<Mref> unknown;
    for (std::size_t place = first; place < last; ++place) {
      if (Of(mode, rows[place]) == kSizeUnknown) unknown.push_back(rows[place]);
    }
    if (!unknown.empty()) {
      const bool read = co_await ReadSome(mode, unknown);
      if (!read) break;
    }
    if (onShare) onShare(static_cast<double>(last) / static_cast<double>(rows.size()));
    co_await turn.Yield();
  }
  Q_EMIT Read();
}

void FileSizes::Forget(DispMode mode) {
  ++renumbered_;
  Kept(mode).clear();
}

void FileSizes::Forget(DispMode mode, Mref row) {
  if (Of(mode, row) != kSizeUnknown) Keep(mode, row, kSizeUnknown);
}

void FileSizes::Remove(Mref track) {
  ++renumbered_;
  for (const DispMode mode : {DispMode::MusicFiles, DispMode::References}) {
    Sizes& sizes = Kept(mode);
    const auto place = static_cast<std::size_t>(track);
    if (place < sizes.size()) sizes.erase(sizes.begin() + static_cast<std::ptrdiff_t>(place));
  }
}

}  // namespace kelvo
