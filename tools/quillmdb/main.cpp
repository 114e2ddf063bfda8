// SPDX-License-Identifier: GPL-3.0-or-later
// quillmdb: what the campaign window offers for a contacts database, for support work. With a file,
// its tables and then its stored queries, one a line; with a table or query name as well, that
// source's columns, one a line, a blank line and the columns proposed for the campaign's fields.
#include "contactsdatabase.h"

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace {

const char usage[] = "usage: quillmdb FILE          list the tables, then the stored queries\n"
                     "       quillmdb FILE NAME     list the columns of a table or query and the\n"
                     "                              columns proposed for id, telephone, name and notes\n";

// Usage errors and files that cannot be read.
constexpr int failureStatus = 2;

void printLine(const QString &line)
{
    std::fputs(line.toUtf8().append('\n').constData(), stdout);
}

int fail(const QString &message)
{
    std::fputs(u"quillmdb: %1\n"_s.arg(message).toUtf8().constData(), stderr);
    return failureStatus;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    const QStringList arguments = app.arguments().mid(1);
    if (arguments.isEmpty() || arguments.size() > 2 || arguments.first().startsWith(u'-')) {
        std::fputs(usage, stderr);
        return failureStatus;
    }
    const QString &path = arguments.first();

    if (arguments.size() == 1) {
        const ContactsDatabase::Sources sources = ContactsDatabase::readSources(path);
        if (!sources.ok())
            return fail(sources.error);
        for (const QString &name : sources.tables + sources.queries)
            printLine(name);
        return 0;
    }

    const ContactsDatabase::Columns columns = ContactsDatabase::readColumns(path, arguments.at(1));
    if (!columns.ok())
        return fail(columns.error);
    for (const QString &name : columns.names)
        printLine(name);
    const ContactsDatabase::Proposals proposals = ContactsDatabase::proposeColumns(columns.names);
    printLine(QString());
    printLine(u"id: "_s + proposals.id);
    printLine(u"telephone: "_s + proposals.telephone);
    printLine(u"name: "_s + proposals.name);
    printLine(u"notes: "_s + proposals.notes);
    return 0;
}
