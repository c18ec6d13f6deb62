#pragma once

#include <QWidget>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace norva {

/// What the window shows while no store is open: the ways in.
class CStartPage : public QWidget {
    Q_OBJECT

public:
    CStartPage();

    void ShowRecent(QStringList const& paths);
    /// A file hangs over the window.
    void ShowDrop(bool isOver);

signals:
    void OpenWished();
    void ImportWished();
    void FileWished(QString const& path);

private:
    QVBoxLayout* m_recent;
    QLabel* m_drop;
};

}  // namespace norva
