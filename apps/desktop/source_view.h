#pragma once

#include <QDialog>
#include <QFile>

#include <cstdint>
#include <vector>

class QLabel;
class QPlainTextEdit;

namespace norva {

/// Shows a text file around a line, whatever its size: only that piece of the file is kept.
class CSourceView : public QDialog {
    Q_OBJECT

public:
    CSourceView(QString const& path, QWidget* parent);

    /// Shows the line (from 1) in the middle and marks what begins at the column (byte from 1; 0: the whole line).
    void ShowPlace(std::uint64_t line, std::uint64_t column, int length);

    QPlainTextEdit& Text() { return *m_text; }

private:
    bool FindLine(std::uint64_t line);

    static constexpr std::uint64_t kStep = 4096;  ///< lines between two known offsets

    QFile m_file;
    QPlainTextEdit* m_text;
    QLabel* m_title;
    std::vector<qint64> m_offsets{0};  ///< of lines 1, 1 + kStep, ...
    bool m_isIndexed = false;
};

}  // namespace norva
