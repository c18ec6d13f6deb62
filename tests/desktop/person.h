#pragma once

#include "main_window.h"
#include "qt_dialog.h"

#include <QAction>
#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <functional>
#include <string>
#include <vector>

namespace norva::test {

/// Answers what a window opens, one answer after the other, as a person would.
class CPerson {
public:
    /// Handles the modal window that is open; false when it is not the one that is waited for.
    using Answer = std::function<bool(QWidget& window)>;

    explicit CPerson(std::vector<Answer> answers) : m_answers(std::move(answers)) { WaitForNext(); }
    CPerson(CPerson const&) = delete;
    CPerson& operator=(CPerson const&) = delete;

    /// Answers that found no window.
    std::size_t Left() const { return m_answers.size() - m_next; }

    static Answer SaveAs(std::string const& path) {
        return [path](QWidget& window) {
            auto* const dialog = qobject_cast<QFileDialog*>(&window);
            if (dialog == nullptr) return false;
            dialog->selectFile(QString::fromStdString(path));
            static_cast<QDialog*>(dialog)->done(QDialog::Accepted);
            return true;
        };
    }
    /// Presses a button of a window of the library.
    static Answer Press(QString const& title, QString const& button) {
        return [title, button](QWidget& window) {
            if (window.windowTitle() != title) return false;
            for (QPushButton* const one : window.findChildren<QPushButton*>()) {
                if (one->text().remove('&') != button) continue;
                QTest::mouseClick(one, Qt::LeftButton);
                return true;
            }
            return false;
        };
    }
    static Answer Type(QString const& text) {
        return [text](QWidget& window) {
            auto* const dialog = qobject_cast<QInputDialog*>(&window);
            if (dialog == nullptr) return false;
            dialog->setTextValue(text);
            dialog->accept();
            return true;
        };
    }
    /// Closes a message box and keeps its text.
    static Answer Read(QString& text) {
        return [&text](QWidget& window) {
            auto* const box = qobject_cast<QMessageBox*>(&window);
            if (box == nullptr) return false;
            text = box->text();
            box->accept();
            return true;
        };
    }

private:
    void WaitForNext() {
        QTimer::singleShot(5, &m_context, [this] {
            WaitForNext();
            QWidget* const window = QApplication::activeModalWidget();
            if (window == nullptr || Left() == 0) return;
            // The answer may open another window, which the next one handles, before it returns.
            Answer const answer = m_answers[m_next++];
            if (!answer(*window)) --m_next;
        });
    }

    QObject m_context;
    std::vector<Answer> m_answers;
    std::size_t m_next = 0;
};

/// Does what a menu entry of the window does.
inline void Choose(QMainWindow& window, QString const& entry) {
    for (QAction* const action : window.findChildren<QAction*>()) {
        if (action->text().remove('&') == entry && action->isEnabled()) return action->trigger();
    }
    QTest::qFail("no such entry", __FILE__, __LINE__);
}

}  // namespace norva::test
