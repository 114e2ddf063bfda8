// SPDX-License-Identifier: GPL-3.0-or-later
#include "frmButton.h"
#include "ui_frmButton.h"

#include "errorlog.h"
#include "formlayout.h"
#include "guarded.h"
#include "tagentries.h"
#include "tagvalue.h"
#include "tipfilter.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QSignalBlocker>

using namespace Qt::StringLiterals;

namespace {

const QString noneKind = u"(None)"_s;
const QString scriptKind = u"(Script)"_s;
const QString pluginSuffix = u"action"_s;
// Each kind entry carries its Type value, and a plug-in action the plug-in's type code.
constexpr int TypeRole = Qt::UserRole;
constexpr int PluginRole = Qt::UserRole + 1;

const QList<ControlTip> buttonTips{
    {u"btnDisplay"_s, u"QS130"_s, u"Enter the caption shown on this button in the user's button bar."_s},
    {u"btnExt"_s, u"QS131"_s, u"Enter the extension this button shows, or to which it deflects the call."_s},
};

// The parameters of a script's Params value "name=default,name=default", in order.
QList<std::pair<QString, QString>> scriptParameters(const QString &params)
{
    QList<std::pair<QString, QString>> parameters;
    for (const QString &pair : params.split(u',', Qt::SkipEmptyParts)) {
        const QString name = pair.section(u'=', 0, 0).trimmed();
        if (!name.isEmpty())
            parameters.append({name, pair.section(u'=', 1)});
    }
    return parameters;
}

} // namespace

frmButton::frmButton(const QString &scripts, const PluginList &plugins, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::frmButton>()), m_scripts(scripts), m_plugins(plugins)
{
    m_ui->setupUi(this);
    Guard(u" @ frmButton.Form_Load"_s, [&] { Form_Load(); });
    connectGuarded(m_ui->btnType, &QComboBox::currentIndexChanged, this, u" @ frmButton.btnType_Click"_s,
                   &frmButton::btnType_Click);
    connectGuarded(m_ui->btnScript, &QComboBox::currentIndexChanged, this, u" @ frmButton.btnScript_Click"_s,
                   &frmButton::btnScript_Click);
    connectGuarded(m_ui->Configure, &QPushButton::clicked, this, u" @ frmButton.Configure_Click"_s,
                   &frmButton::Configure_Click);
    connectGuarded(m_ui->OK, &QPushButton::clicked, this, u" @ frmButton.OK_Click"_s, &frmButton::OK_Click);
    connectGuarded(m_ui->Cancel, &QPushButton::clicked, this, u" @ frmButton.Cancel_Click"_s,
                   &frmButton::Cancel_Click);
}

frmButton::~frmButton() = default;

const QStringList &frmButton::builtInKinds()
{
    static const QStringList kinds{u"Answer"_s,
                                   u"Answer/Hangup"_s,
                                   u"Conference"_s,
                                   u"Deflect Call"_s,
                                   u"Dial Clipboard"_s,
                                   u"Extension"_s,
                                   u"Hangup"_s,
                                   u"Hold/Unhold"_s,
                                   u"Reconnect"_s,
                                   u"Set Callback"_s,
                                   u"Set Result"_s,
                                   u"Show Address Book"_s,
                                   u"Show Call History"_s,
                                   u"Show Contact"_s,
                                   u"Show Extensions"_s,
                                   u"Show Phone"_s,
                                   u"Show Todo"_s,
                                   u"Speed Dial"_s,
                                   u"Transfer"_s};
    return kinds;
}

void frmButton::Form_Load()
{
    TranslateWindow(this);
    m_ui->Tip->setText(u" "_s);
    m_ui->Tip->setMinimumHeight(m_ui->Tip->fontMetrics().lineSpacing() * 2 + 8);

    m_ui->btnScript->addItem(Translate(noneKind));
    const int count = getText(m_scripts, u"ListCount"_s).toInt();
    for (int i = 1; i <= count; ++i)
        m_ui->btnScript->addItem(getText(getText(m_scripts, u"List"_s + QString::number(i)), u"Name"_s));

    alignFormLabels({this});
    m_tips = new TipFilter(m_ui->Tip, buttonTips, {}, this);
    m_tips->watch(this);
}

