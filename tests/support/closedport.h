// SPDX-License-Identifier: GPL-3.0-or-later
// A server address that nothing answers on, for tests of connections that fail.
#pragma once

#include <QHostAddress>
#include <QTcpServer>
#include <QUrl>

// A loopback port that was free a moment ago: nothing listens there now.
inline QUrl closedPort()
{
    QTcpServer probe;
    probe.listen(QHostAddress::LocalHost);
    return QUrl(QStringLiteral("ws://127.0.0.1:%1").arg(probe.serverPort()));
}
