#pragma once

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QTableWidget;
class QTextBrowser;

namespace norva {

struct ImportItem;

/// A text file as the proposal for it reads the file: the first rows under the names, units and types of their
/// channels, which can be changed, and why everything was chosen so.
class CProposalView : public QWidget {
    Q_OBJECT

public:
    CProposalView();

    /// Shows a file; null for none. It has to live until another is shown.
    void Show(ImportItem* item);

    QTableWidget& Rows() { return *m_rows; }
    QComboBox& Type() { return *m_type; }
    QTextBrowser& Why() { return *m_why; }

signals:
    /// What the person said makes the file to be looked at anew.
    void LookWished();
    /// A channel was changed.
    void Edited();

private:
    std::vector<int> Chosen() const;
    void ShowTitles();
    void ShowRows();
    void ShowWhy();
    void ShowEditors();
    void ChangeType(int index);
    void ChangeTemplate(int index);
    void ChangeName(QString const& text, bool isUnits);
    void ChangeLabel(bool startsLines);
    void ApplyEdits();

    ImportItem* m_item = nullptr;
    bool m_isFilling = false;
    QLabel* m_summary;
    QTableWidget* m_rows;
    QLineEdit* m_name;
    QLineEdit* m_units;
    QComboBox* m_type;
    QComboBox* m_template;
    QCheckBox* m_startsLines;
    QTextBrowser* m_why;
};

}  // namespace norva
