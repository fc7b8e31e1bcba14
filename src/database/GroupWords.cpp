#include "database/GroupWords.h"

#include "database/Catalogue.h"

#include <QCoreApplication>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(GroupWords)
};

}  // namespace

QString ElementDetails(const GroupElement& element, const Catalogue& catalogue) {
  switch (element.code) {
    case SessionCode::Loaded:
      return QStringLiteral("Load ") + (catalogue.IsTrack(element.track) ? catalogue.TrackNames[element.track]
                                                                         : Text::tr("(not in the library)"));
    case SessionCode::TrackStarted:
      return QStringLiteral("Start Track");
    case SessionCode::DubStarted:
      return QStringLiteral("Start Dub");
    case SessionCode::DubEnded:
      return QStringLiteral("End Dub");
    case SessionCode::FadeStarted:
      return QStringLiteral("Start Fade");
    case SessionCode::FadeEnded:
      return QStringLiteral("End Fade");
    case SessionCode::TrackStopped:
      return QStringLiteral("Stop Track");
    case SessionCode::PositionChangedDeckOne:
    case SessionCode::PositionChangedDeckTwo:
      return QStringLiteral("Change Track Position");
    case SessionCode::EndOfTrack:
      return QStringLiteral("Play Track Until");
    case SessionCode::Repeat:
      return QStringLiteral("Repeat Play List");
  }
  return {};
}

QString FadeWord(TransitionKind fade) {
  switch (fade) {
    case TransitionKind::Dub:
      return QStringLiteral("Dub");
    case TransitionKind::PartFade:
      return QStringLiteral("Part");
    case TransitionKind::Pan:
      return QStringLiteral("Pan");
    case TransitionKind::None:
      break;
  }
  return QStringLiteral("-");
}

}  // namespace kelvo
