#pragma once

#include "norva/import_report.h"

#include <QDialog>

class QTextBrowser;
class QUrl;

namespace norva {

class CSourceView;

/// What the last import made of its source; its places open the source at their line.
class CReportWindow : public QDialog {
    Q_OBJECT

public:
    CReportWindow(ImportReport const& report, QWidget* parent);

    QTextBrowser& Text() { return *m_text; }
    /// Opens the source at a place, as its link does: "place:LINE:COLUMN:LENGTH".
    void OpenPlace(QUrl const& link);
    /// Null before a place was opened.
    CSourceView* Source() { return m_source; }

signals:
    /// The source is to be imported once more.
    void ImportWished(QString const& path);

private:
    void Save();

    ImportReport m_report;
    QTextBrowser* m_text;
    CSourceView* m_source = nullptr;
};

}  // namespace norva