bool frmButton::isEvent() const
{
    return getText(m_request, u"Cmd"_s).toUpper() == u"SCRIPT"_s;
}

QString frmButton::kind() const
{
    return m_ui->btnType->currentData(TypeRole).toString();
}

bool frmButton::isPluginKind() const
{
    return kind().right(6).compare(pluginSuffix, Qt::CaseInsensitive) == 0;
}

ButtonResult frmButton::Edit(const QString &Request, const QString &)
{
    Guard(u" @ frmButton.Edit"_s, [&] { loadRequest(Request); });
    exec();
    return m_outcome;
}

void frmButton::loadRequest(const QString &request)
{
    m_request = request;
    m_outcome = {};
    m_outcome.index = getText(request, u"Index"_s).toInt();
    // The action is what follows the request's Cmd and Index.
    m_action.clear();
    const QList<TagEntry> entries = splitEntries(request);
    for (qsizetype i = 2; i < entries.size(); ++i)
        m_action += entryText(entries[i]);

    const bool event = isEvent();
    setWindowTitle(Translate(event ? u"Edit Event"_s : u"Edit Button"_s));
    m_ui->lblDisplay->setVisible(!event);
    m_ui->btnDisplay->setVisible(!event);

    const QSignalBlocker typeBlocker(m_ui->btnType);
    const QSignalBlocker scriptBlocker(m_ui->btnScript);
    m_ui->btnType->clear();
    m_ui->btnType->addItem(Translate(noneKind), noneKind);
    if (!event)
        for (const QString &builtIn : builtInKinds())
            m_ui->btnType->addItem(builtIn, builtIn);
    QStringList pluginNames;
    for (const auto &[code, name] : std::as_const(m_plugins)) {
        const QString shown = (name.isEmpty() ? code : name) + u' ' + pluginSuffix;
        if (pluginNames.contains(shown, Qt::CaseInsensitive))
            continue;
        pluginNames << shown;
        m_ui->btnType->addItem(shown, shown);
        m_ui->btnType->setItemData(m_ui->btnType->count() - 1, code, PluginRole);
    }
    m_ui->btnType->addItem(scriptKind, scriptKind);

    m_ui->btnDisplay->setText(getText(m_action, u"Display"_s));
    m_ui->btnConfig->setText(getText(m_action, u"Config"_s));
    m_ui->btnExt->setText(getText(m_action, u"BtnExt"_s));
    m_ui->btnResults->setText(getText(m_action, u"Results"_s));
    m_ui->btnTypes->setText(getText(m_action, u"Types"_s));
    m_ui->btnNumber->setText(getText(m_action, u"Number"_s));

    // A kind or script this tool does not list is kept, so that OK gives back what was stored.
    const QString type = getText(m_action, u"Type"_s, noneKind);
    int typeIndex = m_ui->btnType->findData(type, TypeRole, Qt::MatchFixedString);
    if (typeIndex < 0) {
        typeIndex = m_ui->btnType->count() - 1;
        m_ui->btnType->insertItem(typeIndex, type, type);
    }
    m_ui->btnType->setCurrentIndex(typeIndex);
    const QString script = getText(m_action, u"Script"_s);
    int scriptIndex = script.isEmpty() ? 0 : m_ui->btnScript->findText(script, Qt::MatchFixedString);
    if (scriptIndex <= 0 && !script.isEmpty()) {
        m_ui->btnScript->addItem(script);
        scriptIndex = m_ui->btnScript->count() - 1;
    }
    m_ui->btnScript->setCurrentIndex(scriptIndex);
    btnType_Click();
}

void frmButton::btnType_Click()
{
    const QString chosen = kind().toUpper();
    m_ui->extPanel->setVisible(chosen == u"EXTENSION"_s || chosen == u"DEFLECT CALL"_s);
    m_ui->resultPanel->setVisible(chosen == u"SET RESULT"_s);
    m_ui->numberPanel->setVisible(chosen == u"SPEED DIAL"_s);
    m_ui->scriptPanel->setVisible(chosen == u"(SCRIPT)"_s);
    m_ui->pluginPanel->setVisible(isPluginKind());
    if (isPluginKind() && m_ui->btnDisplay->text().isEmpty())
        m_ui->btnDisplay->setText(m_ui->btnType->currentText());
    if (chosen == u"(SCRIPT)"_s)
        btnScript_Click();
    adjustSize();
}

