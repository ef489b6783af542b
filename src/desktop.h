#ifndef DESKTOP_H
#define DESKTOP_H

class QWidget;

/// Sets what all windows and boxes of the program have in common on any desktop: the icon, the name
/// of the desktop file, by which a task bar finds that icon under Wayland, and the framework's own
/// texts in French, whatever the locale.
void prepareApplication();

/// Makes \p window, which is not shown yet, fit on its screen, between panels and with its title
/// bar. Where it fits as it is, nothing changes; where only its least size fits, it is made lower.
void fitOnScreen(QWidget *window);

#endif // DESKTOP_H
