// SPDX-License-Identifier: GPL-3.0-or-later
#include "samplesessions.h"

using namespace Qt::StringLiterals;

QString SampleSession::Configure(const QString &level, const QString &vars, QObject *parent)
{
    if (level.compare(m_level, Qt::CaseInsensitive) != 0)
        return u"{Result=FAIL}"_s;
    // What a real plug-in's dialog would hand back: the old settings plus what the user chose.
    const QString owner = parent ? parent->objectName() : QString();
    return vars + u"{Level="_s + m_level + u"}{Owner="_s + owner + u'}';
}

QObject *SampleSessionFactory::create(const QString &className)
{
    if (className == u"plgSample.Session"_s)
        return new SampleSession(u"User"_s, this);
    if (className == u"plgSampleAction.Session"_s)
        return new SampleSession(u"Action"_s, this);
    return nullptr;
}
