#pragma once

#include <QString>

#include <array>
#include <vector>

namespace kelvo {

class AudioSystem;

/// The text of a result code of the multimedia and mixer interfaces.
[[nodiscard]] QString MixerErrorText(int code);

/// The sound outputs as a tree: mixer, destination line, source line, control, channel, with a current index
/// at each level. Setting an index loads the level below at its first entry. An index out of range throws
/// Failure, its source the property. The list is that of the moment of Create. Logic thread.
class CMixer {
 public:
  explicit CMixer(const AudioSystem& audio) : audio_(audio) {}

  /// Reads the outputs and selects the first. Throws Failure from "CMixer:Create" when there is none.
  void Create();

  [[nodiscard]] int MixerID() const { return mixer_; }
  void SetMixerID(int index);
  [[nodiscard]] QString MixerName() const;
  [[nodiscard]] int numMixerDevs() const { return static_cast<int>(mixers_.size()); }
  /// The open mixer's handle: its number from 1 on; 0 when none is open.
  [[nodiscard]] int hMixer() const { return mixers_.empty() ? 0 : mixer_ + 1; }
  [[nodiscard]] int MixerVerMajor() const { return 1; }
  [[nodiscard]] int MixerVerMinor() const { return 0; }

  [[nodiscard]] int numDestinations() const;
  [[nodiscard]] int DstLineID() const { return destination_.index; }
  void SetDstLineID(int index);
  [[nodiscard]] QString DstLineName() const { return DestinationLine().name; }
  [[nodiscard]] int numDstLineChannels() const { return DestinationLine().channels; }
  [[nodiscard]] int numDstLineControls() const { return static_cast<int>(DestinationLine().controls.size()); }
  [[nodiscard]] int numDstLineConnections() const;
  [[nodiscard]] bool DstLineActive() const { return DestinationLine().active; }
  [[nodiscard]] bool DstLineDisconnected() const { return !DestinationLine().active; }
  [[nodiscard]] int DstLineType() const { return DestinationLine().type; }
  [[nodiscard]] int DstLineTarget() const { return DestinationLine().target; }
  [[nodiscard]] int DstControlID() const { return destination_.control; }
  void SetDstControlID(int index);
  [[nodiscard]] int DstControlType() const { return ControlOf(destination_).type; }
  [[nodiscard]] QString DstControlName() const { return ControlOf(destination_).name; }
  [[nodiscard]] int numDstControlChannels() const;
  [[nodiscard]] int DstChannelID() const { return destination_.channel; }
  void SetDstChannelID(int index);
  [[nodiscard]] int DstChannelValue() const { return ChannelOf(destination_); }
  void SetDstChannelValue(int value) { SetChannel(destination_, value); }
  [[nodiscard]] int DstChannelMinValue() const { return ControlOf(destination_).least; }
  [[nodiscard]] int DstChannelMaxValue() const { return ControlOf(destination_).most; }

  [[nodiscard]] int SrcLineID() const { return source_.index; }
  void SetSrcLineID(int index);
  [[nodiscard]] QString SrcLineName() const { return SourceLine().name; }
  [[nodiscard]] int numSrcLineChannels() const { return SourceLine().channels; }
  [[nodiscard]] int numSrcLineControls() const { return static_cast<int>(SourceLine().controls.size()); }
  [[nodiscard]] int numSrcLineConnections() const { return 0; }
  [[nodiscard]] bool SrcLineActive() const { return SourceLine().active; }
  [[nodiscard]] bool SrcLineDisconnected() const { return !SourceLine().active; }
  [[nodiscard]] int SrcLineType() const { return SourceLine().type; }
  [[nodiscard]] int SrcLineTarget() const { return SourceLine().target; }
  [[nodiscard]] int SrcControlID() const { return source_.control; }
  void SetSrcControlID(int index);
  [[nodiscard]] int SrcControlType() const { return ControlOf(source_).type; }
  [[nodiscard]] QString SrcControlName() const { return ControlOf(source_).name; }
  [[nodiscard]] int numSrcControlChannels() const;
  [[nodiscard]] int SrcChannelID() const { return source_.channel; }
  void SetSrcChannelID(int index);
  [[nodiscard]] int SrcChannelValue() const { return ChannelOf(source_); }
  void SetSrcChannelValue(int value) { SetChannel(source_, value); }
  [[nodiscard]] int SrcChannelMinValue() const { return ControlOf(source_).least; }
  [[nodiscard]] int SrcChannelMaxValue() const { return ControlOf(source_).most; }

 private:
  struct Control {
    QString name;
    int type = 0;
    int least = 0;
    int most = 0;
    std::vector<int> channels;
  };
  struct Line {
    QString name;
    int type = 0;
    int target = 0;
    int channels = 0;
    bool active = false;
    std::vector<Control> controls;
    std::vector<Line> sources;  ///< of a destination line
  };
  struct Mixer {
    QString name;
    std::vector<Line> destinations;
  };
  /// The selection on one side of the tree. Without a selected line all is 0 and empty.
  struct Cursor {
    Line* line = nullptr;
    int index = 0;
    int control = 0;
    int channel = 0;
  };

  [[nodiscard]] static Mixer DescribeOutput(const QString& name);
  [[nodiscard]] const Line& DestinationLine() const;
  [[nodiscard]] const Line& SourceLine() const;
  [[nodiscard]] static const Line& LineOf(const Cursor& cursor);
  [[nodiscard]] static const Control& ControlOf(const Cursor& cursor);
  [[nodiscard]] static int ChannelOf(const Cursor& cursor);
  static void SetChannel(Cursor& cursor, int value);
  static void SelectControl(Cursor& cursor, int index, const QString& source);
  static void SelectChannel(Cursor& cursor, int index, const QString& source);

  const AudioSystem& audio_;
  std::vector<Mixer> mixers_;
  int mixer_ = 0;
  Cursor destination_;
  Cursor source_;
};

}  // namespace kelvo
