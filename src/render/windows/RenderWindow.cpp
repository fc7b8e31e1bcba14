#include "render/windows/RenderWindow.h"

#include "ui/Command.h"
#include "ui/Form.h"
#include "ui/JobStrip.h"
#include "ui/Line.h"
#include "ui/Naming.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace kelvo {

RenderWindow::RenderWindow(EventLoop& loop, Renderer& renderer)
    : ToolWindow({.name = QStringLiteral("RenderToFile"),
                  .title = tr("Render To File"),
                  .letters = 96,
                  .lines = 20}),
      renderer_(renderer),
      model_(renderer.Skipped(), {{{.head = tr("Title"), .letters = 40}, &SkippedTitle::title},
                                  {{.head = tr("Why"), .letters = 40, .rank = 1}, &SkippedTitle::why}}),
      skipped_({.name = QStringLiteral("LstSkipped"),
                .title = tr("PASSED OVER"),
                .accessible = tr("Titles that were passed over"),
                .many = false},
               model_, this),
      form_(new Form(this)),
      file_(&form_->AddText(
          {.name = QStringLiteral("TxtFile"),
           .label = tr("&File"),
           .tooltip = tr("The file that is made, with a cue sheet of its titles beside it")})),
      kind_(new QComboBox(this)),
      folder_(AddCommand(*this, {.name = QStringLiteral("CmdFolder"),
                                 .words = tr("F&older..."),
                                 .tooltip = tr("Takes another folder for the file"),
                                 .icon = Icon::Folder,
                                 .run = [this] { renderer_.ChooseFolder(); }})),
      render_(
          AddCommand(*this, {.name = QStringLiteral("CmdRender"),
                             .words = tr("&Render"),
                             .tooltip = tr("Plays the queue from its first row to its last as automatic play "
                                           "would, unheard, and writes it"),
                             .key = QKeySequence(Qt::CTRL | Qt::Key_Return),
                             .icon = Icon::Save,
                             .role = QStringLiteral("go"),
                             .run = [this] { renderer_.Start(); }})),
      progress_(new JobStrip(loop, QStringLiteral("PrgRender"), tr("Progress"), this)) {
  kind_->setObjectName(QStringLiteral("CboFormat"));
  kind_->setAccessibleName(tr("Format"));
  kind_->setToolTip(tr("WAV and FLAC keep every sample, in 24 bits; MP3 is small"));
  for (const RenderFile::Kind kind : kRenderKinds) kind_->addItem(RenderKindWord(kind));
  auto* format = new QLabel(tr("For&mat"), this);
  format->setBuddy(kind_);
  progress_->OfferStop(QStringLiteral("CmdStop"), tr("Ends the render; nothing is left of the file"),
                       [this] { renderer_.Stop(); });
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(form_);
  layout->addLayout(Line({format, kind_, folder_, kRoom, render_}));
  layout->addWidget(&skipped_, 1);
  layout->addWidget(progress_);
  connect(file_, &QLineEdit::textEdited, this, [this](const QString& path) { renderer_.SetPath(path); });
  connect(kind_, &QComboBox::activated, this,
          [this](int index) { renderer_.SetKind(kRenderKinds[static_cast<std::size_t>(index)]); });
  connect(&renderer_, &Renderer::Changed, this, [this] { Show(); });
  Show();
}

void RenderWindow::TakeKeys() {
  file_->setFocus();
}

void RenderWindow::Show() {
  const bool busy = renderer_.Busy();
  if (file_->text() != renderer_.Path()) file_->setText(renderer_.Path());
  const RenderFile::Kind kind = RenderKindOf(renderer_.Path()).value_or(renderer_.Kind());
  kind_->setCurrentText(RenderKindWord(kind));
  const QString why = renderer_.WhyNoStart();
  form_->SetMessage(*file_, busy ? QString() : renderer_.WrongWithPath());
  file_->setReadOnly(busy);
  Offer(*kind_, busy ? why : QString());
  Offer(*folder_, busy ? why : QString());
  Offer(*render_, why);
  skipped_.SetHint(
      tr("The play queue is written as automatic play would play it.\n"
         "What goes on air meanwhile is not touched. Nothing was passed over."));
  progress_->Show({.running = busy, .words = renderer_.Words(), .share = renderer_.Share()});
}

}  // namespace kelvo
