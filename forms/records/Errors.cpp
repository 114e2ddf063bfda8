// SPDX-License-Identifier: GPL-3.0-or-later
// The Errors window.
#include "Errors.h"
#include "ui_Errors.h"

#include "errorlog.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QPushButton>
#include <QScrollBar>

using namespace Qt::StringLiterals;

Errors::Errors(QWidget *parent) : QDialog(parent), m_ui(std::make_unique<Ui::Errors>())
{
    m_ui->setupUi(this);
    setWindowTitle(Translate(u"Error Messages"_s));
    m_ui->Command1->setText(Translate(u"&Clear"_s));
    TranslateWindow(this);
    connect(m_ui->Command1, &QPushButton::clicked, this,
            [this] { Guard(u" @ Errors.Command1_Click"_s, [this] { Command1_Click(); }); });
    setText(ErrorLog::tail());
}

Errors::~Errors() = default;

void Errors::setText(const QString &text)
{
    m_ui->txt->setPlainText(text);
    // The newest lines are at the end.
    m_ui->txt->verticalScrollBar()->setValue(m_ui->txt->verticalScrollBar()->maximum());
}

QString Errors::text() const
{
    return m_ui->txt->toPlainText();
}

void Errors::Command1_Click()
{
    // Only the window is emptied: the log file is the record a support engineer reads later, and it
    // keeps its own size limit.
    m_ui->txt->clear();
    close();
}
