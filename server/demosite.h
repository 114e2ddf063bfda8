// SPDX-License-Identifier: GPL-3.0-or-later
// The demo site: Harbour & Finch Logistics, a small freight forwarder on the Liverpool docks.
#pragma once

#include <QString>

class Store;

namespace DemoSite {
// Stores the whole demo site in one transaction: about 200 devices of the four kinds, the PBX and
// feature-code blocks, three address books, five routing conditions, two campaigns, three scripts.
bool seed(Store &store, QString *error = nullptr);
} // namespace DemoSite
