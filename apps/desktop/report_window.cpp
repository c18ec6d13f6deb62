#include "report_window.h"

#include "common/report_text.h"
#include "norva/import_export.h"
#include "source_view.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QMessageBox>
#include <QPushButton>
#include <QSaveFile>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace norva {

namespace {

QString Paragraph(QString const& text) {
    return "<p>" + text.toHtmlEscaped() + "</p>";
}

QString PlacesOf(QString const& what, ReportFinding const& finding) {
    if (finding.count == 0) return {};
    QString text = "<li>" + what.toHtmlEscaped() + ": " + QString::number(finding.count) + "<br>";
    for (ReportPlace const& place : finding.places) {
        auto const length = static_cast<qulonglong>(place.text.size());
        // Where only the line is known, all of it is shown.
        QString const column = place.column == 0 ? QString() : QString(", column %1").arg(place.column);
        text += QString("<a href=\"place:%1:%2:%3\">line %1%4</a> <code>%5</code><br>")
                    .arg(static_cast<qulonglong>(place.line))
                    .arg(std::max<qulonglong>(place.column, 1))
                    .arg(place.column == 0 ? 0 : length)
                    .arg(column, QString::fromStdString(place.text).toHtmlEscaped());
    }
    return text + "</li>";
}

/// What was lost or changed, or all else.
QString FindingsOf(ImportReport const& report, bool isLoss) {
    QString text;
    for (ReportRowKind const* kind = kReportRowKinds; kind->name != nullptr; ++kind) {
        if (kind->isLoss == isLoss) text += PlacesOf(kind->text, report.*kind->finding);
    }
    for (ReportChannel const& channel : report.channels) {
        QString const name = QString::fromStdString(channel.settings.name);
        for (ReportKind const* kind = kReportKinds; kind->name != nullptr; ++kind) {
            if (kind->isLoss == isLoss) text += PlacesOf(name + ": " + kind->text, channel.*kind->finding);
        }
    }
    return text;
}

QString PageOf(ImportReport const& report) {
    QString const summary = QString::fromStdString(ReportSummary(report)).section('\n', 0, 0);
    QString text = Paragraph(QString::fromStdString(report.sourcePath)) + Paragraph(summary);
    QString const losses = FindingsOf(report, true);
    if (!losses.isEmpty()) {
        text += "<h3 style=\"color: #c03030\">" + CReportWindow::tr("Lost or changed") + "</h3><ul>" + losses + "</ul>";
    }
    QString const marks = FindingsOf(report, false);
    if (!marks.isEmpty()) text += "<h3>" + CReportWindow::tr("Nothing lost by") + "</h3><ul>" + marks + "</ul>";
    if (report.RepeatedLines() > 0) text += Paragraph(CReportWindow::tr("Some lines have the same name."));
    return text;
}

}  // namespace

CReportWindow::CReportWindow(ImportReport const& report, QWidget* parent)
    : QDialog(parent), m_report(report), m_text(new QTextBrowser) {
    setWindowTitle(tr("Import report"));
    m_text->setOpenLinks(false);
    m_text->setAccessibleName(tr("Import report"));
    m_text->setHtml(PageOf(m_report));
    connect(m_text, &QTextBrowser::anchorClicked, this, &CReportWindow::OpenPlace);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    QPushButton* const save = buttons->addButton(tr("&Save as page..."), QDialogButtonBox::ActionRole);
    if (report.LossCount() > 0) {
        QPushButton* const again = buttons->addButton(tr("&Import again..."), QDialogButtonBox::ActionRole);
        again->setToolTip(tr("With types and widths that hold for every row of the file"));
        connect(again, &QPushButton::clicked, this, [this] {
            hide();
            emit ImportWished(QString::fromStdString(m_report.sourcePath));
        });
    }
    connect(save, &QPushButton::clicked, this, &CReportWindow::Save);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_text, 1);
    layout->addWidget(buttons);
    resize(640, 420);
}

void CReportWindow::OpenPlace(QUrl const& link) {
    QStringList const parts = link.path().split(':');
    if (link.scheme() != "place" || parts.size() != 3) return;
    if (m_source == nullptr) m_source = new CSourceView(QString::fromStdString(m_report.sourcePath), this);
    m_source->ShowPlace(parts[0].toULongLong(), parts[1].toULongLong(), parts[2].toInt());
    m_source->show();
    m_source->raise();
}

void CReportWindow::Save() {
    QString const path = QFileDialog::getSaveFileName(this, tr("Save the report"), {}, tr("Pages (*.html)"));
    if (path.isEmpty()) return;
    QString why;
    if (m_report.sourceSha256.empty() && GetFileSha256(m_report.sourcePath, m_report.sourceSha256) == 0) {
        why = QString::fromStdString(GetLastErrorText());
    }
    QSaveFile file(path);
    if (why.isEmpty() && (!file.open(QIODevice::WriteOnly) ||
                          file.write(QByteArray::fromStdString(ReportHtml(m_report))) < 0 || !file.commit())) {
        why = file.errorString();
    }
    if (why.isEmpty()) return;
    QMessageBox box(QMessageBox::Warning, windowTitle(), tr("The report could not be written:\n%1\n%2").arg(path, why),
                    QMessageBox::Ok, this);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

}  // namespace norva
