#pragma once

#include "background.h"

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QProgressBar;
class QPushButton;

namespace norva {

class CStoreDocument;

/// Writes the open store to a file of any type: all lines and channels, or those that are ticked. Runs on a thread of
/// its own and can be stopped.
class CExportWindow : public QDialog {
    Q_OBJECT

public:
    CExportWindow(CStoreDocument const& document, QWidget* parent);

    /// What was written, once the window was accepted.
    QString Path() const;
    ExportReport const& Report() const { return m_result.report; }
    bool IsBusy() const { return m_background.IsBusy(); }

    QLineEdit& File() { return *m_file; }
    QListWidget& Lines() { return *m_lines; }
    QListWidget& Channels() { return *m_channels; }
    QCheckBox& FullDigits() { return *m_fullDigits; }
    QPushButton& ExportButton() { return *m_export; }
    QLabel& Message() { return *m_message; }

    void reject() override;

private:
    void AskFile();
    void ShowState();
    void ShowProgress();
    void Export();
    void Finished();
    static std::optional<std::vector<int>> Ticked(QListWidget const& list);

    CStoreDocument const& m_document;
    QLineEdit* m_file;
    QCheckBox* m_replace;
    QListWidget* m_lines;
    QListWidget* m_channels;
    QCheckBox* m_fullDigits;
    QCheckBox* m_units;
    QCheckBox* m_label;
    QCheckBox* m_pointId;
    QLabel* m_message;
    QProgressBar* m_bar;
    QPushButton* m_export;
    QPushButton* m_cancel;
    Status m_status{};
    ExportResult m_result{};
    CBackground m_background;  ///< goes first, and waits for its work
};

}  // namespace norva
