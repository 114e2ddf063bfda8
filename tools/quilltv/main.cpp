// SPDX-License-Identifier: GPL-3.0-or-later
// quilltv: reads and writes tagged-value strings on the command line, for support work and
// scripts. The string comes on standard input.
#include "tvcommands.h"

#include "tagvalue.h"

#include <QCoreApplication>
#include <QFile>
#include <QStringList>

#include <cstdio>
#include <iostream>
#include <string>

using namespace Qt::StringLiterals;

namespace {

const char usage[] =
    "usage: quilltv get NAME            print the value of NAME\n"
    "       quilltv get --index N       print the N-th top-level value, then its name\n"
    "       quilltv add NAME VALUE [--number] [--keep-empty]\n"
    "                                   print the string with NAME written as VALUE\n"
    "       quilltv add --index N VALUE [--number] [--keep-empty]\n"
    "       quilltv pretty              print the entries as an indented tree\n"
    "       quilltv --json-lines        answer one JSON request per input line:\n"
    "           {\"op\":\"get\"|\"add\",\"vars\":S,\"name\":S-or-integer,\"value\":S-or-number,\n"
    "            \"keepEmpty\":bool,\"default\":S}\n"
    "The string is read whole from standard input as UTF-8; one trailing line end is dropped.\n";

struct Arguments
{
    QString command;
    QStringList positional;
    bool index = false;
    bool number = false;
    bool keepEmpty = false;
    bool jsonLines = false;
};

// Options may stand anywhere; "--" ends them, so that a value may begin with "-".
bool parseArguments(const QStringList &arguments, Arguments &parsed)
{
    bool optionsEnded = false;
    for (const QString &argument : arguments.mid(1)) {
        if (!optionsEnded && argument.startsWith(u"--"_s)) {
            if (argument == u"--"_s)
                optionsEnded = true;
            else if (argument == u"--index"_s)
                parsed.index = true;
            else if (argument == u"--number"_s)
                parsed.number = true;
            else if (argument == u"--keep-empty"_s)
                parsed.keepEmpty = true;
            else if (argument == u"--json-lines"_s)
                parsed.jsonLines = true;
            else
                return false;
        } else if (parsed.command.isEmpty() && !parsed.jsonLines) {
            parsed.command = argument;
        } else {
            parsed.positional.append(argument);
        }
    }
    return true;
}

void write(const QByteArray &bytes, FILE *stream = stdout)
{
    std::fwrite(bytes.constData(), 1, size_t(bytes.size()), stream);
}

int fail(const QString &message, int code = 2)
{
    write(u"quilltv: "_s.toUtf8() + message.toUtf8() + '\n', stderr);
    if (code == 2)
        write(usage, stderr);
    return code;
}

QString readInput()
{
    QFile input;
    if (!input.open(stdin, QIODevice::ReadOnly))
        return {};
    QString text = QString::fromUtf8(input.readAll());
    if (text.endsWith(u'\n')) {
        text.chop(1);
        if (text.endsWith(u'\r'))
            text.chop(1);
    }
    return text;
}

int runJsonLines()
{
    std::string line;
    while (std::getline(std::cin, line)) {
        write(QuillTv::answerJsonLine(QByteArray::fromStdString(line)) + '\n');
        std::fflush(stdout); // a client waits for each answer before it sends the next line
    }
    return 0;
}

int runGet(const Arguments &arguments)
{
    if (arguments.positional.size() != 1)
        return fail(u"get takes one name"_s);
    const QString vars = readInput();
    if (arguments.index) {
        bool ok = false;
        const int index = arguments.positional.first().toInt(&ok);
        if (!ok)
            return fail(u"--index takes a whole number"_s);
        bool found = false;
        TagValue::nameAtIndex(vars, index, &found);
        if (!found)
            return fail(u"no entry %1"_s.arg(index), 1);
        QString name;
        const QVariant value = GetVar(vars, index, &name);
        write((tagValueText(value) + u'\n' + name + u'\n').toUtf8());
        return 0;
    }
    const QString name = arguments.positional.first();
    if (!TagValue::findEntry(vars, name).found())
        return fail(u"no entry %1"_s.arg(name), 1);
    write((tagValueText(GetVar(vars, name)) + u'\n').toUtf8());
    return 0;
}

int runAdd(const Arguments &arguments)
{
    if (arguments.positional.size() != 2)
        return fail(u"add takes a name and a value"_s);
    QVariant value = arguments.positional.at(1);
    if (arguments.number) {
        value = QuillTv::numberValue(arguments.positional.at(1));
        if (!value.isValid())
            return fail(u"\"%1\" is not a number"_s.arg(arguments.positional.at(1)));
    }
    QString vars = readInput();
    if (arguments.index) {
        bool ok = false;
        const int index = arguments.positional.first().toInt(&ok);
        if (!ok)
            return fail(u"--index takes a whole number"_s);
        AddVar(vars, index, value, arguments.keepEmpty);
    } else {
        AddVar(vars, arguments.positional.first(), value, arguments.keepEmpty);
    }
    write((vars + u'\n').toUtf8());
    return 0;
}

} // namespace

int main(int argc, char *argv[])
{
    QCoreApplication app(argc, argv);
    Arguments arguments;
    if (!parseArguments(QCoreApplication::arguments(), arguments))
        return fail(u"unknown option"_s);
    if (arguments.jsonLines)
        return arguments.command.isEmpty() && arguments.positional.isEmpty()
                   ? runJsonLines()
                   : fail(u"--json-lines takes no other arguments"_s);
    if (arguments.command == u"get"_s)
        return runGet(arguments);
    if (arguments.command == u"add"_s)
        return runAdd(arguments);
    if (arguments.command == u"pretty"_s) {
        if (!arguments.positional.isEmpty())
            return fail(u"pretty takes no arguments"_s);
        write(QuillTv::pretty(readInput()).toUtf8());
        return 0;
    }
    return fail(arguments.command.isEmpty() ? u"no command"_s
                                            : u"unknown command %1"_s.arg(arguments.command));
}
