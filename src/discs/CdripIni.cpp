#include "discs/CdripIni.h"

#include "discs/DiscTrackWriter.h"
#include "platform/AtomicFile.h"
#include "platform/TextFile.h"

#include <QFileInfo>

#include <cstdlib>
#include <optional>

namespace kelvo {
namespace {

/// Ten seconds: more than any drive is off, and far from the ends of a number.
constexpr int kMostOffset = 441000;
constexpr int kMostSpeed = 72;

std::optional<ReadMode> ModeOf(const QString& word) {
  if (word == QLatin1StringView("off")) return ReadMode::Once;
  if (word == QLatin1StringView("fast")) return ReadMode::Twice;
  if (word == QLatin1StringView("full")) return ReadMode::Full;
  return std::nullopt;
}

/// False when the line says nothing.
bool Take(CdripIni& ini, const QString& key, const QString& value) {
  const auto number = [&value](int& into, int lowest, int highest) {
    bool known = false;
    const int typed = value.toInt(&known);
    if (known && typed >= lowest && typed <= highest) into = typed;
    return known && typed >= lowest && typed <= highest;
  };
  if (key == QLatin1StringView("device")) {
    ini.device = value;
  } else if (key == QLatin1StringView("readoffset")) {
    return number(ini.offset, -kMostOffset, kMostOffset);
  } else if (key == QLatin1StringView("speed")) {
    return number(ini.speed, 0, kMostSpeed);
  } else if (key == QLatin1StringView("writer")) {
    ini.writer = value;
  } else if (const auto mode = ModeOf(value.toLower()); key == QLatin1StringView("paranoia") && mode) {
    ini.mode = *mode;
  } else {
    return false;
  }
  return true;
}

}  // namespace

CdripIni CdripIni::FromBytes(const QByteArray& bytes) {
  CdripIni ini;
  ini.writer = WriterName::kMp3;
  for (const QString& each : TextFile::FromBytes(bytes).Lines()) {
    const QString line = each.trimmed();
    if (line.isEmpty() || line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#')) ||
        line.startsWith(QLatin1Char('[')))
      continue;
    const qsizetype sign = line.indexOf(QLatin1Char('='));
    const bool taken =
        sign > 0 && Take(ini, line.left(sign).trimmed().toLower(), line.mid(sign + 1).trimmed());
    if (!taken) ini.nonsense.append(line);
  }
  if (ini.writer.isEmpty()) ini.writer = WriterName::kMp3;
  return ini;
}

QByteArray CdripIni::First() {
  return TextFile(
             {QStringLiteral("; How discs are read. The ripper reads this file when it is opened."),
              QStringLiteral("[cdrip]"),
              QStringLiteral("; The drive that is chosen at first, such as /dev/sr0. Empty: the first one."),
              QStringLiteral("Device="),
              QStringLiteral("; Frames by which the drive reads too early; negative: too late."),
              QStringLiteral("ReadOffset=0"),
              QStringLiteral("; Times as fast as it is heard; 0: as the drive likes."),
              QStringLiteral("Speed=0"),
              QStringLiteral("; off: one pass. fast: two passes, careful reading where they differ. full: "
                             "careful reading of everything."),
              QStringLiteral("Paranoia=fast"),
              QStringLiteral("; ") + WriterName::kMp3 + QStringLiteral(" or ") + WriterName::kWave,
              QStringLiteral("Writer=") + WriterName::kMp3})
      .ToBytes();
}

CdripIni ReadCdripIni(const QString& path) {
  if (!QFileInfo::exists(path)) ReplaceFile(path, CdripIni::First());
  return CdripIni::FromBytes(ReadWholeFile(path));
}

}  // namespace kelvo
