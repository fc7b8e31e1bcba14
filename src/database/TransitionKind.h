#pragma once

namespace kelvo {

/// How one deck takes over from the other. The numbers are those of the track info files, of the session
/// records and of the playlists.
enum class TransitionKind : int {
  None = 0,      ///< no transition: the slider is moved by hand, or nothing is chosen yet
  Dub = 1,       ///< both decks at full volume while the button is held
  PartFade = 2,  ///< the coming deck jumps to full, the going one fades from a quarter down
  Pan = 3,       ///< a cross-fade
};

/// The going deck is faded out.
[[nodiscard]] constexpr bool IsFade(TransitionKind kind) {
  return kind == TransitionKind::PartFade || kind == TransitionKind::Pan;
}

}  // namespace kelvo
