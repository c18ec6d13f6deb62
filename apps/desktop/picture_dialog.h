#pragma once

#include <QDialog>

class QCustomPlot;
class QLineEdit;
class QSpinBox;

namespace norva {

/// Asks for the title and size of a plot's picture.
class CPictureDialog : public QDialog {
    Q_OBJECT

public:
    CPictureDialog(QString const& title, QSize size, QWidget* parent);

    QString Title() const;
    QSize Size() const;
    /// Pixels of a PNG for one of the size.
    int Finer() const;

private:
    QLineEdit* m_title;
    QSpinBox* m_width;
    QSpinBox* m_height;
    QSpinBox* m_finer;
};

}  // namespace norva
