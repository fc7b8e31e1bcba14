#include "ui/JobStrip.h"

#include "platform/Words.h"
#include "ui/Command.h"
#include "ui/ProgressStrip.h"

#include <QHBoxLayout>
#include <QLabel>

namespace kelvo {
namespace {

constexpr int kPerMille = 1000;

}  // namespace

JobStrip::JobStrip(EventLoop& loop, const QString& name, const QString& accessible, QWidget* parent)
    : QWidget(parent), loop_(loop), bar_(new ProgressStrip(this)), left_(new QLabel(this)) {
  bar_->setObjectName(name);
  bar_->setAccessibleName(accessible);
  bar_->setRange(0, kPerMille);
  left_->setObjectName(name + QStringLiteral("Left"));
  left_->setAccessibleName(tr("%1: time left").arg(accessible));
  left_->hide();
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(bar_, 1);
  layout->addWidget(left_);
}

void JobStrip::OfferStop(const QString& name, const QString& tooltip, std::function<void()> stop) {
  stop_ = AddCommand(*this, {.name = name,
                             .words = tr("&Stop"),
                             .tooltip = tooltip,
                             .icon = Icon::Stop,
                             .role = QStringLiteral("stop"),
                             .run = std::move(stop)});
  stop_->setVisible(running_);
  layout()->addWidget(stop_);
}

void JobStrip::Show(const JobState& state) {
  if (state.running && !running_) timeLeft_ = TimeLeft(loop_.Elapsed());
  running_ = state.running;
  const bool measured = state.running && state.share.has_value();
  bar_->SetWords(state.words);
  bar_->SetPercentShown(measured && !state.percentInWords);
  bar_->setValue(measured ? static_cast<int>(*state.share * kPerMille) : 0);
  ShowTimeLeft(state);
  if (stop_ != nullptr) stop_->setVisible(state.running);
}

void JobStrip::ShowTimeLeft(const JobState& state) {
  const auto left = state.running && state.share ? timeLeft_.At(loop_.Elapsed(), *state.share) : std::nullopt;
  left_->setVisible(left.has_value());
  if (left) left_->setText(tr("%1 left").arg(MinutesSeconds(static_cast<double>(left->count()))));
}

}  // namespace kelvo
