// SPDX-License-Identifier: MIT
#pragma once

class QWidget;

namespace vantorel {

class WindowSpaces;

/// Has a window that is about to be shown appear on every virtual desktop, wherever the user goes.
/// To be called before each showing. `spaces` may be null. Main thread.
void showOnAllWorkspaces(QWidget& window, const WindowSpaces* spaces);

/// Hides such a window. The window of this program that had the keyboard when it was shown gets it
/// back, if it is still there and the keyboard is free to be given. Main thread.
void dismiss(QWidget& window);

/// The user has gone on to another program: `dismiss` gives the keyboard to nobody. Main thread.
void forgetPredecessor(QWidget& window);

}  // namespace vantorel
