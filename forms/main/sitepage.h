// SPDX-License-Identifier: GPL-3.0-or-later
// The Site page of the main window: the site and telephone-system settings of System/PBX.
#pragma once

#include <QHash>
#include <QStringList>
#include <QVariant>
#include <QWidget>

#include <memory>

namespace Ui {
class SitePage;
}
class QComboBox;
class QLineEdit;

// The values a page hands over for saving, by tag as it is written.
using RecordValues = QHash<QString, QVariant>;

namespace SettingsRecord {
// The tags of the PBX settings record in the order they are written: AutoDir, Name, ..., VMIp.
const QStringList &PbxTags();
// Rebuilds a settings record: the tags in order, each from values (an empty value is left out),
// then every tag of original that is not among them (a setting the tool does not show, written
// by the server or another client) in the order it had there, value and type unchanged.
QString Build(const QStringList &tags, const RecordValues &values, const QString &original);
// Appends to record every top-level tag of original that is not among known (any case).
void AppendOtherTags(QString &record, const QString &original, const QStringList &known);
} // namespace SettingsRecord

// Gives the labels of every form layout inside the containers one width, so that forms stacked in
// separate groups keep their fields in one column.
void AlignFormLabels(const QList<QWidget *> &containers);

class SitePage : public QWidget
{
    Q_OBJECT
public:
    explicit SitePage(QWidget *parent = nullptr);
    ~SitePage() override;

    // The telephone systems offered in sType, as the record stores them.
    static const QStringList &SystemTypes();
    // The voice-mail types offered in sVMType.
    static const QStringList &VoiceMailTypes();
    // The connections offered in Comm: "Tcp/Ip", then the serial ports "Com1:" .. "Com8:".
    static const QStringList &Connections();

    // Fills the page from the PBX record (the "Options" of the MAIN-PBX reply), defaults included.
    void load(const QString &options);
    // The page's values, by tag.
    void save(RecordValues &values) const;

    // The selected telephone-system type as the list shows it ("" when none is selected).
    QString systemType() const;

    // Shows the groups of controls the selected type needs.
    void sType_Click();
    // Shows the network or the serial settings of the chosen connection, unless the type fixes it.
    void Comm_Click();
    // Enables the voice-mail number and address the chosen voice-mail type needs.
    void sVMType_Click();

private:
    std::unique_ptr<Ui::SitePage> m_ui;
    // The text boxes of the record with their tags; load and save both go through this table.
    QList<std::pair<QLineEdit *, QString>> m_textFields;
    QString m_storedType; // the telephone-system type as the record holds it
    QString m_shownType;  // the list entry it was shown as
};
