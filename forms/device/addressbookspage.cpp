// SPDX-License-Identifier: GPL-3.0-or-later
#include "addressbookspage.h"

#include "buttonrow.h"
#include "controls.h"
#include "guarded.h"
#include "pluginsession.h"
#include "propertywindows.h"
#include "tagvalue.h"
#include "translate.h"
#include "translatewidgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <QEvent>
#include <QFormLayout>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QPixmap>
#include <QPushButton>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace {
const QString booksWindow = u"AB"_s;

QString bookField(int book, const QString &suffix)
{
    return u"AB"_s + QString::number(book + 1) + suffix;
}
} // namespace

AddressBooksPage::AddressBooksPage(QWidget *parent)
    : QWidget(parent), m_list(new QTreeWidget(this)), m_newBook(new QComboBox(this))
{
    m_list->setObjectName(u"Ab"_s);
    m_list->setColumnCount(2);
    m_list->setHeaderLabels({u"Address Book"_s, u"Type"_s});
    TranslateList(m_list);
    m_list->setRootIsDecorated(false);
    m_list->setSelectionMode(QAbstractItemView::SingleSelection);
    m_list->setEditTriggers(QAbstractItemView::NoEditTriggers);
    // A private book's name lines up with the system books' names beside their check boxes, and
    // its row is as high as theirs.
    m_list->setUniformRowHeights(true);
    const QCheckBox probe;
    const int indicator = probe.style()->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &probe);
    QPixmap blank(indicator, indicator);
    blank.fill(Qt::transparent);
    m_privateIcon = QIcon(blank);
    m_list->setIconSize(blank.size());
    m_list->header()->setStretchLastSection(false);
    m_list->header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    m_list->header()->setSectionResizeMode(KindColumn, QHeaderView::ResizeToContents);

    m_newBook->setObjectName(u"NewAb"_s);
    m_newBook->addItem(Translate(directoryEntry()));
    m_newBook->setCurrentIndex(0);
    auto *label = new QLabel(Translate(u"&New contacts go to:"_s), this);
    label->setBuddy(m_newBook);

    m_buttons = new ButtonRow(u"pProps"_s, {u"&Add..."_s, u"&Configure..."_s, u"&Remove"_s}, this,
                              u" @ frmConfig.pProps_Click"_s, [this](int index) { pProps_Click(index); });
    m_buttons->bindKeys(m_list, ConfigureButton, RemoveButton);

    auto *newContacts = new QFormLayout;
    newContacts->addRow(label, m_newBook);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_list);
    layout->addLayout(m_buttons->layout());
    layout->addLayout(newContacts);

    connectGuarded(m_list, &QTreeWidget::itemSelectionChanged, this, u" @ frmConfig.Ab_Click"_s,
                   &AddressBooksPage::updateButtons);
    connectGuarded(m_list, &QTreeWidget::itemDoubleClicked, this, u" @ frmConfig.Ab_DblClick"_s, [this] {
        if (m_buttons->button(ConfigureButton)->isEnabled())
            pProps_Click(ConfigureButton);
    });
    updateButtons();
}

QString AddressBooksPage::directoryEntry()
{
    return u"(Directory)"_s;
}

void AddressBooksPage::setSystemBooks(const QList<SystemAddressBook> &books)
{
    // The system's rows come first, the private ones after them, in both lists.
    for (int book = systemCount() - 1; book >= 0; --book) {
        delete m_list->takeTopLevelItem(book);
        m_newBook->removeItem(book + 1);
    }
    m_books = books;
    m_use.clear();
    m_vars = QStringList(books.size());
    for (int book = 0; book < systemCount(); ++book) {
        auto *item = new QTreeWidgetItem;
        item->setText(KindColumn, Translate(u"Public"_s));
        m_list->insertTopLevelItem(book, item);
        auto *box = new QCheckBox(books.at(book).name);
        box->setObjectName(u"pCheck_"_s + QString::number(book + 1));
        box->installEventFilter(this); // the row of a box that gets the focus is selected
        m_list->setItemWidget(item, NameColumn, box);
        m_use.append(box);
        m_newBook->insertItem(book + 1, books.at(book).name);
    }
    updateButtons();
}

void AddressBooksPage::setWindows(const PropertyWindows *windows)
{
    if (m_windows)
        disconnect(m_windows, nullptr, this, nullptr);
    m_windows = windows;
    if (m_windows)
        connect(m_windows, &PropertyWindows::openersChanged, this, &AddressBooksPage::updateButtons);
    updateButtons();
}

bool AddressBooksPage::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::FocusIn) {
        const int book = int(m_use.indexOf(watched));
        if (book >= 0)
            m_list->setCurrentItem(m_list->topLevelItem(book));
    }
    return QWidget::eventFilter(watched, event);
}

void AddressBooksPage::load(const QString &row)
{
    for (int book = 0; book < systemCount(); ++book) {
        GetOption(m_use.at(book), getText(row, bookField(book, u"Use"_s)));
        m_vars[book] = getText(row, bookField(book, u"Vars"_s));
    }

    clearPrivateBooks();
    const QString books = getText(row, u"PrivateAB"_s);
    // Devices with different private books show none, and none can be added or removed: one
    // device's list would otherwise replace the others'.
    m_privateMixed = books == MixedValue;
    m_loadedPrivate = books;
    for (int entry = 1; !m_privateMixed; ++entry) {
        QString tag;
        const QString book = GetVar(books, entry, &tag).toString();
        if (tag.isEmpty())
            break;
        addPrivateRow({getText(book, u"ABName"_s), getText(book, u"Vars"_s)});
    }

    const QString newBook = getText(row, u"NewAB"_s);
    int chosen = -1; // a book that is not listed, or devices that differ
    if (newBook.isEmpty() || newBook.compare(directoryEntry(), Qt::CaseInsensitive) == 0)
        chosen = 0;
    for (int entry = 1; chosen < 0 && newBook != MixedValue && entry < m_newBook->count(); ++entry) {
        if (m_newBook->itemText(entry).compare(newBook, Qt::CaseInsensitive) == 0)
            chosen = entry;
    }
    m_newBook->setCurrentIndex(chosen);
    updateButtons();
}

