#pragma once

#include <QDialog>
#include <QElapsedTimer>

class QLabel;
class QProgressBar;
class QPushButton;
class QTimer;

namespace norva {

class CLibraryJob;

/// Tells how far a run of the library is and how long it will still take, and stops it.
class CRunWindow : public QDialog {
    Q_OBJECT

public:
    CRunWindow(CLibraryJob& job, QWidget* parent);

    QPushButton& CancelButton() { return *m_cancel; }

    /// Esc and the close box ask the run to stop; it closes the window.
    void reject() override;

private:
    void Refresh();

    CLibraryJob& m_job;
    QLabel* m_file;
    QLabel* m_channel;
    QProgressBar* m_fileBar;
    QProgressBar* m_channelBar;
    QLabel* m_time;
    QPushButton* m_cancel;
    QElapsedTimer m_elapsed;
    QElapsedTimer m_stage;  ///< since the percentage began to grow
    int m_stageFrom = 0;
    int m_lastPercent = 0;
};

/// "2 min 5 s" of seconds.
QString DurationText(qint64 seconds);

}  // namespace norva
