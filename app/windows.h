// SPDX-License-Identifier: GPL-3.0-or-later
// The wiring of the property windows and the tool's small windows to the main window's lists.
#pragma once

class ServerLink;
class frmMain;

// Registers every window the main window opens (by table, and the Errors window) with its
// PropertyWindows.
void registerWindows(frmMain &main, ServerLink &link);
