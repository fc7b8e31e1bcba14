#pragma once

#include <QString>
#include <QStringList>

#include <array>

namespace kelvo {

/// The path table through which everything finds the media database: ten slots, of which 1 to 8 hold a
/// folder. A value; absolute paths without a trailing separator.
class Paths {
 public:
  enum Slot : int {
    Playlists = 1,
    Jingles,
    Music,
    Info,
    Categories,
    Artists,
    Albums,
    Utility,
  };
  static constexpr int kFirst = Playlists;
  static constexpr int kLast = Utility;

  /// Fills slot i + 1 from field i of the text, which is the folders joined by "," (see JoinFields). Missing
  /// fields stay empty.
  [[nodiscard]] static Paths FromSetting(const QString& text);
  [[nodiscard]] QString ToSetting() const;

  /// The folders of a new database, each with its own last name, all below `folder`.
  [[nodiscard]] static Paths Below(const QString& folder);
  /// The last folder name of a slot: "Kelvo2007_Playlists" and so on.
  [[nodiscard]] static QString FolderName(int slot);

  /// Why the table can't keep `folder`, in words: it is no whole path; empty when it can.
  [[nodiscard]] static QString WhyNotKept(const QString& folder);

  /// The folder in `slot`. Throws Failure outside 0..9.
  [[nodiscard]] const QString& operator()(int slot) const;
  void Set(int slot, const QString& folder);

  bool operator==(const Paths&) const = default;

 private:
  std::array<QString, 10> slots_;
};

}  // namespace kelvo
