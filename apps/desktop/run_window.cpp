#include "run_window.h"

#include "library_job.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace norva {

QString DurationText(qint64 seconds) {
    if (seconds < 60) return CRunWindow::tr("%1 s").arg(seconds);
    if (seconds < 3600) return CRunWindow::tr("%1 min %2 s").arg(seconds / 60).arg(seconds % 60);
    return CRunWindow::tr("%1 h %2 min").arg(seconds / 3600).arg(seconds / 60 % 60);
}

CRunWindow::CRunWindow(CLibraryJob& job, QWidget* parent)
    : QDialog(parent),
      m_job(job),
      m_file(new QLabel),
      m_channel(new QLabel),
      m_fileBar(new QProgressBar),
      m_channelBar(new QProgressBar),
      m_time(new QLabel) {
    setWindowModality(Qt::ApplicationModal);
    setMinimumWidth(44 * fontMetrics().averageCharWidth());
    for (QLabel* const label : {m_file, m_channel, m_time}) label->setTextFormat(Qt::PlainText);
    for (QProgressBar* const bar : {m_fileBar, m_channelBar}) bar->setRange(0, 100);
    m_fileBar->setAccessibleName(tr("File"));
    m_channelBar->setAccessibleName(tr("Channel"));
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel);
    m_cancel = buttons->button(QDialogButtonBox::Cancel);
    connect(buttons, &QDialogButtonBox::rejected, this, &CRunWindow::reject);
    auto* const layout = new QVBoxLayout(this);
    for (QWidget* const widget : std::initializer_list<QWidget*>{m_file, m_fileBar, m_channel, m_channelBar, m_time}) {
        layout->addWidget(widget);
    }
    layout->addWidget(buttons);
    m_elapsed.start();
    m_stage.start();
    auto* const timer = new QTimer(this);
    connect(timer, &QTimer::timeout, this, &CRunWindow::Refresh);
    timer->start(50);
    Refresh();
}

void CRunWindow::Refresh() {
    RunProgress const progress = m_job.Progress();
    setWindowTitle(progress.title);
    m_file->setText(progress.file);
    m_channel->setText(progress.channel);
    m_fileBar->setValue(progress.filePercent);
    m_channelBar->setValue(progress.channelPercent);
    int const percent = progress.filePercent > 0 ? progress.filePercent : progress.channelPercent;
    if (percent < m_lastPercent) {  // the next stage of the work counts anew
        m_stage.restart();
        m_stageFrom = percent;
    }
    m_lastPercent = percent;
    QString text = tr("%1 so far").arg(DurationText(m_elapsed.elapsed() / 1000));
    if (percent > m_stageFrom && percent < 100 && m_stage.elapsed() > 1000) {
        qint64 const left = m_stage.elapsed() * (100 - percent) / (percent - m_stageFrom) / 1000;
        text += tr(", about %1 still").arg(DurationText(left));
    }
    m_time->setText(m_job.IsCancelled() ? tr("Stopping...") : text);
}

void CRunWindow::reject() {
    m_job.Cancel();
    m_cancel->setEnabled(false);
    Refresh();
}

}  // namespace norva
