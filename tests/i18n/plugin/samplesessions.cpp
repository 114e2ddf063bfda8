// SPDX-License-Identifier: GPL-3.0-or-later
#include "samplesessions.h"

using namespace Qt::StringLiterals;

QString SampleSession::Configure(const QString &level, const QString &vars, QObject *parent)
{
    if (level.compare(m_level, Qt::CaseInsensitive) != 0)
        return u"{Result=FAIL}"_s;
    // What a real plug-in's dialog would hand back: the old settings plus what the user chose.
    const QString owner = parent ? parent->objectName() : QString();
    QString result = vars + u"{Level="_s + m_level + u"}{Owner="_s + owner + u'}';
    if (m_level == u"Data"_s)
        result += u"{Caption=D:\\Books\\Harbour Suppliers.csv}"_s; // where a book's data comes from
    return result;
}

QObject *SampleSessionFactory::create(const QString &className)
{
    if (className == u"plgSample.Session"_s)
        return new SampleSession(u"User"_s, this);
    if (className == u"plgSampleAction.Session"_s)
        return new SampleSession(u"Action"_s, this);
    if (className == u"plgSampleData.Session"_s)
        return new SampleSession(u"Data"_s, this);
    return nullptr;
}
