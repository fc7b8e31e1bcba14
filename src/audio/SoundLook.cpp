#include "audio/SoundLook.h"

#include "audio/engine/OpenDecoder.h"

#include <exception>

namespace kelvo {

QString WhyNotPlayable(const QString& path) {
  try {
    LookForSound(path);
  } catch (const std::exception& failure) {
    return WithoutPath(QString::fromUtf8(failure.what()), path);
  }
  return {};
}

QString WithoutPath(const QString& sentence, const QString& path) {
  return sentence.startsWith(path) ? QStringLiteral("The file") + sentence.mid(path.size()) : sentence;
}

}  // namespace kelvo
