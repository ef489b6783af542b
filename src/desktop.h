#ifndef DESKTOP_H
#define DESKTOP_H

/// Sets what all windows and boxes of the program have in common on a desktop: the icon, and the
/// name of the desktop file, by which a task bar finds it under Wayland.
void prepareApplication();

#endif // DESKTOP_H
