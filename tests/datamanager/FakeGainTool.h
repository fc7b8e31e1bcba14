#pragma once

#include "support/TemporaryTree.h"

#include <QByteArray>
#include <QFile>
#include <QString>
#include <QStringList>

namespace kelvo::testing {

/// A program in the place of the gain tool. What it does with a file is the first word of that file: "ok"
/// measures the gain that follows it and applies what it is told to; others hang, flood, lie or die. It notes
/// every call.
class FakeGainTool {
 public:
  explicit FakeGainTool(const TemporaryTree& tree) : tree_(tree) {
    path_ = tree.Write(QStringLiteral("mp3gain"), R"(#!/bin/sh
file=
for file; do :; done
echo "$*" >> "$0.log"
read -r mode gain < "$file"
step=$(sed -n '2s/STEP //p' "$file")
now=$(awk "BEGIN{printf \"%.6f\", $gain - $step * 1.50514997831991}")
heads='File\tMP3 gain\tdB gain\tMax Amplitude\tMax global_gain\tMin global_gain'
case "$1 $3" in
"/o c")
  printf "$heads"'\tAlbum gain\tAlbum dB gain\tAlbum Max Amplitude\tAlbum Max global_gain\tAlbum Min global_gain\n'
  case $mode in
  tagged) printf '%s\t0\t%s\t20000.5\t210\t80\tNA\tNA\tNA\tNA\tNA\n' "$file" "$now" ;;
  cut) printf '%s\t0\t-9.999999\t20000.5\t210\t80\tNA\tNA\tNA\tNA\tNA\n' "$file" ;;
  *) printf '%s\tNA\tNA\tNA\tNA\tNA\tNA\tNA\tNA\tNA\tNA\n' "$file" ;;
  esac ;;
"/o s")
  printf '          \r 45%% of 1000 bytes analyzed\r' >&2
  case $mode in
  garbage) echo rubbish; exit 0 ;;
  named) printf "$heads"'\nNot enough samples in %s to do analysis\n' "$file"; exit 0 ;;
  absurd) now=1e300 ;;
  hang) exec sleep 100 ;;
  flood) exec yes ;;
  die) kill -9 $$ ;;
  esac
  printf "$heads"'\n%s\t0\t%s\t20000.5\t210\t80\n"Album"\t0\t0.0\t20000.5\t210\t80\n' "$file" "$now" ;;
*)
  case $mode in
  cantopen) echo "Can't open $file for modifying"; exit 0 ;;
  full) echo 'Not enough temp space on disk'; exit 1 ;;
  truncate) : > "$file"; exit 0 ;;
  other) tr x y < "$file" > "$0.other"; cat "$0.other" > "$file"; exit 0 ;;
  nothing) exit 0 ;;
  killed) kill -9 $$ ;;
  esac
  printf 'STEP %+04d' "$2" | dd of="$file" bs=1 seek=21 conv=notrunc 2>/dev/null
  exit 3 ;;
esac
)");
    QFile(path_).setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
  }

  /// A music file on which the tool does `mode`, and whose gain it tells.
  [[nodiscard]] static QByteArray Music(const QByteArray& mode, double gain) {
    QByteArray head = mode + ' ' + QByteArray::number(gain, 'f', 2);
    head = head.leftJustified(20, ' ') + '\n';
    return head + "STEP +000\n" + QByteArray(4000, 'x');
  }
  /// The steps that were applied to such a file.
  [[nodiscard]] static int Steps(const QByteArray& music) { return music.mid(26, 4).toInt(); }

  [[nodiscard]] const QString& Path() const { return path_; }
  /// The calls so far that measured a file or changed one.
  [[nodiscard]] QStringList Calls(const QString& begin = QString()) const {
    QStringList calls = QString::fromUtf8(tree_.Exists(QStringLiteral("mp3gain.log"))
                                              ? tree_.Read(QStringLiteral("mp3gain.log"))
                                              : QByteArray())
                            .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    calls.removeIf([&begin](const QString& call) { return !call.startsWith(begin); });
    return calls;
  }

 private:
  const TemporaryTree& tree_;
  QString path_;
};

}  // namespace kelvo::testing
