// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptedit.h"

#include "translate.h"

#include <QFontDatabase>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QTextBlock>

using namespace Qt::StringLiterals;

namespace {
constexpr int NumbersPadding = 4; // pixels each side of the line numbers
}

ScriptEdit::ScriptEdit(QWidget *parent)
    : QPlainTextEdit(parent), m_numbers(new QWidget(this)), m_find(new QLineEdit(this))
{
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setLineWrapMode(NoWrap); // a script's lines are statements: wrapping would hide where one ends
    setTabStopDistance(4 * fontMetrics().horizontalAdvance(u' '));

    // The numbers are painted here rather than in a widget class of their own: one paint function,
    // and the editor's protected block geometry is at hand.
    m_numbers->setObjectName(u"LineNumbers"_s);
    m_numbers->installEventFilter(this);
    connect(this, &QPlainTextEdit::blockCountChanged, this, &ScriptEdit::updateMargins);
    connect(this, &QPlainTextEdit::updateRequest, this, &ScriptEdit::updateNumbers);
    connect(this, &QPlainTextEdit::cursorPositionChanged, m_numbers, qOverload<>(&QWidget::update));

    m_find->setObjectName(u"FindText"_s);
    m_find->setPlaceholderText(Translate(u"Find"_s));
    m_find->setToolTip(Translate(u"Enter or F3: find next. Shift+F3: find previous. Esc: close."_s));
    m_find->setClearButtonEnabled(true);
    m_find->installEventFilter(this);
    m_find->hide();
    m_findPalette = m_find->palette();
    connect(m_find, &QLineEdit::textEdited, this, [this] { search(false, true); });

    updateMargins();
}

void ScriptEdit::showFind()
{
    const QString selected = textCursor().selectedText();
    if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator))
        m_find->setText(selected);
    const bool opening = m_find->isHidden();
    m_find->show();
    if (opening)
        updateMargins();
    m_find->selectAll();
    m_find->setFocus(Qt::ShortcutFocusReason);
}

void ScriptEdit::hideFind()
{
    m_find->hide();
    m_find->setPalette(m_findPalette);
    updateMargins();
    setFocus(Qt::OtherFocusReason);
}

bool ScriptEdit::findNext(bool backward)
{
    return search(backward, false);
}

bool ScriptEdit::search(bool backward, bool fromSelectionStart)
{
    const QString text = m_find->text();
    QTextCursor hit;
    if (!text.isEmpty()) {
        const QTextDocument::FindFlags flags =
            backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
        QTextCursor from = textCursor();
        // While the text is being typed the match grows where it stands instead of moving on.
        if (fromSelectionStart)
            from.setPosition(from.selectionStart());
        hit = document()->find(text, from, flags);
        if (hit.isNull()) {
            QTextCursor edge(document());
            edge.movePosition(backward ? QTextCursor::End : QTextCursor::Start);
            hit = document()->find(text, edge, flags);
        }
        if (!hit.isNull())
            setTextCursor(hit);
    }
    QPalette palette = m_findPalette;
    if (!text.isEmpty() && hit.isNull())
        palette.setColor(QPalette::Base, QColor(255, 204, 204));
    m_find->setPalette(palette);
    return !hit.isNull();
}

void ScriptEdit::keyPressEvent(QKeyEvent *event)
{
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const int key = event->key();
    if (event->matches(QKeySequence::Find)) {
        showFind();
    } else if (key == Qt::Key_F3) {
        if (m_find->text().isEmpty())
            showFind();
        else
            findNext(modifiers & Qt::ShiftModifier);
    } else if (key == Qt::Key_Escape && m_find->isVisible()) {
        hideFind();
    } else if ((key == Qt::Key_Tab || key == Qt::Key_Backtab) && (modifiers & Qt::ControlModifier)) {
        // Tab types a tab here; Ctrl+Tab is the keyboard's way out of the box. The editor's own
        // focusNextPrevChild declines while the text is editable, so QWidget's is called.
        QWidget::focusNextPrevChild(key == Qt::Key_Tab && !(modifiers & Qt::ShiftModifier));
    } else if ((key == Qt::Key_Return || key == Qt::Key_Enter) && modifiers == Qt::NoModifier &&
               !isReadOnly()) {
        newLineKeepingIndent();
    } else {
        QPlainTextEdit::keyPressEvent(event);
        return;
    }
    // Accepted: the dialog around the editor must not see Enter (its default button) or Esc.
    event->accept();
}

