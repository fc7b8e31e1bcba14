#pragma once

#include "platform/SettingsStore.h"

#include <QLatin1StringView>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <utility>

namespace kelvo {

// What the program keeps in its settings is declared once, in the room that it belongs to, as a constant of
// one of the kinds below. Each says where the setting is kept, what it is when nothing is stored, and how the
// stored text is read: a text that is nonsense never stops the reader.

/// Where a setting is kept.
struct SettingPlace {
  QLatin1StringView section;
  QLatin1StringView key;
};

/// A whole number. What is no number counts as missing, a number outside its range as the end of the range.
struct NumberSetting {
  using Value = int;
  SettingPlace place;
  int fallback;
  int lowest;
  int highest;

  [[nodiscard]] int Read(const std::optional<QString>& text) const;
  [[nodiscard]] QString Write(int value) const;
};

/// "True" or "False".
struct TruthSetting {
  using Value = bool;
  SettingPlace place;
  bool fallback;

  [[nodiscard]] bool Read(const std::optional<QString>& text) const;
  [[nodiscard]] QString Write(bool value) const;
};

/// On when the text is the number 1, off with every other text.
struct SwitchSetting {
  using Value = bool;
  SettingPlace place;
  bool fallback;

  [[nodiscard]] bool Read(const std::optional<QString>& text) const;
  [[nodiscard]] QString Write(bool value) const;
};

struct TextSetting {
  using Value = QString;
  SettingPlace place;
  QLatin1StringView fallback = QLatin1StringView();

  [[nodiscard]] QString Read(const std::optional<QString>& text) const;
  [[nodiscard]] QString Write(const QString& value) const { return value; }
};

struct Colour {
  std::uint8_t red = 0;
  std::uint8_t green = 0;
  std::uint8_t blue = 0;
  bool operator==(const Colour&) const = default;
};

/// Three whole numbers 0 to 255, red, green and blue, joined by ",". None when the text is anything else.
struct ColourSetting {
  using Value = std::optional<Colour>;
  SettingPlace place;
  Colour fallback;

  [[nodiscard]] std::optional<Colour> Read(const std::optional<QString>& text) const;
  [[nodiscard]] QString Write(const std::optional<Colour>& value) const;
};

/// Several values in one text: `T::FromSetting(text)` reads them and `ToSetting()` writes them. None when
/// nothing is stored, or the word that stands for nothing.
template <typename T>
struct RecordSetting {
  using Value = std::optional<T>;
  SettingPlace place;
  QLatin1StringView nothing;

  [[nodiscard]] std::optional<T> Read(const std::optional<QString>& text) const {
    if (!text || *text == nothing) return std::nullopt;
    return T::FromSetting(*text);
  }
  [[nodiscard]] QString Write(const std::optional<T>& value) const {
    return value ? value->ToSetting() : QString(nothing);
  }
};

namespace setting {

// Sections, and the ends of whole numbers as their readers hold them.
inline constexpr QLatin1StringView kStartup("Startup");
inline constexpr QLatin1StringView kConStartup("ConStartup");
inline constexpr QLatin1StringView kProgInfo("ProgInfo");
inline constexpr int kMost16 = 32767;
inline constexpr int kMost32 = 2147483647;

}  // namespace setting

/// Texts joined by ",". A comma inside of one is written as "%2C", and a "%" that would make such a sign, or
/// the sign of a "%", as "%25"; everything else stands as it is.
[[nodiscard]] QString JoinFields(const QStringList& fields);
[[nodiscard]] QStringList SplitFields(const QString& text);

/// The settings of this program, of all that the store holds those under its title: the way by which every
/// setting is read and written. A value; the store outlives it. Logic thread.
class ProgramSettings {
 public:
  ProgramSettings(SettingsStore& store, QString title) : store_(&store), title_(std::move(title)) {}

  template <typename Setting>
  [[nodiscard]] typename Setting::Value Get(const Setting& setting) const {
    return setting.Read(store_->Find(title_, setting.place.section, setting.place.key));
  }
  template <typename Setting>
  void Set(const Setting& setting, const typename Setting::Value& value) const {
    store_->SaveSetting(title_, setting.place.section, setting.place.key, setting.Write(value));
  }
  /// Calls `handler` with the new value each time that the stored text changes, whoever changes it, as long
  /// as `listener` lives. The declaration outlives it too.
  template <typename Setting, typename Handler>
  void Listen(const Setting& setting, const QObject* listener, Handler handler) const {
    QObject::connect(store_, &SettingsStore::SettingChanged, listener,
                     [settings = *this, &setting, handler = std::move(handler)](
                         const QString& title, const QString& section, const QString& key) {
                       if (settings.Means(setting.place, title, section, key)) handler(settings.Get(setting));
                     });
  }

 private:
  [[nodiscard]] bool Means(const SettingPlace& place, const QString& title, const QString& section,
                           const QString& key) const;

  SettingsStore* store_;
  QString title_;
};

}  // namespace kelvo
