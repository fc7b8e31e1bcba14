#pragma once

#include <QByteArray>

// Music files as small as they can be.

namespace kelvo::testing {

/// A tenth of a second of silence as MPEG audio.
inline QByteArray SoundBytes() {
  return QByteArray("\xFF\xFB\x90\x00", 4).leftJustified(417, '\0').repeated(4);
}

/// A frame of an ID3v2 tag, and one that holds plain text.
inline QByteArray Frame(const QByteArray& name, const QByteArray& body) {
  return name + QByteArray(3, '\0') + static_cast<char>(body.size()) + QByteArray(2, '\0') + body;
}
inline QByteArray TextFrame(const QByteArray& name, const QByteArray& text) {
  return Frame(name, '\0' + text);
}

/// The tag that a file begins with.
inline QByteArray Id3v2(const QByteArray& frames) {
  const auto size = frames.size();
  return QByteArray("ID3\x03\x00\x00\x00\x00", 8) + static_cast<char>(size >> 7) +
         static_cast<char>(size & 0x7F) + frames;
}

}  // namespace kelvo::testing
