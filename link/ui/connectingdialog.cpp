// SPDX-License-Identifier: GPL-3.0-or-later
#include "connectingdialog.h"

#include "translate.h"
#include "translatewidgets.h"
#include "ui_connectingdialog.h"

#include <QCloseEvent>
#include <QEventLoop>
#include <QPushButton>

using namespace Qt::StringLiterals;

ConnectingDialog::ConnectingDialog(usrSession &session, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::ConnectingDialog>()), m_session(session)
{
    m_ui->setupUi(this);
    setWindowTitle(applicationTitle());
    TranslateWindow(this);
    connect(m_ui->Retry, &QPushButton::clicked, this, [this] { choose(usrSession::ConnectChoice::Retry); });
    connect(m_ui->ChangeServer, &QPushButton::clicked, this,
            [this] { choose(usrSession::ConnectChoice::ChangeServer); });
    connect(m_ui->Quit, &QPushButton::clicked, this, [this] { choose(usrSession::ConnectChoice::Quit); });
    connect(&m_session, &usrSession::connecting, this, &ConnectingDialog::showConnecting);
    connect(&m_session, &usrSession::stateChanged, this, &ConnectingDialog::sessionStateChanged);
}

ConnectingDialog::~ConnectingDialog() = default;

void ConnectingDialog::showConnecting(const QUrl &server)
{
    if (m_wasReady)
        return;
    m_server = server;
    m_ui->message->setText(Translate(QString(), u"Connecting to <1>..."_s, server.toDisplayString()));
    m_ui->reason->hide();
    m_ui->Retry->hide();
    m_ui->ChangeServer->hide();
    m_ui->progress->show();
    show();
    raise();
}

usrSession::ConnectChoice ConnectingDialog::askAfterFailure(const QString &reason)
{
    m_ui->message->setText(Translate(QString(), u"Could not connect to <1>."_s, m_server.toDisplayString()));
    m_ui->reason->setText(Translate(reason)); // the session's reasons are English
    m_ui->reason->setVisible(!reason.isEmpty());
    m_ui->progress->hide();
    m_ui->Retry->show();
    m_ui->ChangeServer->show();
    show();
    raise();
    activateWindow();
    m_ui->Retry->setFocus();

    // The session waits for the answer; the window stays an ordinary one meanwhile (nothing else
    // is on screen before the first READY).
    QEventLoop question;
    m_question = &question;
    m_choice = usrSession::ConnectChoice::Quit; // also when the program ends during the question
    question.exec();
    m_question = nullptr;
    if (m_choice == usrSession::ConnectChoice::ChangeServer)
        hide(); // the log-in dialog comes next; the next attempt shows this window again
    return m_choice;
}

void ConnectingDialog::reject()
{
    choose(usrSession::ConnectChoice::Quit);
}

void ConnectingDialog::closeEvent(QCloseEvent *event)
{
    // Closing the window is Quit too. The close is never refused, since the program may be ending
    // with the window open (quitting closes every window first and stops at one that refuses), and
    // the answer waits for the event loop so that a quit under way is not entered a second time.
    event->accept();
    QMetaObject::invokeMethod(
        this, [this] { choose(usrSession::ConnectChoice::Quit); }, Qt::QueuedConnection);
}

void ConnectingDialog::sessionStateChanged(usrSession::State state)
{
    if (state == usrSession::State::Ready)
        m_wasReady = true;
    if (state != usrSession::State::Ready && state != usrSession::State::Closed)
        return;
    if (m_question)
        m_question->quit(); // answered as Quit: there is nothing left to connect
    hide();
}

void ConnectingDialog::choose(usrSession::ConnectChoice choice)
{
    if (m_question) {
        m_choice = choice;
        m_question->quit();
    } else if (choice == usrSession::ConnectChoice::Quit) {
        m_session.logOut(u"Quit while connecting to %1"_s.arg(m_server.toDisplayString()));
    }
}