void AddressBooksPage::save(QString &row) const
{
    for (int book = 0; book < systemCount(); ++book) {
        SetOption(row, bookField(book, u"Vars"_s), m_vars.at(book));
        SetOption(row, bookField(book, u"Use"_s), m_use.at(book));
    }
    if (!m_privateMixed) {
        QString books;
        for (qsizetype index = 0; index < m_private.size(); ++index) {
            QString entry;
            AddVar(entry, u"ABName"_s, m_private.at(index).name);
            AddVar(entry, u"Vars"_s, m_private.at(index).vars);
            AddVar(books, u"AB"_s + QString::number(index + 1), entry);
        }
        SetListOption(row, u"PrivateAB"_s, books, m_loadedPrivate); // the last one removed: empty
    }
    // The directory is stored by its own name in every language; nothing chosen is left out.
    const int chosen = m_newBook->currentIndex();
    if (chosen >= 0)
        AddVar(row, u"NewAB"_s, chosen == 0 ? directoryEntry() : m_newBook->itemText(chosen));
}

void AddressBooksPage::pProps_Click(int index)
{
    const int row = selectedRow();
    switch (index) {
    case AddButton:
        if (!m_privateMixed)
            openPrivateBook(-1, {});
        break;
    case ConfigureButton:
        if (row >= 0 && row < systemCount())
            configureSystemBook(row);
        else if (row >= systemCount())
            openPrivateBook(row - systemCount(), m_private.at(row - systemCount()).vars);
        break;
    case RemoveButton:
        if (row >= systemCount() && !m_privateMixed)
            removePrivateBook(row - systemCount());
        break;
    default:
        break;
    }
}

int AddressBooksPage::selectedRow() const
{
    QTreeWidgetItem *current = m_list->currentItem();
    return current && current->isSelected() ? m_list->indexOfTopLevelItem(current) : -1;
}

bool AddressBooksPage::canOpenBooks() const
{
    return m_windows && m_windows->canOpen(booksWindow);
}

void AddressBooksPage::clearPrivateBooks()
{
    for (qsizetype index = m_private.size() - 1; index >= 0; --index) {
        delete m_list->takeTopLevelItem(systemCount() + int(index));
        m_newBook->removeItem(1 + systemCount() + int(index));
    }
    m_private.clear();
}

void AddressBooksPage::addPrivateRow(const PrivateBook &book)
{
    m_private.append(book);
    auto *item = new QTreeWidgetItem(m_list, {book.name, Translate(u"Private"_s)});
    item->setIcon(NameColumn, m_privateIcon);
    m_newBook->addItem(book.name);
}

void AddressBooksPage::configureSystemBook(int book)
{
    const SystemAddressBook &system = m_books.at(book);
    // Devices with different settings start the plug-in from none: the marker is no setting.
    QString vars = m_vars.at(book) == MixedValue ? QString() : m_vars.at(book);
    PluginSession::Keeper session;
    if (PluginSession::configure(session, system.type, system.name, u"User"_s, vars, window(),
                                 u" @ frmConfig.pProps_Click"_s))
        m_vars[book] = vars;
}

void AddressBooksPage::openPrivateBook(int index, const QString &vars)
{
    if (!canOpenBooks())
        return;
    const WindowResult result =
        m_windows->open(booksWindow, u"-2:{Index="_s + QString::number(index) + u'}' + vars, window());
    if (result.outcome == WindowResult::Cancelled || result.record.isEmpty())
        return;
    // The window hands back "{Index=n}{Fields=<the book's record>}"; -1 is a new book.
    const int handed = int(leadingNumber(getText(result.record, u"Index"_s)));
    const QString fields = getText(result.record, u"Fields"_s);
    const PrivateBook book{getText(fields, u"Name"_s), fields};
    if (handed < 0) {
        addPrivateRow(book);
        m_list->setCurrentItem(m_list->topLevelItem(systemCount() + int(m_private.size()) - 1));
    } else if (handed < m_private.size()) {
        m_private[handed] = book;
        m_list->topLevelItem(systemCount() + handed)->setText(NameColumn, book.name);
        m_newBook->setItemText(1 + systemCount() + handed, book.name);
    }
}

void AddressBooksPage::removePrivateBook(int index)
{
    const int entry = 1 + systemCount() + index;
    const bool wasChosen = m_newBook->currentIndex() == entry;
    m_private.removeAt(index);
    delete m_list->takeTopLevelItem(systemCount() + index);
    m_newBook->removeItem(entry);
    // New contacts no longer go to a book the user does not have: they go to the directory.
    if (wasChosen)
        m_newBook->setCurrentIndex(0);
    updateButtons();
}

void AddressBooksPage::updateButtons()
{
    const int row = selectedRow();
    const bool books = canOpenBooks();
    const QString missing = books ? QString() : PropertyWindows::unavailableTip();
    m_buttons->setEnabled(AddButton, books && !m_privateMixed, missing);
    const bool privateRow = row >= systemCount();
    m_buttons->setEnabled(ConfigureButton, row >= 0 && (!privateRow || books),
                          privateRow ? missing : QString());
    m_buttons->setEnabled(RemoveButton, privateRow && !m_privateMixed);
}
