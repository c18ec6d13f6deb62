#include "source_view.h"

#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QLabel>
#include <QPlainTextEdit>
#include <QTextBlock>
#include <QVBoxLayout>

#include <algorithm>
#include <vector>

namespace norva {

namespace {

constexpr std::uint64_t kLinesAround = 200;
constexpr qint64 kLongestLine = 4000;  // characters shown
constexpr qint64 kPiece = 1 << 20;

/// Counts line ends as the importer does: LF, CR LF and CR.
class CLineEnds {
public:
    /// Whether a line begins at this byte.
    bool Begins(char byte) {
        bool const begins = m_last == '\n' || (m_last == '\r' && byte != '\n');
        m_last = byte;
        return begins;
    }

private:
    char m_last = 0;
};

}  // namespace

CSourceView::CSourceView(QString const& path, QWidget* parent)
    : QDialog(parent), m_file(path), m_text(new QPlainTextEdit), m_title(new QLabel) {
    setWindowTitle(path);
    m_text->setReadOnly(true);
    m_text->setLineWrapMode(QPlainTextEdit::NoWrap);
    m_text->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text->setAccessibleName(tr("Source"));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(m_title);
    layout->addWidget(m_text, 1);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
    resize(800, 480);
}

/// Goes to the beginning of the line; false when the file has none of that number.
bool CSourceView::FindLine(std::uint64_t line) {
    if (!m_isIndexed) {
        CLineEnds ends;
        std::uint64_t number = 1;
        qint64 offset = 0;
        m_file.seek(0);
        for (QByteArray piece = m_file.read(kPiece); !piece.isEmpty(); piece = m_file.read(kPiece)) {
            for (char const byte : piece) {
                if (ends.Begins(byte) && (++number - 1) % kStep == 0) m_offsets.push_back(offset);
                ++offset;
            }
        }
        m_isIndexed = true;
    }
    std::uint64_t const step = std::min<std::uint64_t>((line - 1) / kStep, m_offsets.size() - 1);
    std::uint64_t number = step * kStep + 1;
    qint64 offset = m_offsets[step];
    m_file.seek(offset);
    CLineEnds ends;
    while (number < line) {
        QByteArray const piece = m_file.read(kPiece);
        if (piece.isEmpty()) return false;
        for (char const byte : piece) {
            if (ends.Begins(byte) && ++number == line) break;
            ++offset;
        }
    }
    return m_file.seek(offset);
}

void CSourceView::ShowPlace(std::uint64_t line, std::uint64_t column, int length) {
    std::uint64_t const first = line > kLinesAround ? line - kLinesAround : 1;
    m_text->clear();
    if ((!m_file.isOpen() && !m_file.open(QIODevice::ReadOnly)) || !FindLine(first)) {
        m_title->setText(tr("The line cannot be shown: %1").arg(m_file.errorString()));
        return;
    }
    std::vector<QByteArray> lines(1);
    CLineEnds ends;
    QByteArray piece;
    while (lines.size() <= 2 * kLinesAround && !(piece = m_file.read(kPiece)).isEmpty()) {
        for (char const byte : piece) {
            if (ends.Begins(byte)) {
                if (lines.size() > 2 * kLinesAround) break;
                lines.emplace_back();
            }
            if (byte != '\n' && byte != '\r' && lines.back().size() < kLongestLine) lines.back() += byte;
        }
    }
    std::size_t const at = line - first;
    QString text;
    for (QByteArray const& one : lines) text += QString::fromLatin1(one) + '\n';  // a character a byte
    m_text->setPlainText(text);
    m_title->setText(tr("Line %1, column %2").arg(line).arg(column));
    QTextCursor cursor(m_text->document()->findBlockByNumber(static_cast<int>(at)));
    int const width = cursor.block().length() - 1;
    int const begin = std::clamp(static_cast<int>(column) - 1, 0, width);
    cursor.movePosition(QTextCursor::Right, QTextCursor::MoveAnchor, begin);
    cursor.movePosition(QTextCursor::Right, QTextCursor::KeepAnchor, std::min(length, width - begin));
    m_text->setTextCursor(cursor);
    m_text->centerCursor();
}

}  // namespace norva
