// SPDX-License-Identifier: GPL-3.0-or-later
// The Errors window: the error texts of the log in a text box, and a button that clears the box.
#pragma once

#include <QDialog>

#include <memory>

namespace Ui {
class Errors;
}

class Errors : public QDialog
{
    Q_OBJECT
public:
    // Opens showing the end of the error log.
    explicit Errors(QWidget *parent = nullptr);
    ~Errors() override;

    void setText(const QString &text);
    QString text() const;

    // "&Clear": empties the text box, then closes the window. The log file keeps its lines.
    void Command1_Click();

private:
    std::unique_ptr<Ui::Errors> m_ui;
};
