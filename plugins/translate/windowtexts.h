// SPDX-License-Identifier: GPL-3.0-or-later
// The user-visible texts of a window, translated in place.
#pragma once

#include <QString>

#include <functional>

class QObject;

using TextTranslation = std::function<QString(const QString &text)>;

// Replaces, in window and every object inside it, each text the user sees by translate(text): the
// window's title; captions of labels, buttons and check boxes; group box titles and menu titles;
// action texts; tool tips, status tips and "What's this" texts; placeholder texts; tab captions and
// their tips; the header items of table and tree widgets. Texts without a letter (numbers, blanks)
// are left alone, and so are the standard buttons of a button box, which Qt translates itself.
// Combo box items are translated only in a combo box whose property "translateItems" is true (set
// in the .ui): the tool's lists hold the values they store, which must stay as they are.
// Data in lists and grids, and the text of edit boxes, are never touched.
void translateWindowTexts(QObject *window, const TextTranslation &translate);