void ScriptEdit::newLineKeepingIndent()
{
    QTextCursor cursor = textCursor();
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    const QString line = cursor.block().text();
    qsizetype indent = 0;
    while (indent < cursor.positionInBlock() && (line[indent] == u' ' || line[indent] == u'\t'))
        ++indent;
    cursor.insertBlock();
    cursor.insertText(line.left(indent));
    cursor.endEditBlock();
    setTextCursor(cursor);
    ensureCursorVisible();
}

bool ScriptEdit::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_numbers && event->type() == QEvent::Paint) {
        paintNumbers(static_cast<QPaintEvent *>(event));
        return true;
    }
    if (watched == m_find && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool shift = key->modifiers() & Qt::ShiftModifier;
        switch (key->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter: // a line edit passes Enter on, and the dialog would take it as OK
        case Qt::Key_F3:
            findNext(shift);
            return true;
        case Qt::Key_Escape: // only the find bar closes, not the window
            hideFind();
            return true;
        default:
            break;
        }
    }
    return QPlainTextEdit::eventFilter(watched, event);
}

int ScriptEdit::numbersWidth() const
{
    int digits = 1;
    for (int lines = qMax(1, blockCount()); lines >= 10; lines /= 10)
        ++digits;
    // Room for three digits at least, so that the text does not shift while a short script grows.
    return 2 * NumbersPadding + qMax(3, digits) * fontMetrics().horizontalAdvance(u'9');
}

void ScriptEdit::updateMargins()
{
    setViewportMargins(numbersWidth(), 0, 0, m_find->isVisible() ? m_find->sizeHint().height() : 0);
    placeChildren();
}

void ScriptEdit::resizeEvent(QResizeEvent *event)
{
    QPlainTextEdit::resizeEvent(event);
    placeChildren();
}

void ScriptEdit::placeChildren()
{
    // Both sit in the viewport's margins: the numbers at its left, the find bar below it.
    const QRect text = viewport()->geometry();
    const int left = contentsRect().left();
    m_numbers->setGeometry(left, text.top(), numbersWidth(), text.height());
    if (m_find->isVisible())
        m_find->setGeometry(left, text.bottom() + 1, text.right() + 1 - left, m_find->sizeHint().height());
}

void ScriptEdit::updateNumbers(const QRect &rect, int dy)
{
    if (dy)
        m_numbers->scroll(0, dy);
    else
        m_numbers->update(0, rect.y(), m_numbers->width(), rect.height());
}

void ScriptEdit::paintNumbers(QPaintEvent *event)
{
    QPainter painter(m_numbers);
    painter.fillRect(event->rect(), palette().color(QPalette::Window));
    // Numbers in a colour between the text's and the background's, so that they do not read as text.
    const QColor text = palette().color(QPalette::Text);
    const QColor background = palette().color(QPalette::Window);
    painter.setPen(QColor((text.red() + background.red()) / 2, (text.green() + background.green()) / 2,
                          (text.blue() + background.blue()) / 2));
    const int current = textCursor().blockNumber();
    QTextBlock block = firstVisibleBlock();
    qreal top = blockBoundingGeometry(block).translated(contentOffset()).top();
    while (block.isValid() && top <= event->rect().bottom()) {
        const qreal bottom = top + blockBoundingRect(block).height();
        if (block.isVisible() && bottom >= event->rect().top()) {
            QFont font = painter.font();
            font.setBold(block.blockNumber() == current);
            painter.setFont(font);
            painter.drawText(QRectF(0, top, m_numbers->width() - NumbersPadding, fontMetrics().height()),
                             Qt::AlignRight | Qt::AlignTop, QString::number(block.blockNumber() + 1));
        }
        top = bottom;
        block = block.next();
    }
}
