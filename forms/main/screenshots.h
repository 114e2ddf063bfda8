// SPDX-License-Identifier: GPL-3.0-or-later
// Pictures of the main window's pages, for checking the layout and for the documentation.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

class frmMain;

// Selects each page in turn and saves a picture of the window as dir/page-N-<name>.png
// ("page-2-address-books.png"); the page selected before is selected again. Returns the files
// written; error (when given) says which file could not be written.
QStringList savePageScreenshots(frmMain &window, const QString &dir, QString *error = nullptr);

// Waits until every list of the window's load has arrived (at once when it already has), then
// saves the pictures as above and calls done with the files written.
void savePageScreenshotsWhenLoaded(frmMain &window, const QString &dir,
                                   std::function<void(const QStringList &files)> done);
