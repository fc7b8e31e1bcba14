#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

namespace kelvo {

/// A text file as lines. Files of the house have CR-LF line ends in the single-byte code page Windows-1252;
/// what that page cannot hold turns the file into UTF-8 with a byte order mark. Read are also UTF-8 without
/// one (valid, with at least one multi-byte character) and other line ends. What was read is written back
/// byte for byte where no line was changed: every line keeps its own end, the file its encoding. A value; any
/// thread.
class TextFile {
 public:
  enum class Encoding { Windows1252, Utf8WithMark, Utf8 };

  TextFile() = default;
  explicit TextFile(const QStringList& lines);

  [[nodiscard]] static TextFile FromBytes(const QByteArray& bytes);
  [[nodiscard]] QByteArray ToBytes() const;

  /// Reads the file whole. Throws Failure.
  [[nodiscard]] static TextFile Read(const QString& path);
  /// Replaces the file (see ReplaceFile). Throws Failure.
  void Write(const QString& path) const;

  [[nodiscard]] qsizetype Count() const { return static_cast<qsizetype>(lines_.size()); }
  /// Line `index` from 0; an empty text beyond the end.
  [[nodiscard]] QString Line(qsizetype index) const;
  [[nodiscard]] QStringList Lines() const;
  /// Changes a line; beyond the end the file grows by empty lines.
  void SetLine(qsizetype index, const QString& text);
  void Append(const QString& text);
  void RemoveFrom(qsizetype index);
  [[nodiscard]] Encoding FileEncoding() const { return encoding_; }

 private:
  enum class LineEnd : char { None, CrLf, Lf, Cr };
  struct TextLine {
    QString text;
    LineEnd end = LineEnd::CrLf;  ///< as found; None only in the last line
  };
  [[nodiscard]] LineEnd EndOfNewLine() const;
  [[nodiscard]] QString Joined() const;

  std::vector<TextLine> lines_;
  Encoding encoding_ = Encoding::Windows1252;
};

/// Windows-1252 both ways. The five codes that the page leaves open mean themselves (U+0081 ...), so
/// every byte comes back. `FitsWindows1252` tells whether nothing would be lost.
[[nodiscard]] QString FromWindows1252(QByteArrayView bytes);
[[nodiscard]] bool FitsWindows1252(QStringView text);
/// Characters that do not fit become "?".
[[nodiscard]] QByteArray ToWindows1252(QStringView text);

}  // namespace kelvo