void frmButton::clearParameters()
{
    QFormLayout *form = m_ui->scriptPanelLayout;
    while (form->rowCount() > 1)
        form->removeRow(1);
}

void frmButton::btnScript_Click()
{
    clearParameters();
    const int index = m_ui->btnScript->currentIndex();
    const QString entry = index > 0 ? getText(m_scripts, u"List"_s + QString::number(index)) : QString();
    int row = 0;
    for (const auto &[name, defaultValue] : scriptParameters(getText(entry, u"Params"_s))) {
        const QVariant current = GetVar(m_action, name);
        auto *label = new QLabel(name + u':', m_ui->scriptPanel);
        label->setObjectName(u"lblParam_"_s + QString::number(row));
        auto *box = new QLineEdit(current.isValid() ? current.toString() : defaultValue, m_ui->scriptPanel);
        box->setObjectName(u"btnParam_"_s + QString::number(row));
        label->setBuddy(box);
        label->setMinimumWidth(m_ui->lblScript->minimumWidth());
        m_ui->scriptPanelLayout->addRow(label, box);
        ++row;
    }
    if (getText(m_action, u"Display"_s).isEmpty())
        m_ui->btnDisplay->setText(getText(entry, u"Display"_s));
    adjustSize();
}

void frmButton::addParameters(QString &action) const
{
    if (m_ui->scriptPanel->isHidden())
        return;
    QFormLayout *form = m_ui->scriptPanelLayout;
    for (int row = 1; row < form->rowCount(); ++row) {
        auto *label = qobject_cast<QLabel *>(form->itemAt(row, QFormLayout::LabelRole)->widget());
        auto *box = qobject_cast<QLineEdit *>(form->itemAt(row, QFormLayout::FieldRole)->widget());
        QString name = label->text();
        name.chop(1); // the ":"
        AddVar(action, name, box->text());
    }
}

void frmButton::Configure_Click()
{
    if (!isPluginKind())
        return;
    QString name = m_ui->btnType->currentData(PluginRole).toString();
    if (name.isEmpty())
        name = kind().chopped(pluginSuffix.size()).trimmed();
    auto *session = qobject_cast<IPluginSession *>(CreateObject(u"plg"_s + name + u".Session"_s));
    if (!session)
        return;
    const QString config = session->Configure(u"Action"_s, m_ui->btnConfig->text(), this);
    if (getText(config, u"Result"_s).toUpper() != u"FAIL"_s)
        m_ui->btnConfig->setText(config);
}

void frmButton::OK_Click()
{
    ButtonResult result;
    result.index = getText(m_request, u"Index"_s).toInt();
    const QString chosen = kind().toUpper();
    QString action;
    const QString script = m_ui->btnScript->currentIndex() > 0 ? m_ui->btnScript->currentText() : QString();
    if (isEvent()) {
        if (chosen.isEmpty() || chosen == u"(NONE)"_s) {
            result.outcome = ButtonResult::Cleared;
        } else {
            AddVar(action, u"Type"_s, kind());
            if (chosen == u"(SCRIPT)"_s) {
                AddVar(action, u"Script"_s, script);
                addParameters(action);
            } else if (isPluginKind()) {
                AddVar(action, u"Config"_s, m_ui->btnConfig->text());
            }
            result.outcome = ButtonResult::Stored;
        }
    } else {
        AddVar(action, u"Type"_s, kind());
        AddVar(action, u"Script"_s, script);
        AddVar(action, u"Display"_s, m_ui->btnDisplay->text());
        AddVar(action, u"BtnExt"_s, m_ui->btnExt->text());
        AddVar(action, u"Number"_s, m_ui->btnNumber->text());
        AddVar(action, u"Types"_s, m_ui->btnTypes->text());
        AddVar(action, u"Results"_s, m_ui->btnResults->text());
        addParameters(action);
        if (isPluginKind())
            AddVar(action, u"Config"_s, m_ui->btnConfig->text());
        result.outcome = ButtonResult::Stored;
        result.display = m_ui->btnDisplay->text();
    }
    result.action = action;
    m_outcome = result;
    accept();
}

void frmButton::Cancel_Click()
{
    reject();
}
