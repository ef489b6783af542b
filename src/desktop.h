#ifndef DESKTOP_H
#define DESKTOP_H

/// Sets what all windows and boxes of the program have in common on any desktop: the icon, the name
/// of the desktop file, by which a task bar finds it under Wayland, and the framework's own texts
/// in French, whatever the locale.
void prepareApplication();

#endif // DESKTOP_H
