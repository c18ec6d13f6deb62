#pragma once

#include "profile_plot.h"

#include <QDialog>

#include <optional>

class QDialogButtonBox;
class QLabel;
class QLineEdit;

namespace norva {

/// Asks for the limits of a profile's axes; times may be typed as HH:MM:SS.
class CLimitsDialog : public QDialog {
    Q_OBJECT

public:
    CLimitsDialog(std::vector<CProfilePlot::Limits> const& limits, QWidget* parent);

    /// What stands in the boxes; none while a box holds no number or a pair is no range.
    std::optional<std::vector<QCPRange>> Ranges() const;

private:
    void Check();

    struct Row {
        QLineEdit* from;
        QLineEdit* to;
    };
    std::vector<Row> m_rows;
    QLabel* m_why;
    QDialogButtonBox* m_buttons;
};

}  // namespace norva
