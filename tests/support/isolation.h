// SPDX-License-Identifier: GPL-3.0-or-later
// Keeps a test off the user's own settings, data folder and error log.
#pragma once

#include "errorlog.h"

#include <QStandardPaths>
#include <QString>
#include <QTemporaryDir>

// A scratch folder that goes away with the test, holding the error log. Make it a member of the
// test object and call QVERIFY(m_scratch.enter()) in initTestCase(): from then on settings and
// data folders are Qt's test locations and every guarded fault is logged in the scratch folder.
class TestIsolation
{
public:
    bool enter()
    {
        QStandardPaths::setTestModeEnabled(true);
        ErrorLog::setPath(logPath());
        return m_dir.isValid();
    }
    QString logPath() const { return filePath(QStringLiteral("tamsel.log")); }
    QString filePath(const QString &name) const { return m_dir.filePath(name); }
    QString path() const { return m_dir.path(); }

private:
    QTemporaryDir m_dir;
};
