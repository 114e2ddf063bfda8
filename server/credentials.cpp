// SPDX-License-Identifier: GPL-3.0-or-later
#include "credentials.h"

#include <QCryptographicHash>
#include <QPasswordDigestor>
#include <QRandomGenerator>

namespace Credentials {

namespace {
QByteArray randomBytes(int count)
{
    QByteArray bytes(count, Qt::Uninitialized);
    QRandomGenerator *generator = QRandomGenerator::system();
    for (char &byte : bytes)
        byte = char(generator->bounded(256));
    return bytes;
}

QByteArray derive(const QString &password, const QByteArray &salt, int iterations)
{
    return QPasswordDigestor::deriveKeyPbkdf2(QCryptographicHash::Sha256, password.toUtf8(), salt, iterations,
                                              HashBytes);
}
} // namespace

Account hashPassword(const QString &password, int iterations)
{
    Account account;
    account.salt = randomBytes(SaltBytes);
    account.iterations = iterations;
    account.hash = derive(password, account.salt, iterations);
    return account;
}

bool verify(const QString &password, const Account &account)
{
    if (account.iterations <= 0 || account.hash.isEmpty())
        return false;
    return constantTimeEquals(derive(password, account.salt, account.iterations), account.hash);
}

void wasteVerification(const QString &password)
{
    static const QByteArray salt(SaltBytes, '\x5a');
    derive(password, salt, DefaultIterations);
}

bool constantTimeEquals(const QByteArray &a, const QByteArray &b)
{
    if (a.size() != b.size())
        return false;
    unsigned char difference = 0;
    for (qsizetype i = 0; i < a.size(); ++i)
        difference |= static_cast<unsigned char>(a[i] ^ b[i]);
    return difference == 0;
}

QString newToken()
{
    return QString::fromLatin1(randomBytes(32).toHex());
}

} // namespace Credentials
