#pragma once

#include <QByteArray>
#include <QString>

#include <map>
#include <optional>
#include <tuple>
#include <vector>

namespace kelvo {

/// The text of a settings file: `[Title / Section]` heads with `Key=Value` lines below them, UTF-8. Any text
/// can be in any place; what would not come back is written with a backslash. Lines that say nothing
/// (comments, blank lines, garbage) keep their place and their bytes, and so does every line whose value
/// isn't changed. Section and key names compare without regard to case. A value; any thread.
class SettingsText {
 public:
  SettingsText() = default;
  [[nodiscard]] static SettingsText FromBytes(const QByteArray& bytes);
  [[nodiscard]] QByteArray ToBytes() const;

  [[nodiscard]] std::optional<QString> Value(const QString& title, const QString& section,
                                             const QString& key) const;
  /// Returns whether the text changed.
  bool SetValue(const QString& title, const QString& section, const QString& key, const QString& value);
  bool Remove(const QString& title, const QString& section, const QString& key);

  /// True when the bytes were no settings at all: no text, or not one line of it that says anything beside
  /// remarks and blanks. Nothing of them is worth to be kept in a settings file.
  [[nodiscard]] bool IsGarbage() const { return garbage_; }

 private:
  struct Entry {
    QString key;
    QString value;
  };
  struct Line {
    QByteArray bytes;  ///< with its line end
    std::optional<Entry> entry;
  };
  struct Section {
    std::optional<std::pair<QString, QString>>
        name;  ///< title and section; none for what precedes the first head
    QByteArray head;
    std::vector<Line> lines;
  };
  struct Place {
    size_t section;
    size_t line;
  };
  using Address = std::tuple<QString, QString, QString>;
  [[nodiscard]] static Address AddressOf(const QString& title, const QString& section, const QString& key);
  [[nodiscard]] static std::optional<std::pair<QString, QString>> NameInHead(QStringView line);
  [[nodiscard]] static std::optional<Entry> EntryInLine(QStringView line);

  void Index();
  void EndLastLine();
  Section& SectionFor(const QString& title, const QString& section);

  std::vector<Section> sections_;
  std::map<Address, Place> places_;
  bool garbage_ = false;
};

}  // namespace kelvo
