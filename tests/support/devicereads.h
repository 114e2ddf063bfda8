// SPDX-License-Identifier: GPL-3.0-or-later
// Every device's fields read from the server through the bulk reader, waited for: what the bulk
// tests compare their windows and imports against.
#pragma once

#include "devicetransfer.h"

#include <QDebug>
#include <QTest>

#include <optional>

inline DeviceSheet::Table readDevices(BulkChannel &channel, const QStringList &fields)
{
    DeviceReader reader(channel);
    std::optional<DeviceReader::Result> result;
    QObject::connect(&reader, &DeviceReader::finished, [&](const DeviceReader::Result &r) { result = r; });
    reader.start(fields);
    if (!QTest::qWaitFor([&] { return result.has_value(); }, 60000) || !result->ok())
        qWarning() << "device read failed:" << (result ? result->error : QStringLiteral("no answer"));
    return result ? result->devices : DeviceSheet::Table{};
}
