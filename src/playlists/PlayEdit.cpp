#include "playlists/PlayEdit.h"

#include "database/TrackNames.h"
#include "platform/Words.h"

#include <limits>

namespace kelvo {
namespace {

const QString kUnknown = QStringLiteral("?");
const std::array kBases{&kAllCategories, &kAllArtists, &kAllAlbums};

FadePair PairOf(int in, int out) {
  return {in, out};
}

TransitionKind KindOrDub(TransitionKind kind) {
  return kind == TransitionKind::None ? TransitionKind::Dub : kind;
}

PlayMode ModeOf(const PlayEdit& edit) {
  return {edit.ownFades, KindOrDub(edit.Fade(FadePanel::In).kind), KindOrDub(edit.Fade(FadePanel::Out).kind)};
}

QString FigureText(const QString& text) {
  return text.trimmed().isEmpty() ? QStringLiteral("0") : text.trimmed();
}

}  // namespace

PlayEdit ReadPlayEdit(const TrackInfo& info, const TrackDefaults& defaults) {
  PlayEdit edit;
  for (std::size_t set = 0; set < kNameSets; ++set) {
    const QString line = info.Text(kNameLines[set]);
    for (const QStringView name : ShownItems(line)) edit.names[set].append(name.toString());
  }
  const ReleaseDate date = info.Get(InfoFields::ReleaseDate);
  edit.year = date.year;
  edit.month = date.month;
  edit.bpm = info.Text(InfoLine::Bpm);
  edit.hi = info.Text(InfoLine::HiPos);
  const TrackPlaySettings play = info.Play(defaults);
  edit.ownFades = play.Mode.custom;
  edit.Fade(FadePanel::In) = {play.Mode.fadeOut, play.FadePosition.fadeOut, play.FadeSpeed.fadeOut};
  edit.Fade(FadePanel::Out) = {play.Mode.fadeIn, play.FadePosition.FadeIn(), play.FadeSpeed.FadeIn()};
  edit.startStrong = play.StartStyle != 0;
  edit.endStrong = play.EndStyle != 0;
  edit.duration = WholeNumber(info.Text(InfoLine::DurationSeconds), -1, std::numeric_limits<int>::max());
  edit.comments = info.Comments().join(QLatin1Char('\n'));
  return edit;
}

PlayEdit DefaultPlayEdit(const TrackDefaults& defaults) {
  PlayEdit edit;
  edit.year = QStringLiteral("0000");
  edit.month = MonthNames().first();
  edit.bpm = edit.hi = QStringLiteral("0");
  edit.ownFades = defaults.DefaultFade != 0;
  const FadeEdit fade{TransitionKind::Dub, std::clamp(defaults.DefaultDelta, 0, kMostFadePosition),
                      std::clamp(defaults.DefaultFadeSpeed, 0, kMostFadeSpeed)};
  edit.fades = {fade, fade};
  edit.comments = QStringLiteral("Defaults Loaded !");
  return edit;
}

PlayEdit MergedEdit(const PlayEdit& before, const PlayEdit& edit, const PlayEdit& now) {
  PlayEdit merged = edit;
  const auto take = [&](auto PlayEdit::*field) {
    if (edit.*field == before.*field) merged.*field = now.*field;
  };
  for (std::size_t set = 0; set < kNameSets; ++set) {
    if (edit.names[set] == before.names[set]) merged.names[set] = now.names[set];
  }
  for (std::size_t place = 0; place < merged.fades.size(); ++place) {
    if (edit.fades[place] == before.fades[place]) merged.fades[place] = now.fades[place];
  }
  take(&PlayEdit::year);
  take(&PlayEdit::month);
  take(&PlayEdit::bpm);
  take(&PlayEdit::hi);
  take(&PlayEdit::ownFades);
  take(&PlayEdit::startStrong);
  take(&PlayEdit::endStrong);
  take(&PlayEdit::duration);
  take(&PlayEdit::comments);
  return merged;
}

void WritePlayEdit(const PlayEdit& edit, const TrackDefaults& defaults, TrackInfo& info) {
  const bool sameComments = ReadPlayEdit(info, defaults).comments == edit.comments;
  for (std::size_t set = 0; set < kNameSets; ++set)
    info.SetText(kNameLines[set], (QStringList(*kBases[set]) + edit.names[set]).join(QLatin1Char(',')));
  info.Set(InfoFields::ReleaseDate, {edit.year, edit.month});
  info.SetText(InfoLine::Bpm, FigureText(edit.bpm));
  info.SetText(InfoLine::HiPos, FigureText(edit.hi));
  const TrackPlaySettings play = PlaySettingsOf(edit);
  info.Set(InfoFields::PlayMode, play.Mode);
  info.Set(InfoFields::FadePosition, play.FadePosition);
  info.Set(InfoFields::FadeSpeed, play.FadeSpeed);
  info.Set(InfoFields::StartStyle, play.StartStyle);
  info.Set(InfoFields::EndStyle, play.EndStyle);
  info.SetText(InfoLine::DurationSeconds, QString::number(edit.duration));
  if (!sameComments) info.SetComments(edit.comments);
}

TrackPlaySettings PlaySettingsOf(const PlayEdit& edit) {
  const FadeEdit& in = edit.Fade(FadePanel::In);
  const FadeEdit& out = edit.Fade(FadePanel::Out);
  return {ModeOf(edit), PairOf(in.position, out.position), PairOf(in.speed, out.speed),
          edit.startStrong ? 1 : 0, edit.endStrong ? 1 : 0};
}

const QStringList& MonthNames() {
  static const QStringList names =
      QStringLiteral("xxx,Jan,Feb,Mar,Apr,May,Jun,Jul,Aug,Sep,Oct,Nov,Dec").split(QLatin1Char(','));
  return names;
}

bool IsFigure(const QString& text) {
  const QString trimmed = text.trimmed();
  return trimmed.isEmpty() || trimmed == kUnknown || NumberIn(trimmed.toStdString()).has_value();
}

ImportedText TextOfInfoFile(const TrackInfo& info, qsizetype lines) {
  const auto bad = [](int line) { return ImportedText{.badLine = line + 1}; };
  if (lines <= kFixedInfoLines) return bad(kFixedInfoLines);
  for (const InfoLine::Line line : kNameLines) {
    if (!info.Text(line).toUpper().startsWith(QStringLiteral("~ALL"))) return bad(line);
  }
  const auto isNumber = [](const QString& text) { return NumberIn(text.toStdString()).has_value(); };
  const QString date = info.Text(InfoLine::ReleaseDate);
  if (!IsDate(date) && !isNumber(date)) return bad(InfoLine::ReleaseDate);
  for (const InfoLine::Line line : {InfoLine::Bpm, InfoLine::HiPos}) {
    if (info.Text(line).trimmed().isEmpty() || !IsFigure(info.Text(line))) return bad(line);
  }
  for (const InfoLine::Line line : {InfoLine::StartStyle, InfoLine::EndStyle}) {
    if (!isNumber(info.Text(line))) return bad(line);
  }
  if (info.Text(InfoLine::Comments).isEmpty()) return bad(InfoLine::Comments);
  return {.badLine = 0, .comments = info.Comments()};
}

}  // namespace kelvo
