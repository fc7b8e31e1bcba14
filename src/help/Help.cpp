#include "help/Help.h"

namespace kelvo {
namespace {

const QString kWindow = QStringLiteral("window:");
const QString kTopic = QStringLiteral("topic:");
const QString kPage = QStringLiteral(".md");

}  // namespace

Help::Help(Services services) : services_(std::move(services)) {
  ListRows();
}

const ManualPage* Help::Page() const {
  const int number = Book().PageOf(place_.page);
  return number < 0 ? nullptr : &Book().Pages()[static_cast<std::size_t>(number)];
}

void Help::Open(const ManualPlace& place) {
  if (Book().PageOf(place.page) < 0) return;
  if (place != place_) {
    back_.push_back(place_);
    forward_.clear();
    place_ = place;
  }
  Q_EMIT Moved();
}

void Help::Follow(const QString& link) {
  if (link.startsWith(kWindow)) {
    services_.open(link.sliced(kWindow.size()));
    return;
  }
  const QString page = link.section(QLatin1Char('#'), 0, 0);
  const QString heading = link.section(QLatin1Char('#'), 1);
  if (page.isEmpty()) {
    Open({place_.page, heading});
  } else if (page.endsWith(kPage)) {
    Open({page.chopped(kPage.size()), heading});
  }
}

void Help::OpenFor(const QString& wish) {
  Open(wish.startsWith(kTopic) ? Book().ForTopic(wish.sliced(kTopic.size()).toInt())
                               : Book().ForWindow(wish));
}

void Help::Back() {
  if (back_.empty()) return;
  forward_.push_back(std::exchange(place_, back_.back()));
  back_.pop_back();
  Q_EMIT Moved();
}

void Help::Forward() {
  if (forward_.empty()) return;
  back_.push_back(std::exchange(place_, forward_.back()));
  forward_.pop_back();
  Q_EMIT Moved();
}

void Help::Find(const QString& words) {
  if (words.simplified() == words_) return;
  words_ = words.simplified();
  ListRows();
}

void Help::ListRows() {
  const std::vector<ManualPage>& pages = Book().Pages();
  std::vector<HelpRow> rows;
  if (words_.isEmpty()) {
    for (int number = 0; number < static_cast<int>(pages.size()); ++number)
      rows.push_back({number, pages[static_cast<std::size_t>(number)].title});
  } else {
    for (const ManualHit& hit : Book().Find(words_))
      rows.push_back({hit.page, pages[static_cast<std::size_t>(hit.page)].title, hit.excerpt});
  }
  rows_.Replace(std::move(rows));
}

}  // namespace kelvo
