#include "platform/Words.h"

#include <QByteArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace kelvo {
namespace {

bool IsBlank(QChar character) {
  return character == QLatin1Char(' ') || character == QLatin1Char('\t') || character == QLatin1Char('\n');
}

bool IsDigit(QChar character) {
  return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

/// Goes through a text without its blanks.
class NumberScanner {
 public:
  explicit NumberScanner(QStringView text) : text_(text) { SkipBlanks(); }

  [[nodiscard]] QChar Here() const { return at_ < text_.size() ? text_[at_] : QChar(); }
  void Next() {
    ++at_;
    SkipBlanks();
  }
  bool Take(QLatin1StringView oneOf) {
    if (at_ >= text_.size() || !oneOf.contains(Here())) return false;
    Next();
    return true;
  }
  /// Appends the digits that come, and says whether there were any.
  bool TakeDigits(QByteArray& digits) {
    const bool any = IsDigit(Here());
    for (; IsDigit(Here()); Next()) digits.append(Here().toLatin1());
    return any;
  }

 private:
  void SkipBlanks() {
    while (at_ < text_.size() && IsBlank(text_[at_])) ++at_;
  }
  QStringView text_;
  qsizetype at_ = 0;
};

int DigitOf(QChar character) {
  if (IsDigit(character)) return character.unicode() - u'0';
  const char16_t lower = character.unicode() | 0x20;
  return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : 99;
}

/// The value of "-12.5e3"; what is too large or too small for a double becomes the greatest one, or 0.
double NumberOf(const QByteArray& number) {
  double value = 0;
  if (std::from_chars(number.begin(), number.end(), value).ec != std::errc::result_out_of_range) return value;
  const bool negative = number.startsWith('-');
  const bool hasExponent = number.contains('e');
  const bool vanishes = hasExponent ? number.contains("e-") : number.startsWith(negative ? "-0." : "0.");
  if (vanishes) return 0;
  return negative ? std::numeric_limits<double>::lowest() : std::numeric_limits<double>::max();
}

double WholeOfBase(NumberScanner scan, int base) {
  double value = 0;
  for (; DigitOf(scan.Here()) < base; scan.Next()) value = value * base + DigitOf(scan.Here());
  return std::min(value, std::numeric_limits<double>::max());
}

/// `value` times `scale` as a whole number, half away from zero. Rounded as the decimal figure that a reader
/// sees: the binary neighbour of 1.005 lies below it and would go down.
double ScaledWhole(double value, double scale) {
  if (!std::isfinite(value)) return 0;
  constexpr int kDigitsOfDouble = 15;
  return std::round(QByteArray::number(value * scale, 'g', kDigitsOfDouble).toDouble());
}

QString WithDecimals(double value, int decimals) {
  const double scale = std::pow(10.0, decimals);
  const double whole = ScaledWhole(value, scale);
  // No "-0.00": what rounds to nothing has no sign.
  return QString::number(whole == 0 ? 0.0 : whole / scale, 'f', decimals);
}

bool BeginsWord(QChar before) {
  return before.isSpace() || before == QLatin1Char('(');
}

/// The place of the last extension's dot, -1 when there is none.
qsizetype DotOf(const QString& fileName) {
  const qsizetype nameAt = fileName.lastIndexOf(QLatin1Char('/')) + 1;
  const qsizetype dot = fileName.lastIndexOf(QLatin1Char('.'));
  return dot > nameAt ? dot : -1;
}

}  // namespace

qint64 Int(double value) {
  if (std::isnan(value)) return 0;
  const double floor = std::floor(value);
  // The limits as doubles are 2 to the 63rd, which the greatest whole number does not reach.
  constexpr double kBeyond = 9223372036854775808.0;
  if (floor >= kBeyond) return std::numeric_limits<qint64>::max();
  if (floor < -kBeyond) return std::numeric_limits<qint64>::min();
  return static_cast<qint64>(floor);
}

double Val(QStringView text) {
  NumberScanner scan(text);
  if (scan.Take(QLatin1StringView("&"))) {
    if (scan.Take(QLatin1StringView("Hh"))) return WholeOfBase(scan, 16);
    if (scan.Take(QLatin1StringView("Oo"))) return WholeOfBase(scan, 8);
    return 0;
  }

  QByteArray number;
  if (scan.Here() == QLatin1Char('-')) number.append('-');
  scan.Take(QLatin1StringView("+-"));
  bool any = scan.TakeDigits(number);
  if (scan.Take(QLatin1StringView("."))) {
    number.append(any ? "." : "0.");
    QByteArray decimals;
    const bool more = scan.TakeDigits(decimals);
    number.append(more ? decimals : QByteArrayLiteral("0"));
    any = any || more;
  }
  if (!any) return 0;
  if (scan.Take(QLatin1StringView("eEdD"))) {
    QByteArray exponent(scan.Here() == QLatin1Char('-') ? "e-" : "e");
    scan.Take(QLatin1StringView("+-"));
    if (scan.TakeDigits(exponent)) number.append(exponent);
  }
  return NumberOf(number);
}

int WholeNumber(QStringView text, int lowest, int highest) {
  return static_cast<int>(
      std::clamp(std::nearbyint(Val(text)), static_cast<double>(lowest), static_cast<double>(highest)));
}

bool TruthValue(QStringView text, bool fallback) {
  const QStringView word = text.trimmed();
  if (word.compare(QLatin1StringView("True"), Qt::CaseInsensitive) == 0) return true;
  if (word.compare(QLatin1StringView("False"), Qt::CaseInsensitive) == 0) return false;
  bool isNumber = false;
  const double number = word.toDouble(&isNumber);
  return isNumber && std::isfinite(number) ? number != 0 : fallback;
}

QString TruthText(bool value) {
  return value ? QStringLiteral("True") : QStringLiteral("False");
}

QString Format00(qint64 value) {
  const QString digits = QString::number(value);
  const qsizetype sign = value < 0 ? 1 : 0;
  return digits.size() - sign >= 2 ? digits : QString(digits).insert(sign, QLatin1Char('0'));
}

QString Format0(double value) {
  return WithDecimals(value, 0);
}
QString Format000(double value) {
  return WithDecimals(value, 2);
}
QString Format0Point0(double value) {
  return WithDecimals(value, 1);
}

QString MinutesSeconds(double seconds) {
  const qint64 whole = std::max<qint64>(Int(seconds), 0);
  return Format00(whole / 60) + QLatin1Char(':') + Format00(whole % 60);
}

QString LengthText(double seconds) {
  return seconds < 0 ? QStringLiteral("?") : MinutesSeconds(seconds);
}

QString HoursMinutesSeconds(qint64 seconds) {
  const qint64 whole = std::max<qint64>(seconds, 0);
  return Format00(whole / 3600) + QLatin1Char(':') + Format00(whole / 60 % 60) + QLatin1Char(':') +
         Format00(whole % 60);
}

QString ProperCase(const QString& text) {
  QString proper = text;
  bool begins = true;
  for (QChar& character : proper) {
    const bool next = BeginsWord(character);
    character = begins ? character.toUpper() : character.toLower();
    begins = next;
  }
  return proper;
}

QString Counted(qint64 number, const QString& one, const QString& many) {
  return QString::number(number) + QLatin1Char(' ') + (number == 1 ? one : many);
}

QString FoldedText(const QString& text) {
  QString folded;
  // By way of the capitals: a sharp s is two letters only there.
  const QString parts = text.normalized(QString::NormalizationForm_KD).toUpper().toCaseFolded();
  folded.reserve(parts.size());
  for (const QChar letter : parts) {
    if (!letter.isMark()) folded.append(letter);
  }
  return folded;
}

QString BaseName(const QString& fileName) {
  return fileName.left(DotOf(fileName));
}

QString UpperExtension(const QString& fileName) {
  const qsizetype dot = DotOf(fileName);
  return dot < 0 ? QString() : fileName.mid(dot + 1).toUpper();
}

}  // namespace kelvo
