// SPDX-License-Identifier: GPL-3.0-or-later
// A plain-text editor for scripts: fixed-width text with line numbers beside it, Enter keeps the
// line's indentation, and Ctrl+F opens a find bar under the text.
#pragma once

#include <QPalette>
#include <QPlainTextEdit>

class QLineEdit;

class ScriptEdit : public QPlainTextEdit
{
    Q_OBJECT
public:
    explicit ScriptEdit(QWidget *parent = nullptr);

    // Opens the find bar (with the selected text when it lies on one line) and puts the focus there.
    void showFind();
    // Closes the find bar; the focus goes back to the text.
    void hideFind();
    // Selects the next (or previous) place holding the find bar's text, going round past the end
    // (or the start). False, and the find bar tinted red, when the text is nowhere.
    bool findNext(bool backward = false);

    QLineEdit *findBar() const { return m_find; }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool search(bool backward, bool fromSelectionStart);
    void newLineKeepingIndent();
    int numbersWidth() const;
    void updateMargins();
    void placeChildren();
    void paintNumbers(QPaintEvent *event);
    void updateNumbers(const QRect &rect, int dy);

    QWidget *m_numbers;
    QLineEdit *m_find;
    QPalette m_findPalette; // the find bar's own colours, for when the text is found again
};
