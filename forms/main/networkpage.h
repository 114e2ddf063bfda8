// SPDX-License-Identifier: GPL-3.0-or-later
// The Network page of the main window: alert recipients, automatic client updates and remote
// servers, kept in the PBX settings record beside the site's settings.
#pragma once

#include "recordform.h"

#include <QWidget>

#include <memory>

namespace Ui {
class NetworkPage;
}

class NetworkPage : public QWidget
{
    Q_OBJECT
public:
    explicit NetworkPage(QWidget *parent = nullptr);
    ~NetworkPage() override;

    // Fills the page from the PBX record.
    void load(const QString &options);
    // The page's fields as entries, by tag (FatalAlert, WarningAlert, DailyAlert, SendUpdates,
    // SendPath, Cluster).
    void save(RecordEntries &entries) const;

private:
    std::unique_ptr<Ui::NetworkPage> m_ui;
    RecordForm m_form;
};
