#include "reports/windows/ReportPdf.h"

#include <QBuffer>
#include <QFontMetricsF>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <memory>
#include <numeric>

namespace kelvo {
namespace {

constexpr int kResolution = 300;  // dots an inch
constexpr double kLetterPoints = 7.5;
constexpr double kMarginMillimetres = 12;

/// Writes the rows down the pages.
class Pages {
 public:
  Pages(QPdfWriter& paper, const Report& report)
      : paper_(paper),
        report_(report),
        columns_(ReportColumns(report.kind)),
        painter_(&paper),
        plain_(QStringLiteral("DejaVu Sans")),
        bold_(plain_) {
    plain_.setPointSizeF(kLetterPoints);
    bold_.setPointSizeF(kLetterPoints);
    bold_.setBold(true);
    painter_.setFont(plain_);
    const QFontMetricsF metrics(plain_, &paper_);
    line_ = metrics.height() * 1.15;
    const double letters =
        std::accumulate(columns_.begin(), columns_.end(), 0.0,
                        [](double sum, const ReportColumn& each) { return sum + each.letters; });
    letter_ = paper_.width() / letters;
    gap_ = metrics.horizontalAdvance(QLatin1Char('n'));
    metrics_ = std::make_unique<QFontMetricsF>(metrics);
  }

  void Write() {
    painter_.setFont(bold_);
    for (const QString& head : ReportHead(report_)) WriteLine(head);
    painter_.setFont(plain_);
    for (const QString& note : report_.notes) WriteLine(note);
    y_ += line_ / 2;
    WriteHeads();
    for (const QStringList& row : report_.rows) {
      if (y_ + 2 * line_ > paper_.height()) TurnPage();
      WriteRow(row);
    }
    WriteNumber();
  }

 private:
  void WriteLine(const QString& text) {
    painter_.drawText(QRectF(0, y_, paper_.width(), line_),
                      Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text);
    y_ += line_;
  }
  void WriteHeads() {
    QStringList heads;
    for (const ReportColumn& column : columns_) heads.append(column.head);
    painter_.setFont(bold_);
    WriteRow(heads);
    painter_.setFont(plain_);
    painter_.drawLine(QPointF(0, y_), QPointF(paper_.width(), y_));
    y_ += line_ / 4;
  }
  void WriteRow(const QStringList& row) {
    double x = 0;
    for (std::size_t place = 0; place < columns_.size(); ++place) {
      const double width = columns_[place].letters * letter_;
      const QRectF cell(x, y_, width - gap_, line_);
      const QString text =
          metrics_->elidedText(row[static_cast<qsizetype>(place)], Qt::ElideRight, cell.width());
      const Qt::Alignment side = columns_[place].number ? Qt::AlignRight : Qt::AlignLeft;
      painter_.drawText(cell, static_cast<int>(side | Qt::AlignVCenter) | Qt::TextSingleLine, text);
      x += width;
    }
    y_ += line_;
  }
  void WriteNumber() {
    painter_.drawText(QRectF(0, paper_.height() - line_, paper_.width(), line_), Qt::AlignCenter,
                      QStringLiteral("Page ") + QString::number(++page_));
  }
  void TurnPage() {
    WriteNumber();
    paper_.newPage();
    y_ = 0;
    WriteHeads();
  }

  QPdfWriter& paper_;
  const Report& report_;
  const std::vector<ReportColumn>& columns_;
  QPainter painter_;
  QFont plain_;
  QFont bold_;
  std::unique_ptr<QFontMetricsF> metrics_;
  double line_ = 0;
  double letter_ = 0;
  double gap_ = 0;
  double y_ = 0;
  int page_ = 0;
};

}  // namespace

QByteArray ReportPdf(const Report& report) {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter paper(&buffer);
    paper.setResolution(kResolution);
    paper.setPageSize(QPageSize(QPageSize::A4));
    paper.setPageOrientation(QPageLayout::Landscape);
    paper.setPageMargins(
        QMarginsF(kMarginMillimetres, kMarginMillimetres, kMarginMillimetres, kMarginMillimetres),
        QPageLayout::Millimeter);
    paper.setTitle(report.fileTitle);
    paper.setCreator(report.program);
    Pages(paper, report).Write();
  }
  return bytes;
}

}  // namespace kelvo
