#include "help/Manual.h"

#include "platform/Words.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>

// In no namespace, as the macro wants it.
static void InitManual() {
  Q_INIT_RESOURCE(manual);
}

namespace kelvo {
namespace {

const QString kIndex = QStringLiteral("index");

QStringList CapturedIn(const QString& text, const QRegularExpression& pattern) {
  QStringList found;
  for (auto matches = pattern.globalMatch(text); matches.hasNext();) found.append(matches.next().captured(1));
  return found;
}

/// The words of a page without the signs of Markdown: links keep their words, pictures nothing.
QString PlainOf(QString text) {
  static const QRegularExpression picture(QStringLiteral("!\\[[^\\]]*\\]\\([^)]*\\)"));
  static const QRegularExpression link(QStringLiteral("\\[([^\\]]*)\\]\\([^)]*\\)"));
  static const QRegularExpression signs(QStringLiteral("[*_`#|>]"));
  text.remove(picture);
  text.replace(link, QStringLiteral("\\1"));
  return text.remove(signs);
}

QString HeadingOf(const QString& line) {
  static const QRegularExpression heading(QStringLiteral("^#{1,6}\\s+(.*?)\\s*$"));
  return heading.match(line).captured(1);
}

bool HasAll(const QString& folded, const QStringList& words) {
  return std::all_of(words.begin(), words.end(),
                     [&folded](const QString& word) { return folded.contains(word); });
}

bool HasAny(const QString& folded, const QStringList& words) {
  return std::any_of(words.begin(), words.end(),
                     [&folded](const QString& word) { return folded.contains(word); });
}

QString Excerpt(const ManualPage& page, const QStringList& words) {
  const QStringList paragraphs = PlainOf(page.text).split(QStringLiteral("\n\n"), Qt::SkipEmptyParts);
  const auto found = std::find_if(paragraphs.begin(), paragraphs.end(), [&](const QString& paragraph) {
    return paragraph.trimmed() != page.title && HasAny(FoldedText(paragraph), words);
  });
  return found == paragraphs.end() ? QString() : found->simplified();
}

}  // namespace

Manual::Manual(const QString& folder) : folder_(folder) {
  Read(kIndex);
  if (pages_.empty()) return;
  const ManualPage index = pages_.front();
  for (const QString& link : LinksOf(index)) {
    if (link.endsWith(QLatin1StringView(".md"))) Read(link.chopped(3));
  }
}

Manual Manual::OfProgram() {
  InitManual();
  return Manual(QStringLiteral(":/manual"));
}

void Manual::Read(const QString& id) {
  QFile file(folder_ + QLatin1Char('/') + id + QStringLiteral(".md"));
  if (PageOf(id) >= 0 || !file.open(QIODevice::ReadOnly)) return;
  static const QRegularExpression remark(QStringLiteral("^<!--\\s*(windows|topics):\\s*(.*?)\\s*-->$"));
  ManualPage page{.id = id, .title = {}, .text = {}, .plain = {}};
  ManualPlace place{.page = id};
  for (const QString& line : QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'))) {
    if (const auto match = remark.match(line.trimmed()); match.hasMatch()) {
      auto& places = match.captured(1) == QLatin1StringView("windows") ? windows_ : topics_;
      for (const QString& each : match.captured(2).split(QLatin1Char(' '), Qt::SkipEmptyParts))
        places.insert(each, place);
      continue;
    }
    if (const QString heading = HeadingOf(line); !heading.isEmpty()) {
      // The first one is the page's own title.
      if (page.title.isEmpty()) {
        page.title = heading;
      } else {
        place.heading = SlugOf(heading);
      }
    }
    page.text += line + QLatin1Char('\n');
  }
  page.plain = FoldedText(PlainOf(page.text)).simplified();
  pages_.push_back(std::move(page));
}

int Manual::PageOf(const QString& id) const {
  const auto found =
      std::find_if(pages_.begin(), pages_.end(), [&id](const ManualPage& page) { return page.id == id; });
  return found == pages_.end() ? -1 : static_cast<int>(found - pages_.begin());
}

ManualPlace Manual::ForWindow(const QString& id) const {
  return windows_.value(id, {kIndex});
}

ManualPlace Manual::ForTopic(int topic) const {
  return topics_.value(QString::number(topic), {kIndex});
}

std::vector<ManualHit> Manual::Find(const QString& words) const {
  const QStringList wanted = FoldedText(words).split(QLatin1Char(' '), Qt::SkipEmptyParts);
  std::vector<ManualHit> hits;
  if (wanted.isEmpty()) return hits;
  for (int number = 0; number < static_cast<int>(pages_.size()); ++number) {
    const ManualPage& page = pages_[static_cast<std::size_t>(number)];
    if (HasAll(page.plain, wanted)) hits.push_back({number, Excerpt(page, wanted)});
  }
  std::stable_partition(hits.begin(), hits.end(), [&](const ManualHit& hit) {
    return HasAny(FoldedText(pages_[static_cast<std::size_t>(hit.page)].title), wanted);
  });
  return hits;
}

QString Manual::SlugOf(const QString& heading) {
  QString slug;
  for (const QChar character : heading.toLower()) {
    if (character.isLetterOrNumber() || character == QLatin1Char('-')) slug += character;
    if (character == QLatin1Char(' ')) slug += QLatin1Char('-');
  }
  return slug;
}

QStringList Manual::LinksOf(const ManualPage& page) {
  static const QRegularExpression link(QStringLiteral("\\]\\(([^)\\s]+)\\)"));
  return CapturedIn(page.text, link);
}

QStringList Manual::HeadingsOf(const ManualPage& page) {
  QStringList slugs;
  for (const QString& line : page.text.split(QLatin1Char('\n'))) {
    if (const QString heading = HeadingOf(line); !heading.isEmpty()) slugs.append(SlugOf(heading));
  }
  return slugs;
}

}  // namespace kelvo
